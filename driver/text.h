// Text functions: bounded copies, conversion to and from code page 932, printer names, and numbers.
// All 8-bit text that the driver writes is in code page 932, whatever the system's ANSI code page
// is. A null text counts as empty, except where a function requires one.
#pragma once

#include <windows.h>

#include <algorithm>
#include <cstddef>

namespace kestrel {

constexpr UINT kJapaneseCodePage = 932;
constexpr UINT kSystemCodePage = static_cast<UINT>(-1);  // the system's ANSI code page

// Returns the length of a text in a field of n units that need not be terminated; at most n.
int BoundedLength(const WCHAR* text, size_t n);
int TextLength(const WCHAR* text);

// Copies at most n - 1 units and terminates. Returns the number of units copied. Does nothing when
// n is 0.
int CopyText(WCHAR* out, size_t n, const WCHAR* text);
// As CopyText, from a field of fieldUnits units that need not be terminated.
int CopyField(WCHAR* out, size_t n, const WCHAR* field, size_t fieldUnits);
// Appends as much of text as fits into out (n units in all) and terminates. Returns the units
// appended.
int AppendText(WCHAR* out, size_t n, const WCHAR* text);
// As above, for a whole array. CopyText clears the rest of the array, so that no field of a record
// retains the tail of an older text.
template <size_t N>
int CopyText(WCHAR (&out)[N], const WCHAR* text) {
  const int length = CopyText(out, N, text);
  std::fill(out + length, out + N, WCHAR{});
  return length;
}
template <size_t N>
int AppendText(WCHAR (&out)[N], const WCHAR* text) {
  return AppendText(out, N, text);
}

// Compares UTF-16 units exactly.
bool SameText(const WCHAR* a, const WCHAR* b);
// Compares by the system's locale and ignores letter case (lstrcmpiW).
bool SameTextIgnoringCase(const WCHAR* a, const WCHAR* b);

// Converts UTF-16 to a code page (WideCharToMultiByte with the code page's default character).
// length: units, or -1 for a terminated text. Clears the output of size bytes, never splits a
// double-byte character and always terminates. Returns the number of bytes without the terminator.
int ToCodePage(const WCHAR* text, int length, char* out, int size,
               UINT codePage = kJapaneseCodePage);
// Converts a code page to UTF-16 (MultiByteToWideChar). length: bytes, or -1 for a terminated text.
// Clears the output of sizeBytes bytes and always terminates. Returns the number of units without
// the terminator.
int FromCodePage(const char* text, int length, WCHAR* out, int sizeBytes,
                 UINT codePage = kJapaneseCodePage);

// Returns true when each unit of the text, up to its terminator and at most maximum units, can be
// represented in code page 932. Otherwise *index, unless null, receives the index of the first unit
// that cannot.
bool IsCp932Representable(const WCHAR* text, int maximum, int* index);

// The byte-form functions of the platform convert by the process's ANSI code page, whatever the
// bytes are. Returns whether bytes of code page 932 pass through it and back unchanged. At most 63
// bytes.
bool SurvivesAnsiCodePage(const char* bytes);
// Returns whether such a function reads bytes as this text, of at most 259 units.
bool ReadsAsInAnsiCodePage(const char* bytes, const WCHAR* text);

// The part of a printer name that CutPrinterName and PrinterNamePart return.
enum PrinterNameMode : int {
  kWholeName = 0,
  kStripPort = 1,    // up to the first ","
  kStripServer = 2,  // after the last "\", up to the next ","
};
struct TextSpan {
  const WCHAR* start;
  size_t length;
};
// Returns a part of a name without copying it.
TextSpan PrinterNamePart(const WCHAR* name, int mode);
// Copies a part of a name, at most n - 1 units, and terminates. Returns false and an empty text
// when name is null or mode is unknown.
bool CutPrinterName(WCHAR* out, size_t n, const WCHAR* name, int mode);

// Parses a decimal number after leading white space (spaces only in 8-bit text). Returns 0 when
// there is no digit. Saturates at the limits of 32 bits. text must not be null.
LONG IntegerFromText(const WCHAR* text);
LONG IntegerFromText(const char* text);

// Writes a number with a sign when negative and at least `least` digits of base 2 to 16, in lower
// case. Does not terminate. Returns the end of the output; base 10 needs at most 11 characters.
char* WriteNumber(char* out, LONG value, unsigned base = 10, int least = 1);

}  // namespace kestrel
