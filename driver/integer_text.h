// Parsing of decimal integers, for 8-bit and UTF-16 text.
#pragma once

#include <algorithm>
#include <cstdint>

namespace kestrel {

// Parses an optional sign and decimal digits at text, and advances text to the first other
// character. Returns 0 when there is no digit. Saturates at the limits of 32 bits.
template <typename Char>
int32_t ParseInteger(const Char*& text) {
  const bool negative = *text == '-';
  if (*text == '+' || *text == '-') ++text;
  const int64_t limit = negative ? -int64_t{INT32_MIN} : int64_t{INT32_MAX};
  int64_t magnitude = 0;
  for (; *text >= '0' && *text <= '9'; ++text) {
    magnitude = std::min(magnitude * 10 + (*text - '0'), limit);
  }
  return static_cast<int32_t>(negative ? -magnitude : magnitude);
}

}  // namespace kestrel
