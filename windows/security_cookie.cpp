#include "windows/security_cookie.h"

#include <windows.h>

namespace {

// The value by which a loader recognizes a cookie that it should fill.
constexpr uintptr_t kDefaultCookie =
    static_cast<uintptr_t>(sizeof(void*) == 8 ? 0x00002B992DDFA232 : 0xBB40E64E);

#if defined(__i386__)
// Old systems fill 16 bits only.
bool IsFilled(uintptr_t cookie) { return cookie != kDefaultCookie && cookie >> 16 != 0; }
#else
bool IsFilled(uintptr_t cookie) { return cookie != kDefaultCookie; }
#endif

// Spreads every bit of the value over the whole result.
uint64_t Mix(uint64_t value) {
  value = (value ^ value >> 30) * 0xBF58476D1CE4E5B9;
  value = (value ^ value >> 27) * 0x94D049BB133111EB;
  return value ^ value >> 31;
}

// Ends the process without running any code of it, as its stack can no longer be trusted: no
// exception handler, no detaching of libraries. Windows 8 and newer record a fail-fast exception
// for a crash report. On older systems the same instruction is an access violation, which handlers
// found on that stack would see; they get the exit code STATUS_STACK_BUFFER_OVERRUN instead.
[[noreturn]] void EndProcess() {
  constexpr UINT kStackBufferOverrun = 0xC0000409;
  if (IsProcessorFeaturePresent(PF_FASTFAIL_AVAILABLE)) {
    constexpr unsigned kFailedCookieCheck = 2;  // FAST_FAIL_STACK_COOKIE_CHECK_FAILURE
#if defined(__aarch64__)
    register unsigned code __asm__("w0") = kFailedCookieCheck;
    __asm__ volatile("brk #0xF003" : : "r"(code));
#else
    __asm__ volatile("int $0x29" : : "c"(kFailedCookieCheck));
#endif
  }
  TerminateProcess(GetCurrentProcess(), kStackBufferOverrun);
  __builtin_trap();
}

}  // namespace

extern "C" {

uintptr_t __security_cookie = kDefaultCookie;

// Compiled code calls it with the cookie of a frame before the frame's function returns.
void __fastcall __security_check_cookie(uintptr_t cookie) {
  if (cookie != __security_cookie) EndProcess();
}

}  // extern "C"

void InitializeSecurityCookie() {
  if (IsFilled(__security_cookie)) return;
  FILETIME time;
  GetSystemTimeAsFileTime(&time);
  LARGE_INTEGER counter;
  QueryPerformanceCounter(&counter);
  uint64_t value = Mix(uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime);
  value = Mix(value ^ static_cast<uint64_t>(counter.QuadPart));
  value = Mix(value ^ (uint64_t{GetCurrentProcessId()} << 32 | GetCurrentThreadId()));
  value = Mix(value ^ GetTickCount() ^ reinterpret_cast<uintptr_t>(&time));
  // 48 bits on a 64-bit machine, as the zero bytes above them end a text that runs into the cookie.
  auto cookie = static_cast<uintptr_t>(sizeof(void*) == 8 ? value >> 16 : value);
  while (!IsFilled(cookie)) cookie += 0x4711'4711;
  __security_cookie = cookie;
}
