// Heaps and global memory. Each block is an allocation of the C library's, so that the address
// sanitizer sees an overrun; a header in front of it, closed to everybody else under that
// sanitizer, ties it to its heap.
#include "platform/system/heap.h"

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <new>

#include "platform/machine.h"

#if defined(__SANITIZE_ADDRESS__)
#define KESTREL_CLOSES_HEADERS 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KESTREL_CLOSES_HEADERS 1
#endif
#endif
#ifdef KESTREL_CLOSES_HEADERS
#include <sanitizer/asan_interface.h>
#endif

namespace platform {
namespace {

std::atomic<int> privateHeaps = 0;
std::atomic<int> liveBlocks = 0;

struct Heap;

struct alignas(std::max_align_t) Block {
  Heap* heap;
  Block* previous;
  Block* next;
  size_t size;
};

void Open([[maybe_unused]] Block* block) {
#ifdef KESTREL_CLOSES_HEADERS
  __asan_unpoison_memory_region(block, sizeof(Block));
#endif
}
void Close([[maybe_unused]] Block* block) {
#ifdef KESTREL_CLOSES_HEADERS
  __asan_poison_memory_region(block, sizeof(Block));
#endif
}

constexpr DWORD kHeapMark = 0x50414548;
constexpr size_t kPage = 4096;

struct Heap {
  DWORD mark = kHeapMark;
  size_t limit = 0;  // bytes in all; 0: grows
  size_t used = 0;
  Block* first = nullptr;
  std::mutex mutex;
};

void* DataOf(Block* block) { return block + 1; }
Block* BlockOf(const void* data) { return static_cast<Block*>(const_cast<void*>(data)) - 1; }

Heap* HeapOf(HANDLE handle) {
  auto* heap = static_cast<Heap*>(handle);
  return heap != nullptr && heap->mark == kHeapMark ? heap : nullptr;
}

void Link(Heap& heap, Block* block) {
  block->heap = &heap;
  block->previous = nullptr;
  block->next = heap.first;
  if (heap.first != nullptr) {
    Open(heap.first);
    heap.first->previous = block;
    Close(heap.first);
  }
  heap.first = block;
  heap.used += block->size;
}

void Unlink(Heap& heap, Block* block) {
  if (block->next != nullptr) {
    Open(block->next);
    block->next->previous = block->previous;
    Close(block->next);
  }
  if (block->previous != nullptr) {
    Open(block->previous);
    block->previous->next = block->next;
    Close(block->previous);
  } else {
    heap.first = block->next;
  }
  heap.used -= block->size;
}

void* Allocate(Heap& heap, bool zero, size_t bytes) {
  if (Machine::Current().faults.Strike(Fault::kAllocation)) return nullptr;
  if (bytes > SIZE_MAX - sizeof(Block)) return nullptr;
  const size_t total = sizeof(Block) + bytes;
  const std::lock_guard lock(heap.mutex);
  if (heap.limit != 0 && bytes > heap.limit - heap.used) return nullptr;
  auto* block = static_cast<Block*>(zero ? std::calloc(1, total) : std::malloc(total));
  if (block == nullptr) return nullptr;
  block->size = bytes;
  Link(heap, block);
  Close(block);
  ++liveBlocks;
  return DataOf(block);
}

bool Release(Heap& heap, void* data) {
  if (data == nullptr) return true;
  // Locked before the header is opened: a neighbour that comes or goes closes it again.
  const std::lock_guard lock(heap.mutex);
  Block* block = BlockOf(data);
  Open(block);
  if (block->heap != &heap) {
    Close(block);
    return false;
  }
  Unlink(heap, block);
  block->heap = nullptr;
  std::free(block);
  --liveBlocks;
  return true;
}

size_t SizeOf(Heap& heap, const void* data) {
  const std::lock_guard lock(heap.mutex);
  Block* block = BlockOf(data);
  Open(block);
  const size_t size = block->size;
  Close(block);
  return size;
}

// Both live as long as the process.
Heap& ProcessHeap() {
  static Heap* heap = new Heap;
  return *heap;
}
Heap& GlobalHeap() {
  static Heap* heap = new Heap;
  return *heap;
}

}  // namespace

int PrivateHeaps() { return privateHeaps; }
int HeapBlockCount() { return liveBlocks; }

}  // namespace platform

using namespace platform;

HANDLE WINAPI GetProcessHeap() { return &ProcessHeap(); }

HANDLE WINAPI HeapCreate(DWORD, SIZE_T, SIZE_T maximumSize) {
  auto* heap =
      Machine::Current().faults.Strike(Fault::kAllocation) ? nullptr : new (std::nothrow) Heap;
  if (heap == nullptr) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return nullptr;
  }
  if (maximumSize != 0) heap->limit = (maximumSize + kPage - 1) / kPage * kPage;
  ++privateHeaps;
  return heap;
}

BOOL WINAPI HeapDestroy(HANDLE handle) {
  Heap* heap = HeapOf(handle);
  if (heap == nullptr || heap == &ProcessHeap()) {
    SetLastError(ERROR_INVALID_HANDLE);
    return FALSE;
  }
  for (Block* block = heap->first; block != nullptr;) {
    Open(block);
    Block* next = block->next;
    std::free(block);
    --liveBlocks;
    block = next;
  }
  heap->mark = 0;
  delete heap;
  --privateHeaps;
  return TRUE;
}

LPVOID WINAPI HeapAlloc(HANDLE handle, DWORD flags, SIZE_T bytes) {
  Heap* heap = HeapOf(handle);
  return heap == nullptr ? nullptr : Allocate(*heap, (flags & HEAP_ZERO_MEMORY) != 0, bytes);
}

BOOL WINAPI HeapFree(HANDLE handle, DWORD, LPVOID block) {
  Heap* heap = HeapOf(handle);
  if (heap != nullptr && Release(*heap, block)) return TRUE;
  SetLastError(ERROR_INVALID_PARAMETER);
  return FALSE;
}

// A movable block stays where it is; its handle is its address.
HGLOBAL WINAPI GlobalAlloc(UINT flags, SIZE_T bytes) {
  void* block = Allocate(GlobalHeap(), (flags & GMEM_ZEROINIT) != 0, bytes);
  if (block == nullptr) SetLastError(ERROR_NOT_ENOUGH_MEMORY);
  return block;
}
LPVOID WINAPI GlobalLock(HGLOBAL block) { return block; }
BOOL WINAPI GlobalUnlock(HGLOBAL) { return TRUE; }
SIZE_T WINAPI GlobalSize(HGLOBAL block) {
  return block == nullptr ? 0 : SizeOf(GlobalHeap(), block);
}
HGLOBAL WINAPI GlobalFree(HGLOBAL block) {
  if (Release(GlobalHeap(), block)) return nullptr;
  SetLastError(ERROR_INVALID_HANDLE);
  return block;
}
