#include "files/profile_io.h"

#include <algorithm>
#include <cstring>

#include "driver/text.h"

namespace kestrel {
namespace {

// Lengths in bytes, terminator included.
constexpr int kValueLength = 256;   // of a number or a list
constexpr int kElementLength = 16;  // of an element of a list
constexpr int kNameBytes = 64;      // of a name

// Stores the low width bytes of a number in a field, which may be unaligned.
void StoreNumber(void* field, LONG value, int width) {
  std::memcpy(field, &value, static_cast<size_t>(width));
}

// Returns the signed number of width bytes, 2 or 4, in a field.
LONG LoadNumber(const void* field, int width) {
  int16_t narrow = 0;
  LONG value = 0;
  if (width != sizeof(narrow)) {
    std::memcpy(&value, field, sizeof(value));
    return value;
  }
  std::memcpy(&narrow, field, sizeof(narrow));
  return narrow;
}

// Truncates text of code page 932 to fewer than size bytes without splitting a character.
void TruncateText(char* text, size_t size) {
  size_t end = 0;
  for (;;) {
    const size_t width = IsDBCSLeadByteEx(kJapaneseCodePage, static_cast<BYTE>(text[end])) ? 2 : 1;
    if (end + width >= size || text[end + width - 1] == 0) break;
    end += width;
  }
  text[end] = 0;
}

}  // namespace

TransferStart ProfileIo::Open(const WCHAR* fileName, TransferDirection direction) {
  WCHAR path[2 * MAX_PATH] = {};
  const WCHAR* end = fileName + TextLength(fileName);
  if (std::find(fileName, end, WCHAR{'\\'}) == end) {
    const UINT length = GetSystemDirectoryW(path, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) return TransferStart::kBadPath;
    if (path[length - 1] != '\\') AppendText(path, TEXT("\\"));
  }
  AppendText(path, fileName);
  const int length = TextLength(path);
  if (!IsCp932Representable(path, length, nullptr)) return TransferStart::kBadPath;
  char bytes[2 * 2 * MAX_PATH];
  if (ToCodePage(path, -1, bytes, sizeof(bytes)) >= kPathBytes) return TransferStart::kBadPath;
  // Without code page 932 the converted path is empty, which is not the path either.
  if (!ReadsAsInAnsiCodePage(bytes, path)) return TransferStart::kBadCodePage;
  std::memcpy(path_, bytes, kPathBytes);
  direction_ = direction;
  return TransferStart::kReady;
}

void ProfileIo::BeginSection(const WCHAR* name) { ToCodePage(name, -1, section_, kSectionBytes); }

void ProfileIo::BeginSection(const WCHAR* prefix, int number) {
  BeginSection(prefix);
  const size_t length = std::strlen(section_);
  *WriteNumber(section_ + length, number, 10, 2) = 0;
}

int ProfileIo::Read(const char* key, char* value, int size) const {
  return static_cast<int>(
      GetPrivateProfileStringA(section_, key, "", value, static_cast<DWORD>(size), path_));
}

// Replaces control characters by spaces, because a line break in a value would start another key.
int ProfileIo::Write(const char* key, char* value) const {
  for (char* c = value; *c != 0; ++c) {
    if (static_cast<unsigned char>(*c) < ' ') *c = ' ';
  }
  return WritePrivateProfileStringA(section_, key, value, path_) ? 1 : 0;
}

void ProfileIo::ClearSection() const {
  if (Saving()) WritePrivateProfileStringA(section_, nullptr, nullptr, path_);
}

bool ProfileIo::SectionHasKeys() const {
  char keys[kNameBytes];
  return Read(nullptr, keys, kNameBytes) != 0;
}

int ProfileIo::ReadList(const char* key, void* fields, int count, int width) const {
  char value[kValueLength];
  if (Read(key, value, kValueLength) == 0) return 0;
  auto* field = static_cast<uint8_t*>(fields);
  const char* rest = value;
  int found = 0;
  while (found < count && *rest != 0) {
    size_t length = 0;
    while (rest[length] != 0 && rest[length] != ',') ++length;
    if (length != 0) {
      char element[kElementLength] = {};
      std::memcpy(element, rest, std::min(length, size_t{kElementLength - 1}));
      StoreNumber(field, IntegerFromText(element), width);
    }
    field += width;
    ++found;
    rest += length;
    if (*rest == ',') ++rest;
  }
  return found;
}

int ProfileIo::WriteList(const char* key, const void* fields, int count, int width) const {
  char value[kValueLength];
  char* end = value;
  for (int i = 0; i < count && end + kElementLength < value + kValueLength; ++i) {
    if (i > 0) *end++ = ',';
    end = WriteNumber(end, LoadNumber(static_cast<const uint8_t*>(fields) + i * width, width));
  }
  *end = 0;
  return Write(key, value);
}

int ProfileIo::TransferList(const char* key, void* fields, int count, int width) const {
  return Saving() ? WriteList(key, fields, count, width) : ReadList(key, fields, count, width);
}

int ProfileIo::Int16Field(const char* key, void* field) const {
  return TransferList(key, field, 1, sizeof(int16_t));
}
int ProfileIo::Int32Field(const char* key, void* field) const {
  return TransferList(key, field, 1, sizeof(LONG));
}
int ProfileIo::Int32List(const char* key, void* fields, int count) const {
  return TransferList(key, fields, count, sizeof(LONG));
}

int ProfileIo::NameField(const char* key, WCHAR* field, size_t units) const {
  char bytes[2 * kNameBytes];
  if (Saving()) {
    ToCodePage(field, BoundedLength(field, units), bytes, kNameBytes);
    return Write(key, bytes);
  }
  const int length = Read(key, bytes, sizeof(bytes));
  TruncateText(bytes, kNameBytes);
  WCHAR name[kNameBytes];
  FromCodePage(bytes, -1, name, sizeof(name));
  std::memset(field, 0, units * sizeof(WCHAR));
  CopyText(field, units, name);
  return length != 0 ? 1 : 0;
}

int ProfileIo::RawText(const char* key, char* buffer, int size) const {
  char value[kValueLength];
  if (Saving()) {
    const size_t length = std::min(std::strlen(buffer), sizeof(value) - 1);
    std::memcpy(value, buffer, length);
    value[length] = 0;
    return Write(key, value);
  }
  if (Read(key, value, kValueLength) == 0) return 0;
  TruncateText(value, static_cast<size_t>(size));
  std::memset(buffer, 0, static_cast<size_t>(size));
  std::memcpy(buffer, value, std::strlen(value));
  return 1;
}

}  // namespace kestrel
