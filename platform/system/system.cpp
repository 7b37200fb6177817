// The last error and the shell.
#include <windows.h>
#include <shellapi.h>

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
