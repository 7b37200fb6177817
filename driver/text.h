// Texts: bounded copies, code page 932, printer names and numbers in text. Everything that leaves
// the driver in 8-bit form is code page 932, whatever the system's ANSI code page is.
#pragma once

#include <windows.h>

#include <algorithm>
#include <cstddef>

namespace kestrel {

constexpr UINT kJapaneseCodePage = 932;
constexpr UINT kSystemCodePage = static_cast<UINT>(-1);  // stands for the system's ANSI code page

// Length of a text in a field of n units that need not be terminated; at most n. A missing text has
// length 0.
int BoundedLength(const WCHAR* text, size_t n);
int TextLength(const WCHAR* text);

// Copies at most n - 1 units of a text (none when missing) and terminates; answers the units
// copied. Does nothing when n is 0.
int CopyText(WCHAR* out, size_t n, const WCHAR* text);
// As CopyText, from a field of fieldUnits units that need not be terminated.
int CopyField(WCHAR* out, size_t n, const WCHAR* field, size_t fieldUnits);
// Appends what fits behind the text in out (n units in all) and terminates.
int AppendText(WCHAR* out, size_t n, const WCHAR* text);
// The same into a whole array, whose rest is cleared: no field of a record keeps the tail of an
// older text.
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

// Exact comparison of UTF-16 units; a missing text equals the empty one.
bool SameText(const WCHAR* a, const WCHAR* b);
// Comparison that ignores letter case.
bool SameTextIgnoringCase(const WCHAR* a, const WCHAR* b);

// UTF-16 to a code page (WideCharToMultiByte without a default character). length in units, -1:
// terminated. Clears the output (size bytes), never splits a double-byte character, always
// terminates; answers the bytes of the result.
int ToCodePage(const WCHAR* text, int length, char* out, int size,
               UINT codePage = kJapaneseCodePage);
// A code page to UTF-16 (MultiByteToWideChar). length in bytes, -1: terminated; sizeBytes is that
// of the output in bytes. Clears the output, always terminates; answers the units of the result.
int FromCodePage(const char* text, int length, WCHAR* out, int sizeBytes,
                 UINT codePage = kJapaneseCodePage);

// Whether each unit of the text (at most maximum, up to its terminator) has a form in code page
// 932; "?" itself has. The index of the first that has none is stored in *index when given.
bool IsCp932Representable(const WCHAR* text, int maximum, int* index);

// The byte-form functions of the platform convert by the process's ANSI code page, whatever the
// bytes are. Returns whether bytes of code page 932 pass through it and back unchanged. At most 63
// bytes.
bool SurvivesAnsiCodePage(const char* bytes);
// Returns whether such a function reads bytes as this text, of at most 259 units.
bool ReadsAsInAnsiCodePage(const char* bytes, const WCHAR* text);

// Parts of a printer name.
enum PrinterNameMode : int {
  kWholeName = 0,
  kNameBeforePort = 1,    // up to its first ","
  kNameBehindServer = 2,  // behind its last "\", then up to the first "," of that
};
struct TextSpan {
  const WCHAR* start;
  size_t length;
};
// The part within a name; of no name an empty one.
TextSpan PrinterNamePart(const WCHAR* name, int mode);
// Copies a part, at most n - 1 units, always terminated; false and an empty output when there is no
// name or no such mode.
bool CutPrinterName(WCHAR* out, size_t n, const WCHAR* name, int mode);

// The decimal number behind leading blanks; 0 without digits. Saturates at the limits of 32 bits.
LONG IntegerFromText(const WCHAR* text);
// The same for 8-bit text.
LONG IntegerFromText(const char* text);

// Writes a number in digits of base 2 to 16 (those above 9 in lower case), at least so many, a
// negative one with its sign in front. Does not terminate; answers the end. Base 10 takes at most
// 11 characters.
char* PutNumber(char* out, LONG value, unsigned base = 10, int least = 1);

}  // namespace kestrel
