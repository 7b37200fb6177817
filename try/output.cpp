#include "try/output.h"

namespace kestrel_try {
namespace {

constexpr DWORD kReplacement = 0xFFFD;

bool IsHighSurrogate(DWORD unit) { return unit >> 10 == 0xD800 >> 10; }
bool IsLowSurrogate(DWORD unit) { return unit >> 10 == 0xDC00 >> 10; }

constexpr char kHexDigits[] = "0123456789abcdef";

}  // namespace

Output& Output::Put(char character) {
  if (used_ == sizeof buffer_) Flush();
  buffer_[used_++] = character;
  return *this;
}

Output& Output::Put(const char* text) {
  for (; *text != 0; ++text) Put(*text);
  return *this;
}

Output& Output::Put(DWORD number) {
  char digits[10];
  char* first = digits + sizeof digits;
  do *--first = static_cast<char>('0' + number % 10);
  while ((number /= 10) != 0);
  while (first < digits + sizeof digits) Put(*first++);
  return *this;
}

Output& Output::Put(LONG number) {
  if (number < 0) Put('-');
  // The magnitude of the lowest number has no signed form.
  return Put(number < 0 ? 0 - static_cast<DWORD>(number) : static_cast<DWORD>(number));
}

Output& Output::Put(const WCHAR* text, size_t units) {
  for (size_t i = 0; i < units && text[i] != 0; ++i) {
    const DWORD unit = text[i];
    if (IsHighSurrogate(unit) && i + 1 < units && IsLowSurrogate(text[i + 1])) {
      PutCodePoint(0x10000 + ((unit & 0x3FF) << 10) + (DWORD{text[++i]} & 0x3FF));
    } else {
      PutCodePoint(IsHighSurrogate(unit) || IsLowSurrogate(unit) ? kReplacement : unit);
    }
  }
  return *this;
}

void Output::PutCodePoint(DWORD codePoint) {
  if (codePoint < 0x80) {
    Put(static_cast<char>(codePoint));
    return;
  }
  // The high bits of the first byte count the bytes; each following byte holds six bits.
  constexpr DWORD kFirst[] = {0, 0xC0, 0xE0, 0xF0};
  const int following = codePoint < 0x800 ? 1 : codePoint < 0x10000 ? 2 : 3;
  Put(static_cast<char>(kFirst[following] | codePoint >> (6 * following)));
  for (int i = following - 1; i >= 0; --i)
    Put(static_cast<char>(0x80 | (codePoint >> (6 * i) & 0x3F)));
}

DWORD Output::Flush() {
  size_t done = 0;
  while (done < used_ && error_ == ERROR_SUCCESS) {
    DWORD written = 0;
    if (!WriteFile(handle_, buffer_ + done, static_cast<DWORD>(used_ - done), &written, nullptr))
      error_ = GetLastError();
    else if (written == 0)
      error_ = ERROR_DISK_FULL;
    done += written;
  }
  used_ = 0;
  return error_;
}

void Json::OpenCall(const char* function, const char* arguments) {
  out_.Put(firstCall_ ? "\n{\"call\": \"" : ",\n{\"call\": \"").Put(function);
  if (arguments != nullptr) out_.Put(", ").Put(arguments);
  out_.Put('"');
  firstCall_ = false;
  first_ = false;
}

void Json::Member(const char* name, LONG number) {
  Name(name);
  out_.Put(number);
}

void Json::Member(const char* name, DWORD number) {
  Name(name);
  out_.Put(number);
}

void Json::Member(const char* name, const char* text) {
  Name(name);
  out_.Put('"').Put(text).Put('"');
}

void Json::MemberText(const char* name, const WCHAR* text, size_t units) {
  Name(name);
  Quote(text, units);
}

void Json::MemberBytes(const char* name, const BYTE* bytes, size_t count) {
  Name(name);
  out_.Put('"');
  for (size_t i = 0; i < count; ++i)
    out_.Put(kHexDigits[bytes[i] >> 4]).Put(kHexDigits[bytes[i] & 0xF]);
  out_.Put('"');
}

void Json::OpenMember(const char* name, char bracket) {
  Name(name);
  out_.Put(bracket);
  first_ = true;
}

void Json::Item(LONG number) {
  Separate();
  out_.Put(number);
}

void Json::ItemText(const WCHAR* text, size_t units) {
  Separate();
  Quote(text, units);
}

void Json::ItemPair(LONG one, LONG other) {
  Separate();
  out_.Put('[').Put(one).Put(", ").Put(other).Put(']');
}

void Json::Separate() {
  if (!first_) out_.Put(", ");
  first_ = false;
}

void Json::Name(const char* name) {
  Separate();
  out_.Put('"').Put(name).Put("\": ");
}

void Json::Quote(const WCHAR* text, size_t units) {
  out_.Put('"');
  size_t start = 0;
  size_t at = 0;
  for (; at < units && text[at] != 0; ++at) {
    const WCHAR unit = text[at];
    if (unit >= 0x20 && unit != TEXT('"') && unit != TEXT('\\')) continue;
    out_.Put(text + start, at - start);
    if (unit >= 0x20)
      out_.Put('\\').Put(static_cast<char>(unit));
    else
      out_.Put("\\u00").Put(kHexDigits[unit >> 4]).Put(kHexDigits[unit & 0xF]);
    start = at + 1;
  }
  out_.Put(text + start, at - start).Put('"');
}

}  // namespace kestrel_try
