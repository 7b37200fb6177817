#include "files/profile_io.h"

#include <algorithm>
#include <cstring>

#include "driver/text.h"

namespace kestrel {
namespace {

constexpr int kPathLength = 260;  // bytes, terminator included
constexpr int kSectionLength = 64;
constexpr int kValueLength = 256;   // of a number or a list, terminator included
constexpr int kElementLength = 16;  // of one element of a list
constexpr int kNameBytes = 64;      // of a name

struct ProfileIo {
  char path[kPathLength];
  char section[kSectionLength];
  TransferDirection direction;
};

// One transfer at a time runs in a process.
ProfileIo context;

int Read(const char* key, char* value, int size) {
  return static_cast<int>(GetPrivateProfileStringA(context.section, key, "", value,
                                                   static_cast<DWORD>(size), context.path));
}

// A line break in a value would begin another key.
int Write(const char* key, char* value) {
  for (char* c = value; *c != 0; ++c) {
    if (static_cast<unsigned char>(*c) < ' ') *c = ' ';
  }
  return WritePrivateProfileStringA(context.section, key, value, context.path) ? 1 : 0;
}

// Stores a number as the low bytes of a field that need not be aligned.
void StoreNumber(void* field, LONG value, int width) {
  std::memcpy(field, &value, static_cast<size_t>(width));
}

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

int ReadList(const char* key, void* fields, int count, int width) {
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

int WriteList(const char* key, const void* fields, int count, int width) {
  char value[kValueLength];
  char* end = value;
  for (int i = 0; i < count && end + kElementLength < value + kValueLength; ++i) {
    if (i > 0) *end++ = ',';
    end = PutNumber(end, LoadNumber(static_cast<const uint8_t*>(fields) + i * width, width));
  }
  *end = 0;
  return Write(key, value);
}

int TransferList(const char* key, void* fields, int count, int width) {
  return Saving() ? WriteList(key, fields, count, width) : ReadList(key, fields, count, width);
}

// Cuts a text of code page 932 to fewer than size bytes without splitting a character.
void CutText(char* text, size_t size) {
  size_t end = 0;
  for (;;) {
    const size_t width = IsDBCSLeadByteEx(kJapaneseCodePage, static_cast<BYTE>(text[end])) ? 2 : 1;
    if (end + width >= size || text[end + width - 1] == 0) break;
    end += width;
  }
  text[end] = 0;
}

}  // namespace

bool BeginTransfer(const WCHAR* fileName, TransferDirection direction) {
  WCHAR path[2 * MAX_PATH] = {};
  const WCHAR* end = fileName + TextLength(fileName);
  if (std::find(fileName, end, WCHAR{'\\'}) == end) {
    const UINT length = GetSystemDirectoryW(path, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) return false;
    if (path[length - 1] != '\\') AppendText(path, TEXT("\\"));
  }
  AppendText(path, fileName);
  const int length = TextLength(path);
  if (!IsCp932Representable(path, length, nullptr)) return false;
  char bytes[2 * 2 * MAX_PATH];
  if (ToCodePage(path, -1, bytes, sizeof(bytes)) >= kPathLength) return false;
  context = {};
  std::memcpy(context.path, bytes, kPathLength);
  context.direction = direction;
  return true;
}

bool Saving() { return context.direction == TransferDirection::kSave; }

void BeginSection(const WCHAR* name) { ToCodePage(name, -1, context.section, kSectionLength); }

void BeginSection(const WCHAR* prefix, int number) {
  BeginSection(prefix);
  const size_t length = std::strlen(context.section);
  *PutNumber(context.section + length, number, 10, 2) = 0;
}

void ClearSection() {
  if (Saving()) WritePrivateProfileStringA(context.section, nullptr, nullptr, context.path);
}

bool SectionHasKeys() {
  char keys[kNameBytes];
  return Read(nullptr, keys, kNameBytes) != 0;
}

int Int16Field(const char* key, void* field) {
  return TransferList(key, field, 1, sizeof(int16_t));
}
int Int32Field(const char* key, void* field) { return TransferList(key, field, 1, sizeof(LONG)); }
int Int32List(const char* key, void* fields, int count) {
  return TransferList(key, fields, count, sizeof(LONG));
}

int NameField(const char* key, WCHAR* field, size_t units) {
  char bytes[2 * kNameBytes];
  if (Saving()) {
    ToCodePage(field, BoundedLength(field, units), bytes, kNameBytes);
    return Write(key, bytes);
  }
  const int length = Read(key, bytes, sizeof(bytes));
  CutText(bytes, kNameBytes);
  WCHAR name[kNameBytes];
  FromCodePage(bytes, -1, name, sizeof(name));
  std::memset(field, 0, units * sizeof(WCHAR));
  CopyText(field, units, name);
  return length != 0 ? 1 : 0;
}

int RawText(const char* key, char* buffer, int size) {
  char value[kValueLength];
  if (Saving()) {
    const size_t length = std::min(std::strlen(buffer), sizeof(value) - 1);
    std::memcpy(value, buffer, length);
    value[length] = 0;
    return Write(key, value);
  }
  if (Read(key, value, kValueLength) == 0) return 0;
  CutText(value, static_cast<size_t>(size));
  std::memset(buffer, 0, static_cast<size_t>(size));
  std::memcpy(buffer, value, std::strlen(value));
  return 1;
}

}  // namespace kestrel
