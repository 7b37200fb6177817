// Code page 932 by tables that the C library's converter fills once.
#include <iconv.h>

#include <array>
#include <memory>

#include "platform/system/text.h"

namespace platform {
namespace {

constexpr WCHAR kNoMeaning = 0x30FB;  // what bytes without a meaning are read as
constexpr WCHAR kNone = 0xFFFF;

bool IsTrail(unsigned char byte) {
  return (byte >= 0x40 && byte <= 0x7E) || (byte >= 0x80 && byte <= 0xFC);
}

struct Tables {
  // By one byte, or by lead * 256 + trail; kNone: no meaning.
  std::array<WCHAR, 65536> wide;
  // By unit: the byte or lead * 256 + trail; 0: no form (unit 0 aside).
  std::array<WORD, 65536> bytes;
};

class Converter {
 public:
  Converter(const char* to, const char* from) : handle_(iconv_open(to, from)) {}
  ~Converter() {
    if (Valid()) iconv_close(handle_);
  }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;
  // Converts one character; answers the bytes written, 0 when it has no form.
  size_t Convert(const void* in, size_t size, void* out, size_t room) const {
    if (!Valid()) return 0;
    char* from = const_cast<char*>(static_cast<const char*>(in));
    char* to = static_cast<char*>(out);
    size_t left = size;
    size_t space = room;
    iconv(handle_, nullptr, nullptr, nullptr, nullptr);
    if (iconv(handle_, &from, &left, &to, &space) != 0 || left != 0) return 0;
    return room - space;
  }

 private:
  bool Valid() const { return handle_ != reinterpret_cast<iconv_t>(-1); }
  iconv_t handle_;
};

WCHAR WideOf(const Converter& converter, unsigned char first, int second) {
  const unsigned char in[2] = {first, static_cast<unsigned char>(second)};
  WCHAR out[2] = {};
  const size_t size = converter.Convert(in, second < 0 ? 1 : 2, out, sizeof(out));
  return size == sizeof(WCHAR) ? out[0] : kNone;
}

// Single bytes that the converter may not know but the system maps one to one.
WCHAR SystemSingle(unsigned byte) {
  if (byte < 0x80) return static_cast<WCHAR>(byte);
  if (byte == 0x80 || byte == 0xA0) return static_cast<WCHAR>(byte);
  if (byte >= 0xA1 && byte <= 0xDF) return static_cast<WCHAR>(0xFF61 + byte - 0xA1);
  if (byte >= 0xFD) return static_cast<WCHAR>(0xF8F1 + byte - 0xFD);
  return kNone;
}

std::unique_ptr<const Tables> Build() {
  auto tables = std::make_unique<Tables>();
  tables->wide.fill(kNone);
  tables->bytes.fill(0);
  const Converter decode("UTF-16LE", "CP932");
  const Converter encode("CP932", "UTF-16LE");
  for (unsigned byte = 0; byte < 256; ++byte) tables->wide[byte] = SystemSingle(byte);
  for (unsigned lead = 0x81; lead <= 0xFC; ++lead) {
    if (!IsCp932Lead(static_cast<unsigned char>(lead))) continue;
    for (unsigned trail = 0x40; trail <= 0xFC; ++trail) {
      if (!IsTrail(static_cast<unsigned char>(trail))) continue;
      tables->wide[lead * 256 + trail] =
          WideOf(decode, static_cast<unsigned char>(lead), static_cast<int>(trail));
    }
  }
  // A unit has a form only when that form converts back to the same unit; of several forms the
  // converter names the one that the system writes.
  for (unsigned code = 0; code < 65536; ++code) {
    const WCHAR unit = tables->wide[code];
    if (unit == kNone || tables->bytes[unit] != 0) continue;
    unsigned char out[4] = {};
    const size_t size = encode.Convert(&unit, sizeof(unit), out, sizeof(out));
    const unsigned named = size == 1 ? out[0] : size == 2 ? out[0] * 256u + out[1] : code;
    tables->bytes[unit] = static_cast<WORD>(tables->wide[named] == unit ? named : code);
  }
  return tables;
}

const Tables& Get() {
  static const std::unique_ptr<const Tables> tables = Build();
  return *tables;
}

// Bytes of a unit in code page 932: 1 or 2, written to out; 0 when it has no form.
int Encode(const Tables& tables, WCHAR unit, unsigned char (&out)[2]) {
  const WORD code = tables.bytes[unit];
  if (code == 0 && unit != 0) return 0;
  if (code < 256) {
    out[0] = static_cast<unsigned char>(code);
    return 1;
  }
  out[0] = HIBYTE(code);
  out[1] = LOBYTE(code);
  return 2;
}

// One character from at least one byte: its unit (kNone without a meaning) and its length.
WCHAR Decode(const Tables& tables, std::string_view bytes, size_t& length) {
  const auto first = static_cast<unsigned char>(bytes[0]);
  length = 1;
  if (!IsCp932Lead(first)) return tables.wide[first];
  if (bytes.size() < 2 || !IsTrail(static_cast<unsigned char>(bytes[1]))) return kNone;
  length = 2;
  return tables.wide[first * 256u + static_cast<unsigned char>(bytes[1])];
}

bool IsSupported(UINT codePage) {
  constexpr UINT kOem = 1, kThread = 3, kJapanese = 932;
  return codePage == CP_ACP || codePage == kOem || codePage == kThread || codePage == kJapanese;
}

int Fail(DWORD error) {
  SetLastError(error);
  return 0;
}

}  // namespace

bool IsCp932Lead(unsigned char byte) {
  return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
}

std::string ToCp932(std::u16string_view text, bool* lossless) {
  const Tables& tables = Get();
  std::string out;
  out.reserve(text.size() * 2);
  if (lossless != nullptr) *lossless = true;
  for (const WCHAR unit : text) {
    unsigned char bytes[2] = {'?', 0};
    int count = Encode(tables, unit, bytes);
    if (count == 0) {
      count = 1;
      if (lossless != nullptr) *lossless = false;
    }
    out.append(reinterpret_cast<const char*>(bytes), static_cast<size_t>(count));
  }
  return out;
}

std::u16string FromCp932(std::string_view bytes) {
  const Tables& tables = Get();
  std::u16string out;
  out.reserve(bytes.size());
  for (size_t length = 0; !bytes.empty(); bytes.remove_prefix(length)) {
    const WCHAR unit = Decode(tables, bytes, length);
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
  if (!IsSupported(codePage) || text == nullptr || units == 0 || units < -1 || size < 0 ||
      (size > 0 && out == nullptr)) {
    return Fail(ERROR_INVALID_PARAMETER);
  }
  const Tables& tables = Get();
  const size_t count = units < 0 ? View(text).size() + 1 : static_cast<size_t>(units);
  int written = 0;
  for (size_t i = 0; i < count; ++i) {
    unsigned char bytes[2] = {'?', 0};
    int length = Encode(tables, text[i], bytes);
    if (length == 0) {
      length = 1;
      if (defaultCharacter != nullptr) bytes[0] = static_cast<unsigned char>(*defaultCharacter);
      if (usedDefault != nullptr) *usedDefault = TRUE;
    }
    if (size > 0) {
      // What fits stays written, whole characters only.
      if (length > size - written) return Fail(ERROR_INSUFFICIENT_BUFFER);
      for (int k = 0; k < length; ++k) out[written + k] = static_cast<char>(bytes[k]);
    }
    written += length;
  }
  return written;
}

int WINAPI MultiByteToWideChar(UINT codePage, DWORD flags, LPCSTR text, int bytes, LPWSTR out,
                               int size) {
  if (!IsSupported(codePage) || text == nullptr || bytes == 0 || bytes < -1 || size < 0 ||
      (size > 0 && out == nullptr)) {
    return Fail(ERROR_INVALID_PARAMETER);
  }
  const Tables& tables = Get();
  std::string_view rest(
      text, bytes < 0 ? std::char_traits<char>::length(text) + 1 : static_cast<size_t>(bytes));
  int written = 0;
  for (size_t length = 0; !rest.empty(); rest.remove_prefix(length)) {
    WCHAR unit = Decode(tables, rest, length);
    if (unit == kNone) {
      if ((flags & MB_ERR_INVALID_CHARS) != 0) return Fail(ERROR_NO_UNICODE_TRANSLATION);
      unit = kNoMeaning;
    }
    if (size > 0) {
      if (written == size) return Fail(ERROR_INSUFFICIENT_BUFFER);
      out[written] = unit;
    }
    ++written;
  }
  return written;
}
