// The one reading of decimal digits, for texts of every width.
#pragma once

#include <algorithm>
#include <cstdint>

namespace kestrel {

// The decimal number that text points to: one optional sign, then digits up to the first other
// character, where text is left; 0 without digits. Saturates at the limits of 32 bits.
template <typename Char>
int32_t TakeInteger(const Char*& text) {
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
