// The context of one backup transfer: path, current section, and whether fields are read or
// written. Every key operation follows its direction. Texts in the file are code page 932.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

namespace kestrel {

enum class TransferDirection { kLoad = 0, kSave = 1 };

enum class TransferStart {
  kReady,
  kBadPath,      // no form in code page 932, or longer than 259 bytes there
  kBadCodePage,  // the platform would read the path as another one, or lacks code page 932
};

// One transfer. Sections and keys are those of the file, names in the memory are UTF-16. Transfers
// share nothing, so that the sheets of one process can run one each.
class ProfileIo {
 public:
  static constexpr int kSectionBytes = 64;  // of a section's name, terminator included

  // Prepares a transfer with a file; touches nothing. A name without a backslash names a file in
  // the system directory.
  TransferStart Open(const WCHAR* fileName, TransferDirection direction);
  bool Saving() const { return direction_ == TransferDirection::kSave; }

  // Selects the section that the next operations use.
  void BeginSection(const WCHAR* name);
  // Selects a numbered section such as PAPER07.
  void BeginSection(const WCHAR* prefix, int number);
  // Deletes the current section; does nothing on a load.
  void ClearSection() const;
  // Returns whether the current section holds at least one key.
  bool SectionHasKeys() const;

  // A read returns how many elements it found, 0 for a missing or empty value, and then changes
  // nothing; a write returns whether the platform wrote (1 or 0).
  int Int16Field(const char* key, void* field) const;
  int Int32Field(const char* key, void* field) const;
  // Up to count 32-bit values joined by ","; an empty element leaves its value and counts.
  int Int32List(const char* key, void* fields, int count) const;
  // A name in a field of units UTF-16 units; a missing or empty value reads as the empty name.
  int NameField(const char* key, WCHAR* field, size_t units) const;
  // Text of code page 932, not converted, in a buffer of size bytes, terminator included.
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
