// The process, its threads and its clocks.
#include <unistd.h>

#include <chrono>
#include <cstdio>

#include "platform/machine/last_error.h"
#include "platform/machine/machine.h"

using namespace platform;

// The documented value of the pseudo handle.
HANDLE WINAPI GetCurrentProcess() { return INVALID_HANDLE_VALUE; }

DWORD WINAPI GetCurrentProcessId() { return static_cast<DWORD>(getpid()); }

DWORD WINAPI GetCurrentThreadId() { return static_cast<DWORD>(gettid()); }

// Ends this process without detaching modules or running destructors. An exit code has only 8 bits
// here, so that the whole code is printed to standard error.
BOOL WINAPI TerminateProcess(HANDLE process, UINT exitCode) {
  if (process != GetCurrentProcess()) return Fail(ERROR_INVALID_HANDLE);
  std::fprintf(stderr, "process terminated with exit code 0x%08X\n", exitCode);
  _exit(static_cast<int>(exitCode & 0xFF));
}

// Fail-fast exceptions came with Windows 8 (6.2). No other feature is supported.
BOOL WINAPI IsProcessorFeaturePresent(DWORD feature) {
  return feature == PF_FASTFAIL_AVAILABLE && Machine::Current().os().IsAtLeast(6, 2);
}

void WINAPI GetSystemTimeAsFileTime(LPFILETIME time) {
  using Ticks = std::chrono::duration<uint64_t, std::ratio<1, 10'000'000>>;
  constexpr uint64_t kTicksFrom1601To1970 = 116'444'736'000'000'000;
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  const uint64_t ticks = std::chrono::duration_cast<Ticks>(now).count() + kTicksFrom1601To1970;
  *time = {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
}

// Milliseconds; the counter counts nanoseconds.
DWORD WINAPI GetTickCount() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return static_cast<DWORD>(std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}
BOOL WINAPI QueryPerformanceCounter(LARGE_INTEGER* count) {
  count->QuadPart = std::chrono::steady_clock::now().time_since_epoch().count();
  return TRUE;
}
