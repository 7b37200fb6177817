// Bounded access to a settings record of a caller: a record of any driver and version, at any
// alignment, whose length is known only from its own dmSize and dmDriverExtra. Bytes beyond
// dmSize + dmDriverExtra are never read. Another thread of the caller may write to the record
// meanwhile, so the constructor reads both sizes once and every check and copy uses these values.
#pragma once

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <iterator>

namespace kestrel {

class RecordView {
 public:
  // Represents a missing record.
  RecordView() = default;
  RecordView(decltype(nullptr)) {}
  // record may be null. Otherwise its first 72 bytes, which end with dmDriverExtra, must be
  // readable.
  explicit RecordView(const void* record) : bytes_(static_cast<const BYTE*>(record)) {
    if (record == nullptr) return;
    publicSize_ = ReadSize(offsetof(DEVMODEW, dmSize));
    privateSize_ = ReadSize(offsetof(DEVMODEW, dmDriverExtra));
  }

  // Returns false for a missing record and for one too short to contain dmFields.
  bool hasFields() const { return publicSize_ >= offsetof(DEVMODEW, dmFields) + sizeof(DWORD); }
  const BYTE* bytes() const { return bytes_; }
  size_t publicSize() const { return publicSize_; }
  size_t privateSize() const { return privateSize_; }
  size_t size() const { return size_t{publicSize_} + privateSize_; }

  // Copies the value at an offset. Returns false and leaves *value unchanged when the record (its
  // public part, for ReadPublic) does not contain the whole value.
  template <typename T>
  bool Read(size_t offset, T* value) const {
    return ReadWithin(size(), offset, value);
  }
  template <typename T>
  bool ReadPublic(size_t offset, T* value) const {
    return ReadWithin(publicSize_, offset, value);
  }

  // Copies the part of dmDeviceName that the record contains, and terminates it.
  void DeviceName(WCHAR (&name)[CCHDEVICENAME + 1]) const {
    std::fill(std::begin(name), std::end(name), WCHAR{});
    std::memcpy(name, bytes_, std::min(size_t{CCHDEVICENAME} * sizeof(WCHAR), size()));
  }

 private:
  template <typename T>
  bool ReadWithin(size_t end, size_t offset, T* value) const {
    if (offset + sizeof(T) > end) return false;
    std::memcpy(value, bytes_ + offset, sizeof(T));
    return true;
  }

  // Without volatile the compiler may read the caller's memory a second time.
  WORD ReadSize(size_t offset) const {
    const volatile BYTE* word = bytes_ + offset;
    const BYTE low = word[0];
    return static_cast<WORD>(word[1] << 8 | low);
  }

  const BYTE* bytes_ = nullptr;
  WORD publicSize_ = 0;
  WORD privateSize_ = 0;
};

}  // namespace kestrel
