// RAII owners of platform handles. Only the destructor and Reset release a handle.
#pragma once

#include <windows.h>
#include <winspool.h>

#include <utility>

namespace kestrel {

// Owns a handle of type H and releases it with Release::operator()(H). An empty owner holds H{}.
template <typename H, typename Release>
class UniqueHandle {
 public:
  UniqueHandle() = default;
  explicit UniqueHandle(H handle) : handle_(handle) {}
  UniqueHandle(UniqueHandle&& other) noexcept : handle_(std::exchange(other.handle_, H{})) {}
  UniqueHandle& operator=(UniqueHandle&& other) noexcept {
    if (this != &other) Reset(std::exchange(other.handle_, H{}));
    return *this;
  }
  UniqueHandle(const UniqueHandle&) = delete;
  UniqueHandle& operator=(const UniqueHandle&) = delete;
  ~UniqueHandle() { Reset(); }

  H get() const { return handle_; }
  explicit operator bool() const { return handle_ != H{}; }
  void Reset(H handle = H{}) {
    if (handle_ != H{}) Release{}(handle_);
    handle_ = handle;
  }

 private:
  H handle_ = H{};
};

struct CloseModule {
  void operator()(HMODULE module) const { FreeLibrary(module); }
};
struct ClosePrinterHandle {
  void operator()(HANDLE printer) const { ClosePrinter(printer); }
};
struct CloseKey {
  void operator()(HKEY key) const { RegCloseKey(key); }
};
struct FreeHeapBlock {
  void operator()(void* block) const { HeapFree(GetProcessHeap(), 0, block); }
};

using Module = UniqueHandle<HMODULE, CloseModule>;
using Printer = UniqueHandle<HANDLE, ClosePrinterHandle>;
using RegistryKey = UniqueHandle<HKEY, CloseKey>;

// Returns an entry point of a loaded module as a function pointer of type Proc; null when the
// module does not export it.
template <typename Proc>
Proc EntryPoint(HMODULE module, const char* name) {
  return reinterpret_cast<Proc>(reinterpret_cast<void (*)()>(GetProcAddress(module, name)));
}

// Owns a zero-filled block of the process heap. Empty when the allocation failed.
template <typename T>
class HeapBlock {
 public:
  HeapBlock() = default;
  explicit HeapBlock(size_t bytes) : block_(HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, bytes)) {}
  static HeapBlock One() { return HeapBlock(sizeof(T)); }
  T* get() const { return static_cast<T*>(block_.get()); }
  T& operator*() const { return *get(); }
  T* operator->() const { return get(); }
  explicit operator bool() const { return static_cast<bool>(block_); }

 private:
  UniqueHandle<void*, FreeHeapBlock> block_;
};

}  // namespace kestrel
