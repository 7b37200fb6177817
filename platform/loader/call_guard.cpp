#include "platform/loader/call_guard.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <shared_mutex>

namespace platform {
namespace {

struct GuardedImage {
  uintptr_t start, size;
  std::vector<uint32_t> targets;
};
std::shared_mutex mutex;
std::vector<GuardedImage> guarded;

}  // namespace

void AddCallTargets(const std::byte* image, size_t size, std::vector<uint32_t> targets) {
  const std::unique_lock lock(mutex);
  guarded.push_back({reinterpret_cast<uintptr_t>(image), size, std::move(targets)});
}

void RemoveCallTargets(const std::byte* image) {
  const std::unique_lock lock(mutex);
  std::erase_if(guarded, [image](const GuardedImage& each) {
    return each.start == reinterpret_cast<uintptr_t>(image);
  });
}

// Called by the functions below, which save the registers of the call.
extern "C" __attribute__((visibility("hidden"))) void WINAPI
CheckIndirectCall(uintptr_t target) noexcept {
  const std::shared_lock lock(mutex);
  for (const GuardedImage& image : guarded) {
    const uintptr_t offset = target - image.start;
    if (offset >= image.size || std::ranges::binary_search(image.targets, offset)) continue;
    std::fprintf(stderr, "indirect call to 0x%zX of an image, which is no function of its table\n",
                 static_cast<size_t>(offset));
    std::abort();
  }
}

// These functions preserve every register that may hold an argument.
#if defined(__x86_64__)
// The check function gets the target in rcx, the dispatch function in rax. The pushes keep the
// stack aligned; the space below them is the home space of four arguments and four floating-point
// registers.
__asm__(R"(
.text
SaveAndCheckIndirectCall:
    pushq %rbp
    movq %rsp, %rbp
    pushq %rax
    pushq %rcx
    pushq %rdx
    pushq %r8
    pushq %r9
    pushq %r10
    subq $96, %rsp
    movups %xmm0, 32(%rsp)
    movups %xmm1, 48(%rsp)
    movups %xmm2, 64(%rsp)
    movups %xmm3, 80(%rsp)
    andq $-16, %rsp
    movq %rax, %rcx
    call CheckIndirectCall
    leaq -144(%rbp), %rsp
    movups 32(%rsp), %xmm0
    movups 48(%rsp), %xmm1
    movups 64(%rsp), %xmm2
    movups 80(%rsp), %xmm3
    addq $96, %rsp
    popq %r10
    popq %r9
    popq %r8
    popq %rdx
    popq %rcx
    popq %rax
    popq %rbp
    ret
GuardDispatch:
    call SaveAndCheckIndirectCall
    jmp *%rax
GuardCheck:
    pushq %rax
    movq %rcx, %rax
    call SaveAndCheckIndirectCall
    popq %rax
    ret
)");
#elif defined(__i386__)
// The target is in ecx. CheckIndirectCall removes its argument from the stack.
__asm__(R"(
.text
GuardCheck:
    pushl %eax
    pushl %ecx
    pushl %edx
    pushl %ecx
    call CheckIndirectCall
    popl %edx
    popl %ecx
    popl %eax
    ret
)");
#endif
#if defined(__x86_64__) || defined(__i386__)
extern "C" __attribute__((visibility("hidden"))) void GuardCheck();
uintptr_t CheckFunctionOfGuard() { return reinterpret_cast<uintptr_t>(GuardCheck); }
#else
uintptr_t CheckFunctionOfGuard() { return 0; }
#endif
#if defined(__x86_64__)
extern "C" __attribute__((visibility("hidden"))) void GuardDispatch();
uintptr_t DispatchFunctionOfGuard() { return reinterpret_cast<uintptr_t>(GuardDispatch); }
#else
uintptr_t DispatchFunctionOfGuard() { return 0; }
#endif

}  // namespace platform
