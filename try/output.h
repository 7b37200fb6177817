// Text and JSON in UTF-8 for a standard handle.
#pragma once

#include <windows.h>

#include <cstddef>

namespace kestrel_try {

// Collects text and writes it to a standard handle in larger pieces. After a failed write it drops
// all further text.
class Output {
 public:
  // STD_OUTPUT_HANDLE or STD_ERROR_HANDLE.
  explicit Output(DWORD standardHandle) : handle_(GetStdHandle(standardHandle)) {}
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  Output& Put(char character);
  Output& Put(const char* text);
  Output& Put(LONG number);
  Output& Put(DWORD number);
  // UTF-16 up to its terminator, at most the given number of units. A lone surrogate becomes
  // U+FFFD.
  Output& Put(const WCHAR* text, size_t units = static_cast<size_t>(-1));
  // Writes the buffered text. Returns ERROR_SUCCESS, or the error of the first failed write.
  DWORD Flush();

 private:
  void PutCodePoint(DWORD codePoint);

  HANDLE handle_;
  DWORD error_ = ERROR_SUCCESS;
  size_t used_ = 0;
  char buffer_[1024];
};

// Writes a JSON array of calls, one object each. Members come in the order of the calls; a name is
// plain ASCII. Lists and nested objects are opened and closed by the caller.
class Json {
 public:
  explicit Json(Output& out) : out_(out) {}

  void OpenCalls() { out_.Put("["); }
  void CloseCalls() { out_.Put("\n]\n"); }
  // Begins an object on a new line: {"call": "export, what it gets".
  void OpenCall(const char* function, const char* arguments = nullptr);
  void CloseCall() { out_.Put('}'); }

  void Member(const char* name, LONG number);
  void Member(const char* name, DWORD number);
  void Member(const char* name, const char* text);
  void MemberText(const char* name, const WCHAR* text, size_t units);
  void MemberBytes(const char* name, const BYTE* bytes, size_t count);  // as hexadecimal digits
  // A member with a list or an object as its value.
  void OpenMember(const char* name, char bracket);
  void Close(char bracket) {
    out_.Put(bracket);
    first_ = false;
  }

  // Items of a list.
  void Item(LONG number);
  void ItemText(const WCHAR* text, size_t units);
  void ItemPair(LONG one, LONG other);

 private:
  void Separate();
  void Name(const char* name);
  void Quote(const WCHAR* text, size_t units);

  Output& out_;
  bool first_ = true;      // no item or member was written since the last bracket
  bool firstCall_ = true;  // no call was written
};

}  // namespace kestrel_try
