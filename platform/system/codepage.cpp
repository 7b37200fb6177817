// Code page 932 by tables that the C library's converter fills once.
#include <iconv.h>

#include <algorithm>
#include <array>
#include <memory>

#include "platform/system/last_error.h"
#include "platform/system/text.h"

namespace platform {
namespace {

constexpr WCHAR kNoMeaning = 0x30FB;  // what bytes without a meaning are read as
constexpr WCHAR kNone = 0xFFFF;

bool IsTrail(unsigned byte) { return byte >= 0x40 && byte <= 0xFC && byte != 0x7F; }

// A code is one byte, or lead * 256 + trail.
struct Tables {
  std::array<WCHAR, 65536> wide;  // by code; kNone: no meaning
  std::array<WORD, 65536> codes;  // by unit; 0: no form (unit 0 aside)
};

// Single bytes as the system maps them, some of which the converter does not know.
WCHAR WideOfByte(unsigned byte) {
  if (byte <= 0x80 || byte == 0xA0) return static_cast<WCHAR>(byte);
  if (byte >= 0xA1 && byte <= 0xDF) return static_cast<WCHAR>(0xFF61 + byte - 0xA1);
  return byte >= 0xFD ? static_cast<WCHAR>(0xF8F1 + byte - 0xFD) : kNone;
}

WCHAR WideOfPair(iconv_t converter, unsigned lead, unsigned trail) {
  char in[] = {static_cast<char>(lead), static_cast<char>(trail)};
  WCHAR out[2] = {};
  char *from = in, *to = reinterpret_cast<char*>(out);
  size_t left = sizeof(in), room = sizeof(out);
  iconv(converter, nullptr, nullptr, nullptr, nullptr);
  const bool whole = iconv(converter, &from, &left, &to, &room) == 0 && left == 0;
  return whole && room == sizeof(out) - sizeof(WCHAR) ? out[0] : kNone;
}

std::unique_ptr<const Tables> Build() {
  auto tables = std::make_unique<Tables>();
  tables->wide.fill(kNone);
  tables->codes.fill(0);
  for (unsigned byte = 0; byte < 256; ++byte) tables->wide[byte] = WideOfByte(byte);
  const iconv_t converter = iconv_open("UTF-16LE", "CP932");
  if (converter == reinterpret_cast<iconv_t>(-1)) return tables;
  for (unsigned code = 0x8140; code <= 0xFCFC; ++code) {
    if (IsCp932Lead(static_cast<unsigned char>(code >> 8)) && IsTrail(code & 0xFF)) {
      tables->wide[code] = WideOfPair(converter, code >> 8, code & 0xFF);
    }
  }
  iconv_close(converter);
  // Of the several forms of a unit the first counts, the rows 0xED and 0xEE last.
  const auto isLate = [](unsigned code) { return code >> 8 == 0xED || code >> 8 == 0xEE; };
  for (const bool late : {false, true}) {
    for (unsigned code = 1; code < 65536; ++code) {
      const WCHAR unit = tables->wide[code];
      if (unit == kNone || isLate(code) != late || tables->codes[unit] != 0) continue;
      tables->codes[unit] = static_cast<WORD>(code);
    }
  }
  return tables;
}

const Tables& Get() {
  static const std::unique_ptr<const Tables> tables = Build();
  return *tables;
}

// The text's bytes; of a unit without a form the default, which is told.
std::string Encoded(std::u16string_view text, char defaultByte, bool& usedDefault) {
  const Tables& tables = Get();
  std::string out;
  out.reserve(text.size() * 2);
  for (const WCHAR unit : text) {
    const WORD code = tables.codes[unit];
    const bool none = code == 0 && unit != 0;
    if (code >= 256) out.push_back(static_cast<char>(HIBYTE(code)));
    out.push_back(none ? defaultByte : static_cast<char>(LOBYTE(code)));
    usedDefault = usedDefault || none;
  }
  return out;
}

bool IsSupported(UINT codePage) {
  constexpr UINT kOem = 1, kThread = 3, kJapanese = 932;
  return codePage == CP_ACP || codePage == kOem || codePage == kThread || codePage == kJapanese;
}

bool AreValid(UINT codePage, const void* text, int length, const void* out, int size) {
  return IsSupported(codePage) && text != nullptr && length != 0 && length >= -1 && size >= 0 &&
         (size == 0 || out != nullptr);
}

// What fits stays written, whole characters only: as many units of the answer.
template <typename Text, typename Char>
int Answer(const Text& answer, size_t fitting, Char* out, int size) {
  if (size > 0) answer.copy(out, fitting);
  const bool fits = size == 0 || fitting == answer.size();
  return fits ? static_cast<int>(answer.size()) : Fail(ERROR_INSUFFICIENT_BUFFER);
}

}  // namespace

bool IsCp932Lead(unsigned char byte) {
  return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
}

std::string ToCp932(std::u16string_view text, bool* lossless) {
  bool lossy = false;
  std::string bytes = Encoded(text, '?', lossy);
  if (lossless != nullptr) *lossless = !lossy;
  return bytes;
}

std::u16string FromCp932(std::string_view bytes) {
  const Tables& tables = Get();
  std::u16string out;
  out.reserve(bytes.size());
  for (size_t i = 0; i < bytes.size(); ++i) {
    unsigned code = static_cast<unsigned char>(bytes[i]);
    if (IsCp932Lead(static_cast<unsigned char>(code)) && i + 1 < bytes.size() &&
        IsTrail(static_cast<unsigned char>(bytes[i + 1]))) {
      code = code << 8 | static_cast<unsigned char>(bytes[++i]);
    }
    const WCHAR unit = tables.wide[code];
    out.push_back(unit == kNone ? kNoMeaning : unit);
  }
  return out;
}

size_t WholeCp932(std::string_view bytes, size_t limit) {
  size_t whole = 0;
  while (whole < bytes.size()) {
    const bool pair = IsCp932Lead(static_cast<unsigned char>(bytes[whole])) &&
                      whole + 1 < bytes.size() && bytes[whole + 1] != 0;
    const size_t next = whole + (pair ? 2 : 1);
    if (next > limit) break;
    whole = next;
  }
  return whole;
}

}  // namespace platform

using namespace platform;

BOOL WINAPI IsDBCSLeadByteEx(UINT codePage, BYTE byte) {
  return IsSupported(codePage) && IsCp932Lead(byte);
}

int WINAPI WideCharToMultiByte(UINT codePage, DWORD, LPCWSTR text, int units, LPSTR out, int size,
                               LPCSTR defaultCharacter, LPBOOL usedDefault) {
  if (usedDefault != nullptr) *usedDefault = FALSE;
  if (!AreValid(codePage, text, units, out, size)) return Fail(ERROR_INVALID_PARAMETER);
  const size_t count = units < 0 ? View(text).size() + 1 : static_cast<size_t>(units);
  bool used = false;
  const std::string bytes =
      Encoded({text, count}, defaultCharacter == nullptr ? '?' : *defaultCharacter, used);
  if (usedDefault != nullptr) *usedDefault = used;
  return Answer(bytes, WholeCp932(bytes, static_cast<size_t>(size)), out, size);
}

int WINAPI MultiByteToWideChar(UINT codePage, DWORD, LPCSTR text, int bytes, LPWSTR out, int size) {
  if (!AreValid(codePage, text, bytes, out, size)) return Fail(ERROR_INVALID_PARAMETER);
  const size_t count = bytes < 0 ? std::string_view(text).size() + 1 : static_cast<size_t>(bytes);
  const std::u16string units = FromCp932({text, count});
  return Answer(units, std::min(units.size(), static_cast<size_t>(size)), out, size);
}
