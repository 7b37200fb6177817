// Measured values: 16-bit numbers with a unit code. Conversion, formatting and parsing use integer
// arithmetic.
#pragma once

#include <windows.h>

#include <cstdint>

#include "paper/paper_info.h"

namespace kestrel {

// Converts between 0.1 mm, 0.001 in and dots at dpi; adds half the divisor before the division.
// Returns the value unchanged when the units are the same, when either is kPlain or unknown, and
// when dots are involved and dpi is not positive. Does not truncate the result to 16 bits.
int ConvertMeasure(int value, int from, int to, int dpi);

// Returns the decimals of a unit: 1 for millimetres, 3 for inches, 0 otherwise.
int DecimalsOf(int unit);
// Returns "mm", "inch", "dot", or the empty text for any other unit.
const WCHAR* UnitName(int unit);

constexpr int kMeasureTextLength = 16;  // UTF-16 units of the longest text with the terminator
// Formats a value with the decimals of its unit and returns the length of the text.
int FormatMeasure(WCHAR (&out)[kMeasureTextLength], int value, int unit);
// Parses a number and returns it scaled by 10^decimals. Drops further digits after the point.
// Returns 0 for an empty text, for null and for decimals outside 0..5. Saturates at the limits of
// 32 bits.
int ParseMeasure(const WCHAR* text, int decimals);
// Parses a text of digits only, preceded by one "-" for a negative number. Returns false and leaves
// number unchanged for any other text, the empty one included. Saturates at the limits of 32 bits.
bool ParseWholeNumber(const WCHAR* text, int* number);
// Returns the number of characters that a field of this range accepts.
int MeasureTextLimit(int minimum, int maximum, int unit);

}  // namespace kestrel
