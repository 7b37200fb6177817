// A settings record as a caller hands it in: of any driver and version, at any address, with no
// length but its own word. Nothing behind dmSize + dmDriverExtra is ever read.
#pragma once

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <iterator>

namespace kestrel {

class RecordView {
 public:
  // record may be missing; its first 72 bytes, up to and with dmDriverExtra, must be readable.
  explicit RecordView(const void* record) : bytes_(static_cast<const BYTE*>(record)) {
    if (record == nullptr) return;
    std::memcpy(&publicSize_, bytes_ + offsetof(DEVMODEW, dmSize), sizeof publicSize_);
    std::memcpy(&privateSize_, bytes_ + offsetof(DEVMODEW, dmDriverExtra), sizeof privateSize_);
  }

  // A record that does not reach past dmFields tells nothing and counts as not given.
  bool given() const { return publicSize_ >= offsetof(DEVMODEW, dmFields) + sizeof(DWORD); }
  const BYTE* bytes() const { return bytes_; }
  size_t publicSize() const { return publicSize_; }
  size_t privateSize() const { return privateSize_; }
  size_t size() const { return size_t{publicSize_} + privateSize_; }

  // Copies a value out at an offset. False and *value unchanged unless the record's bytes, or its
  // public bytes, hold all of it.
  template <typename T>
  bool Read(size_t offset, T* value) const {
    return ReadWithin(size(), offset, value);
  }
  template <typename T>
  bool ReadPublic(size_t offset, T* value) const {
    return ReadWithin(publicSize_, offset, value);
  }

  // dmDeviceName, as far as the record holds it, terminated.
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

  const BYTE* bytes_;
  WORD publicSize_ = 0;
  WORD privateSize_ = 0;
};

}  // namespace kestrel
