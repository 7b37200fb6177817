// Memory that ends at an inaccessible page, so that an access beyond its end faults.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstring>
#include <span>

namespace support {

class GuardedBuffer {
 public:
  // Allocates size zero bytes. The end is page-aligned; the start is aligned as size permits.
  explicit GuardedBuffer(size_t size) : size_(size), open_((size + kPage - 1) / kPage * kPage) {
    map_ = static_cast<std::byte*>(
        mmap(nullptr, open_ + kPage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    mprotect(map_ + open_, kPage, PROT_NONE);
  }
  // Copies the bytes and makes them read-only.
  GuardedBuffer(const void* bytes, size_t size) : GuardedBuffer(size) {
    if (size > 0) std::memcpy(data(), bytes, size);
    mprotect(map_, open_, PROT_READ);
  }
  ~GuardedBuffer() { munmap(map_, open_ + kPage); }
  GuardedBuffer& operator=(GuardedBuffer&&) = delete;

  std::byte* data() const { return map_ + open_ - size_; }
  std::span<std::byte> bytes() const { return {data(), size_}; }
  template <typename T>
  T* As() const {
    return static_cast<T*>(static_cast<void*>(data()));
  }

 private:
  static inline const auto kPage = static_cast<size_t>(sysconf(_SC_PAGESIZE));
  size_t size_, open_;
  std::byte* map_ = nullptr;
};

}  // namespace support
