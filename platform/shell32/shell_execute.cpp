// ShellExecuteW starts nothing: the computer records the call.
#include <windows.h>
#include <shellapi.h>

#include "platform/machine/machine.h"
#include "platform/machine/text.h"

HINSTANCE WINAPI ShellExecuteW(HWND, LPCWSTR verb, LPCWSTR file, LPCWSTR, LPCWSTR, INT show) {
  constexpr ULONG_PTR kStarted = 42;  // anything above 32
  platform::Machine::Current().RecordShellCall(
      {std::u16string(platform::View(verb)), std::u16string(platform::View(file)), show});
  return reinterpret_cast<HINSTANCE>(kStarted);
}
