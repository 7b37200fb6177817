// Measured values: 16-bit numbers with a unit code, converted, written and read with integer
// arithmetic.
#pragma once

#include <windows.h>

#include <cstdint>

#include "paper/paper_info.h"

namespace kestrel {

// Converts between 0.1 mm, 0.001 in and dots at dpi, adding half the divisor before dividing. The
// same unit, a plain number or an unknown unit on either side leaves the value. The result is not
// cut to 16 bits.
int ConvertMeasure(int value, int from, int to, int dpi);

// Decimals of a unit: 1 for millimetres, 3 for inches, 0 otherwise.
int DecimalsOf(int unit);
// "mm", "inch", "dot", or the empty text.
const WCHAR* UnitName(int unit);

constexpr int kMeasureTextLength =
    16;  // units that FormatMeasure needs at most, terminator included
// Writes a value with the decimals of its unit; answers its length.
int FormatMeasure(WCHAR (&out)[kMeasureTextLength], int value, int unit);
// Reads a text with a number of decimals 0..5 (more give 0); further digits are dropped, an empty
// text is 0. Saturates at the limits of 32 bits.
int ParseMeasure(const WCHAR* text, int decimals);
// Parses a whole number: digits, behind one "-" when it is negative, and nothing else. Returns
// false for any other text, the empty one included, and then leaves number as it is. Saturates at
// the limits of 32 bits.
bool ParseWholeNumber(const WCHAR* text, int* number);
// Characters that a field of this range takes.
int MeasureTextLimit(int minimum, int maximum, int unit);

}  // namespace kestrel
