#pragma once

#include <cstddef>
#include <span>
#include <string>

namespace printhost {

// Bytes as two hexadecimal digits each.
std::string Hex(std::span<const std::byte> bytes);

// SHA-256 (FIPS 180-4) of bytes, as 64 hexadecimal digits.
std::string Sha256(std::span<const std::byte> bytes);

}  // namespace printhost
