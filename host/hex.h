#pragma once

#include <cstddef>
#include <span>
#include <string>

namespace printhost {

// Returns two lower-case hexadecimal digits for each byte.
inline std::string Hex(std::span<const std::byte> bytes) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  text.reserve(bytes.size() * 2);
  for (const std::byte byte : bytes) {
    text.push_back(kDigits[std::to_integer<unsigned>(byte) >> 4]);
    text.push_back(kDigits[std::to_integer<unsigned>(byte) & 15]);
  }
  return text;
}

}  // namespace printhost
