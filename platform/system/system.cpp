// The last error, the shell and arithmetic.
#include <windows.h>
#include <shellapi.h>

#include <limits>

#include "platform/machine.h"
#include "platform/system/text.h"

namespace {
thread_local DWORD lastError = 0;
}
DWORD WINAPI GetLastError() { return lastError; }
void WINAPI SetLastError(DWORD error) { lastError = error; }

HINSTANCE WINAPI ShellExecuteW(HWND, LPCWSTR verb, LPCWSTR file, LPCWSTR, LPCWSTR, INT show) {
  constexpr ULONG_PTR kStarted = 42;  // anything above 32
  platform::Machine::Current().RecordShellCall(
      {std::u16string(platform::View(verb)), std::u16string(platform::View(file)), show});
  return reinterpret_cast<HINSTANCE>(kStarted);
}

int WINAPI MulDiv(int number, int numerator, int denominator) {
  if (denominator == 0) return -1;
  const int64_t product = int64_t{number} * numerator;
  const int64_t half = (denominator < 0 ? -int64_t{denominator} : int64_t{denominator}) / 2;
  const int64_t result = (product < 0 ? product - half : product + half) / denominator;
  const bool fits =
      result >= std::numeric_limits<int>::min() && result <= std::numeric_limits<int>::max();
  return fits ? static_cast<int>(result) : -1;
}
