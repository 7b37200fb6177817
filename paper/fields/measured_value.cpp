#include "paper/fields/measured_value.h"

#include <algorithm>
#include <iterator>

#include "driver/integer_text.h"

namespace kestrel {
namespace {

constexpr bool IsDigit(WCHAR c) { return c >= TEXT('0') && c <= TEXT('9'); }

constexpr int kPowersOfTen[] = {1, 10, 100, 1000, 10000, 100000};

// Returns (value * factor + half) / divisor, computed in 64 bits.
int Scale(int value, int factor, int half, int divisor) {
  return static_cast<int>((int64_t{value} * factor + half) / divisor);
}

// Parses the digits after the point as exactly this many decimals: pads with zeros and drops
// further digits.
int FractionFromText(const WCHAR* text, int decimals) {
  int fraction = 0;
  for (int i = 0; i < decimals; ++i) {
    fraction *= 10;
    if (IsDigit(*text)) fraction += *text++ - TEXT('0');
  }
  return fraction;
}

int DigitCount(int64_t number) {
  int digits = 1;
  for (; number >= 10; number /= 10) ++digits;
  return digits;
}

int64_t Magnitude(int value) { return value < 0 ? -int64_t{value} : int64_t{value}; }

}  // namespace

int ConvertMeasure(int value, int from, int to, int dpi) {
  if (from == kMillimetre && to == kInch) return Scale(value, 1000, 127, 254);
  if (from == kInch && to == kMillimetre) return Scale(value, 254, 500, 1000);
  if (dpi <= 0) return value;
  if (from == kMillimetre && to == kDot) return Scale(value, dpi, 127, 254);
  if (from == kInch && to == kDot) return Scale(value, dpi, 500, 1000);
  if (from == kDot && to == kMillimetre) return Scale(value, 254, dpi / 2, dpi);
  if (from == kDot && to == kInch) return Scale(value, 1000, dpi / 2, dpi);
  return value;
}

int DecimalsOf(int unit) {
  if (unit == kMillimetre) return 1;
  return unit == kInch ? 3 : 0;
}

const WCHAR* UnitName(int unit) {
  switch (unit) {
    case kMillimetre:
      return TEXT("mm");
    case kInch:
      return TEXT("inch");
    case kDot:
      return TEXT("dot");
    default:
      return TEXT("");
  }
}

int FormatMeasure(WCHAR (&out)[kMeasureTextLength], int value, int unit) {
  const int decimals = DecimalsOf(unit);
  int64_t rest = Magnitude(value);
  WCHAR reversed[kMeasureTextLength];
  int length = 0;
  // Write at least one digit before the point.
  for (int digit = 0; rest > 0 || digit <= decimals; ++digit, rest /= 10) {
    if (digit == decimals && decimals > 0) reversed[length++] = TEXT('.');
    reversed[length++] = static_cast<WCHAR>(TEXT('0') + rest % 10);
  }
  if (value < 0) reversed[length++] = TEXT('-');
  std::reverse_copy(reversed, reversed + length, out);
  out[length] = 0;
  return length;
}

int ParseMeasure(const WCHAR* text, int decimals) {
  if (text == nullptr || decimals < 0 || decimals >= static_cast<int>(std::size(kPowersOfTen))) {
    return 0;
  }
  while (*text == TEXT(' ') || *text == TEXT('\t')) ++text;
  bool negative = false;
  if (*text == TEXT('-')) {
    negative = true;
    ++text;
  }
  // A second sign may follow; it applies to the integer part only.
  int64_t number = int64_t{ParseInteger(text)} * kPowersOfTen[decimals];
  if (*text == TEXT('.')) number += FractionFromText(text + 1, decimals);
  if (negative) number = -number;
  return static_cast<int>(std::clamp<int64_t>(number, INT32_MIN, INT32_MAX));
}

bool ParseWholeNumber(const WCHAR* text, int* number) {
  const WCHAR* digits = *text == TEXT('-') ? text + 1 : text;
  if (!IsDigit(*digits)) return false;
  const int value = ParseInteger(text);
  if (*text != 0) return false;
  *number = value;
  return true;
}

int MeasureTextLimit(int minimum, int maximum, int unit) {
  const int digits = DigitCount(std::max(Magnitude(minimum), Magnitude(maximum)));
  int limit = digits;
  if (unit == kMillimetre) {
    limit = std::max(digits, 2) + 1;
  } else if (unit == kInch) {
    limit = std::max(digits, 4) + 1;
  }
  return minimum < 0 ? limit + 1 : limit;
}

}  // namespace kestrel
