// Messages: sending, broadcasting and default handling.
#include <winbase.h>

#include <algorithm>

#include "platform/machine/machine.h"
#include "platform/user32/manager.h"

namespace platform {

LRESULT CopyText(std::u16string_view text, WPARAM size, LPARAM out) {
  auto* units = reinterpret_cast<LPWSTR>(out);
  if (units == nullptr || size == 0) return 0;
  const size_t count = text.copy(units, size - 1);
  units[count] = 0;
  return static_cast<LRESULT>(count);
}

void NotifyCommand(const Window& control, UINT code) {
  SendMessageW(control.parent, WM_COMMAND, MAKEWPARAM(static_cast<WORD>(control.id), code),
               reinterpret_cast<LPARAM>(control.handle));
}

LRESULT DefaultProc(const WindowPtr& window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_GETTEXT) return CopyText(window->text, wParam, lParam);
  if (message != WM_SETTEXT) return 0;
  window->text = lParam != 0 ? reinterpret_cast<LPCWSTR>(lParam) : u"";
  InvalidateWindow(*window);
  return TRUE;
}

}  // namespace platform

using platform::FindWindowOf;
using platform::Manager;

extern "C" {

LRESULT WINAPI SendMessageW(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
  const auto window = FindWindowOf(handle);
  if (!window) {
    SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return 0;
  }
  return window->proc(window, message, wParam, lParam);
}

// Supports HWND_BROADCAST only, and records the broadcast.
LRESULT WINAPI SendMessageTimeoutW(HWND handle, UINT message, WPARAM wParam, LPARAM lParam,
                                   UINT flags, UINT timeout, DWORD_PTR* result) {
  if (handle != HWND_BROADCAST) {
    SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return 0;
  }
  const auto* text = reinterpret_cast<LPCWSTR>(lParam);
  platform::Machine::Current().RecordBroadcast(
      {message, wParam, IS_INTRESOURCE(text) ? std::u16string() : std::u16string(text), flags,
       timeout});
  const std::vector<HWND> tops = Manager().tops;
  for (HWND top : tops) SendMessageW(top, message, wParam, lParam);
  if (result != nullptr) *result = TRUE;
  return TRUE;
}

}  // extern "C"
