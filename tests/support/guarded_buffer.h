// Memory whose last byte lies in front of a page that nobody may touch.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstring>
#include <span>
#include <stdexcept>

namespace support {

class GuardedBuffer {
 public:
  // size bytes, zeroed, ending where the forbidden page begins. Not aligned beyond what size gives.
  explicit GuardedBuffer(size_t size) : size_(size), open_((size + kPage - 1) / kPage * kPage) {
    void* map =
        mmap(nullptr, open_ + kPage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (map == MAP_FAILED) throw std::runtime_error("no memory for a guarded buffer");
    map_ = static_cast<std::byte*>(map);
    mprotect(map_ + open_, kPage, PROT_NONE);
  }
  GuardedBuffer(const void* bytes, size_t size) : GuardedBuffer(size) {
    if (size > 0) std::memcpy(data(), bytes, size);
  }
  ~GuardedBuffer() { munmap(map_, open_ + kPage); }
  GuardedBuffer(const GuardedBuffer&) = delete;
  GuardedBuffer& operator=(const GuardedBuffer&) = delete;

  std::byte* data() const { return map_ + open_ - size_; }
  size_t size() const { return size_; }
  std::span<std::byte> bytes() const { return {data(), size_}; }
  template <typename T>
  T* As() const {
    return static_cast<T*>(static_cast<void*>(data()));
  }
  // Makes the contents read-only from here on, so that a write is seen at once.
  void Protect() const { mprotect(map_, open_, PROT_READ); }

 private:
  static inline const auto kPage = static_cast<size_t>(sysconf(_SC_PAGESIZE));
  size_t size_, open_;
  std::byte* map_ = nullptr;
};

}  // namespace support
