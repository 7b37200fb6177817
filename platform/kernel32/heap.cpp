// Heaps. Each block is an allocation of the C library, so that the address sanitizer detects an
// overrun on either side.
#include "platform/kernel32/heap.h"

#include <winbase.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <mutex>
#include <set>

#include "platform/machine/machine.h"

namespace platform {
namespace {

constexpr uintptr_t kProcessHeap = 0x1000;

struct Heaps {
  std::mutex mutex;
  std::map<uintptr_t, std::set<void*>> blocks = {{kProcessHeap, {}}};  // of each heap
  uintptr_t last = kProcessHeap;                                       // handles are never reused
};

// Never destroyed: modules may free blocks during the exit of the process.
Heaps& All() {
  static Heaps* heaps = new Heaps;
  return *heaps;
}

uintptr_t NumberOf(HANDLE heap) { return reinterpret_cast<uintptr_t>(heap); }

}  // namespace

int PrivateHeaps() {
  const std::lock_guard lock(All().mutex);
  return static_cast<int>(All().blocks.size()) - 1;
}

int HeapBlockCount() {
  const std::lock_guard lock(All().mutex);
  size_t count = 0;
  for (const auto& [heap, blocks] : All().blocks) count += blocks.size();
  return static_cast<int>(count);
}

}  // namespace platform

using namespace platform;

HANDLE WINAPI GetProcessHeap() { return reinterpret_cast<HANDLE>(kProcessHeap); }

HANDLE WINAPI HeapCreate(DWORD, SIZE_T, SIZE_T) {
  if (Machine::Current().faults.ShouldFail(Fault::kAllocation)) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return nullptr;
  }
  const std::lock_guard lock(All().mutex);
  const uintptr_t heap = All().last += 0x10;
  All().blocks[heap];
  return reinterpret_cast<HANDLE>(heap);
}

BOOL WINAPI HeapDestroy(HANDLE heap) {
  const std::lock_guard lock(All().mutex);
  const auto found = All().blocks.find(NumberOf(heap));
  if (found == All().blocks.end() || found->first == kProcessHeap) {
    SetLastError(ERROR_INVALID_HANDLE);
    return FALSE;
  }
  std::for_each(found->second.begin(), found->second.end(), std::free);
  All().blocks.erase(found);
  return TRUE;
}

LPVOID WINAPI HeapAlloc(HANDLE heap, DWORD flags, SIZE_T bytes) {
  // No block can have half the address space; a sanitizer would end a program that allocates one.
  if (bytes > SIZE_MAX / 2 || Machine::Current().faults.ShouldFail(Fault::kAllocation))
    return nullptr;
  const std::lock_guard lock(All().mutex);
  const auto found = All().blocks.find(NumberOf(heap));
  if (found == All().blocks.end()) return nullptr;
  // An empty block still has a unique address.
  const SIZE_T size = std::max<SIZE_T>(bytes, 1);
  void* block = (flags & HEAP_ZERO_MEMORY) != 0 ? std::calloc(1, size) : std::malloc(size);
  if (block != nullptr) found->second.insert(block);
  return block;
}

// Ends the process for a block that no heap contains: it was freed twice or never allocated.
BOOL WINAPI HeapFree(HANDLE heap, DWORD, LPVOID block) {
  if (block == nullptr) return TRUE;
  const std::lock_guard lock(All().mutex);
  const auto found = All().blocks.find(NumberOf(heap));
  if (found != All().blocks.end() && found->second.erase(block) > 0) {
    std::free(block);
    return TRUE;
  }
  const auto holds = [block](const auto& each) { return each.second.count(block) > 0; };
  if (std::none_of(All().blocks.begin(), All().blocks.end(), holds)) {
    std::fputs("HeapFree: a block that no heap holds\n", stderr);
    std::abort();
  }
  SetLastError(ERROR_INVALID_PARAMETER);
  return FALSE;
}
