// Reads and writes the keys of a backup file. Texts in the file are code page 932.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

namespace kestrel {

enum class TransferDirection { kLoad = 0, kSave = 1 };

enum class TransferStart {
  kReady,
  kBadPath,      // not representable in code page 932, or longer than 259 bytes there
  kBadCodePage,  // the ANSI code page changes the path, or the platform lacks code page 932
};

// A transfer: its file, its current section and its direction. On a load each key operation reads
// the file into the field, on a save it writes the field to the file. Transfers share no state, so
// that several property sheets of a process can run one each.
class ProfileIo {
 public:
  static constexpr int kSectionBytes = 64;  // of a section's name, terminator included

  // Prepares a transfer. Does not access the file. A name without a backslash refers to a file in
  // the system directory.
  TransferStart Open(const WCHAR* fileName, TransferDirection direction);
  bool Saving() const { return direction_ == TransferDirection::kSave; }

  // Selects the section for the operations that follow.
  void BeginSection(const WCHAR* name);
  // Selects a numbered section such as PAPER07.
  void BeginSection(const WCHAR* prefix, int number);
  // Deletes the current section; does nothing on a load.
  void ClearSection() const;
  // Returns true when the current section has at least one key.
  bool SectionHasKeys() const;

  // The operations below return, on a load, the number of elements that they found. They return 0
  // for a missing or empty value and, except NameField, do not change the field then. On a save
  // they return 1 on success and 0 on failure.
  int Int16Field(const char* key, void* field) const;
  int Int32Field(const char* key, void* field) const;
  // Transfers up to count 32-bit values, separated by ",". An empty element counts, but does not
  // change its field.
  int Int32List(const char* key, void* fields, int count) const;
  // Transfers a name in a field of units UTF-16 units. A missing or empty value clears the field.
  int NameField(const char* key, WCHAR* field, size_t units) const;
  // Transfers text of code page 932 without conversion; size is that of the buffer in bytes,
  // terminator included.
  int RawText(const char* key, char* buffer, int size) const;

 private:
  static constexpr int kPathBytes = 260;  // terminator included

  int Read(const char* key, char* value, int size) const;
  int Write(const char* key, char* value) const;
  int ReadList(const char* key, void* fields, int count, int width) const;
  int WriteList(const char* key, const void* fields, int count, int width) const;
  int TransferList(const char* key, void* fields, int count, int width) const;

  char path_[kPathBytes] = {};
  char section_[kSectionBytes] = {};
  TransferDirection direction_ = TransferDirection::kLoad;
};

}  // namespace kestrel
