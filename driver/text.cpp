#include "driver/text.h"

#include <algorithm>
#include <cstring>

#include "driver/integer_text.h"

namespace kestrel {

namespace {

UINT SystemCodePage(UINT codePage) { return codePage == kSystemCodePage ? CP_ACP : codePage; }

// Without this flag a yen sign (U+00A5) would be converted to a backslash.
DWORD ConversionFlags(UINT codePage) {
  return codePage == kJapaneseCodePage ? WC_NO_BEST_FIT_CHARS : 0;
}

int BytesNeeded(UINT codePage, const WCHAR* text, int units) {
  if (units == 0) return 0;
  return WideCharToMultiByte(SystemCodePage(codePage), ConversionFlags(codePage), text, units,
                             nullptr, 0, nullptr, nullptr);
}

// Returns the length of the longest prefix whose conversion has at most limit bytes.
int UnitsThatFit(UINT codePage, const WCHAR* text, int units, int limit) {
  if (BytesNeeded(codePage, text, units) <= limit) return units;
  int fitting = 0;
  int tooMany = units;
  while (tooMany - fitting > 1) {
    const int middle = fitting + (tooMany - fitting) / 2;
    (BytesNeeded(codePage, text, middle) <= limit ? fitting : tooMany) = middle;
  }
  return fitting;
}

}  // namespace

int BoundedLength(const WCHAR* text, size_t n) {
  if (text == nullptr) return 0;
  return static_cast<int>(std::find(text, text + n, WCHAR{}) - text);
}

int TextLength(const WCHAR* text) {
  if (text == nullptr) return 0;
  const WCHAR* end = text;
  while (*end != 0) ++end;
  return static_cast<int>(end - text);
}

int CopyText(WCHAR* out, size_t n, const WCHAR* text) { return CopyField(out, n, text, n); }

int CopyField(WCHAR* out, size_t n, const WCHAR* field, size_t fieldUnits) {
  if (n == 0) return 0;
  const int length = BoundedLength(field, std::min(n - 1, fieldUnits));
  std::copy_n(field, length, out);
  out[length] = 0;
  return length;
}

int AppendText(WCHAR* out, size_t n, const WCHAR* text) {
  const int used = BoundedLength(out, n);
  return CopyText(out + used, n - static_cast<size_t>(used), text);
}

bool SameText(const WCHAR* a, const WCHAR* b) {
  if (a == nullptr) a = TEXT("");
  if (b == nullptr) b = TEXT("");
  while (*a != 0 && *a == *b) ++a, ++b;
  return *a == *b;
}

bool SameTextIgnoringCase(const WCHAR* a, const WCHAR* b) {
  return lstrcmpiW(a != nullptr ? a : TEXT(""), b != nullptr ? b : TEXT("")) == 0;
}

int ToCodePage(const WCHAR* text, int length, char* out, int size, UINT codePage) {
  if (size <= 0) return 0;
  std::fill_n(out, size, '\0');
  if (text == nullptr) return 0;
  const int units = UnitsThatFit(codePage, text, length < 0 ? TextLength(text) : length, size - 1);
  if (units == 0) return 0;
  return WideCharToMultiByte(SystemCodePage(codePage), ConversionFlags(codePage), text, units, out,
                             size - 1, nullptr, nullptr);
}

int FromCodePage(const char* text, int length, WCHAR* out, int sizeBytes, UINT codePage) {
  const int capacity = sizeBytes / static_cast<int>(sizeof(WCHAR));
  if (capacity <= 0) return 0;
  std::fill_n(out, capacity, WCHAR{});
  if (text == nullptr) return 0;
  const UINT page = SystemCodePage(codePage);
  const auto ends = [&](int at) { return length < 0 ? text[at] == '\0' : at >= length; };
  // Converts character by character, because the number of units for invalid bytes depends on the
  // platform.
  int units = 0;
  for (int at = 0; units < capacity - 1 && !ends(at);) {
    const int bytes = IsDBCSLeadByteEx(page, static_cast<BYTE>(text[at])) ? 2 : 1;
    // An incomplete double-byte character at the end is dropped.
    if (bytes == 2 && ends(at + 1)) break;
    const int made =
        MultiByteToWideChar(page, 0, text + at, bytes, out + units, capacity - 1 - units);
    if (made == 0) break;
    units += made;
    at += bytes;
  }
  // Clears units of a last character that did not fit completely.
  std::fill_n(out + units, capacity - units, WCHAR{});
  return units;
}

bool IsCp932Representable(const WCHAR* text, int maximum, int* index) {
  if (text == nullptr) return true;
  for (int i = 0; i < maximum && text[i] != 0; ++i) {
    char converted[4] = {};
    ToCodePage(text + i, 1, converted, sizeof converted);
    if (converted[0] == '?' && text[i] != '?') {
      if (index != nullptr) *index = i;
      return false;
    }
  }
  return true;
}

bool SurvivesAnsiCodePage(const char* bytes) {
  constexpr int kLength = 64;
  WCHAR text[kLength];
  char back[kLength];
  FromCodePage(bytes, -1, text, sizeof text, kSystemCodePage);
  ToCodePage(text, -1, back, sizeof back, kSystemCodePage);
  return std::strcmp(bytes, back) == 0;
}

bool ReadsAsInAnsiCodePage(const char* bytes, const WCHAR* text) {
  WCHAR read[MAX_PATH];
  FromCodePage(bytes, -1, read, sizeof read, kSystemCodePage);
  return SameText(read, text);
}

TextSpan PrinterNamePart(const WCHAR* name, int mode) {
  const WCHAR* start = name;
  const WCHAR* end = name + TextLength(name);
  if (mode == kStripServer) {
    for (const WCHAR* unit = start; unit < end; ++unit) {
      if (*unit == '\\') start = unit + 1;
    }
  }
  if (mode != kWholeName) end = std::find(start, end, WCHAR{','});
  return {start, static_cast<size_t>(end - start)};
}

bool CutPrinterName(WCHAR* out, size_t n, const WCHAR* name, int mode) {
  if (n == 0) return false;
  std::fill_n(out, n, WCHAR{});
  if (name == nullptr || mode < kWholeName || mode > kStripServer) return false;
  const TextSpan part = PrinterNamePart(name, mode);
  CopyField(out, n, part.start, part.length);
  return true;
}

LONG IntegerFromText(const WCHAR* text) {
  while (*text == ' ' || (*text >= '\t' && *text <= '\r')) ++text;
  return ParseInteger(text);
}

LONG IntegerFromText(const char* text) {
  while (*text == ' ') ++text;
  return ParseInteger(text);
}

char* WriteNumber(char* out, LONG value, unsigned base, int least) {
  uint32_t magnitude = static_cast<uint32_t>(value);
  if (value < 0) {
    *out++ = '-';
    magnitude = 0 - magnitude;
  }
  int count = 0;
  for (uint32_t rest = magnitude; count < least || rest != 0; rest /= base) ++count;
  for (int i = count; i > 0; magnitude /= base) out[--i] = "0123456789abcdef"[magnitude % base];
  return out + count;
}

}  // namespace kestrel
