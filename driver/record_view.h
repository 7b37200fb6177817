// A settings record as a caller hands it in: of any driver and version, at any address, with no
// length but its own word. Nothing behind dmSize + dmDriverExtra is ever read. The caller's other
// threads may write to it meanwhile: its sizes are read once, here and nowhere else, and every
// check and copy uses what was read.
#pragma once

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <iterator>

namespace kestrel {

class RecordView {
 public:
  // A record that is not given.
  RecordView() = default;
  RecordView(decltype(nullptr)) {}
  // record may be missing; its first 72 bytes, up to and with dmDriverExtra, must be readable.
  explicit RecordView(const void* record) : bytes_(static_cast<const BYTE*>(record)) {
    if (record == nullptr) return;
    publicSize_ = ReadSize(offsetof(DEVMODEW, dmSize));
    privateSize_ = ReadSize(offsetof(DEVMODEW, dmDriverExtra));
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
