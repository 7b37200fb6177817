// Integers as controls format and parse them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

inline std::u16string DecimalText(int value) {
  const std::string digits = std::to_string(value);
  return {digits.begin(), digits.end()};
}

// Parses blanks, a sign and digits; returns nullopt for any other text. Saturates.
inline std::optional<int64_t> ReadDecimal(std::u16string_view text) {
  constexpr int64_t kMost = INT64_MAX / 100;
  while (text.starts_with(u' ')) text.remove_prefix(1);
  const bool negative = text.starts_with(u'-');
  if (negative || text.starts_with(u'+')) text.remove_prefix(1);
  if (text.empty()) return std::nullopt;
  int64_t value = 0;
  for (char16_t c : text) {
    if (c < u'0' || c > u'9') return std::nullopt;
    if (value < kMost) value = value * 10 + (c - u'0');
  }
  return negative ? -value : value;
}

}  // namespace platform
