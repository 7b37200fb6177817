// Messages: sent, posted and broadcast, and what a window does with one that it does not know.
#include <algorithm>

#include "platform/desktop/windows/desktop.h"
#include "platform/machine.h"

namespace platform {

LRESULT CopyOut(std::u16string_view text, WPARAM size, LPARAM out) {
  auto* units = reinterpret_cast<LPWSTR>(out);
  if (units == nullptr || size == 0) return 0;
  const size_t count = std::min<size_t>(text.size(), size - 1);
  std::copy_n(text.begin(), count, units);
  units[count] = 0;
  return static_cast<LRESULT>(count);
}

void NotifyCommand(const Window& control, UINT code) {
  SendMessageW(control.parent, WM_COMMAND, MAKEWPARAM(static_cast<WORD>(control.id), code),
               reinterpret_cast<LPARAM>(control.handle));
}

}  // namespace platform

using platform::FindWindowOf;
using platform::TheDesktop;

extern "C" {

LRESULT WINAPI SendMessageW(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
  if (handle == HWND_BROADCAST) {
    const auto tops = TheDesktop().tops;
    for (HWND top : tops) SendMessageW(top, message, wParam, lParam);
    return TRUE;
  }
  const auto window = FindWindowOf(handle);
  if (!window) {
    SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return 0;
  }
  return window->proc(handle, message, wParam, lParam);
}

BOOL WINAPI PostMessageW(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
  if (!FindWindowOf(handle)) {
    SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return FALSE;
  }
  TheDesktop().posted.push_back({handle, message, wParam, lParam});
  return TRUE;
}

LRESULT WINAPI SendMessageTimeoutW(HWND handle, UINT message, WPARAM wParam, LPARAM lParam,
                                   UINT flags, UINT timeout, DWORD_PTR* result) {
  if (handle == HWND_BROADCAST) {
    const auto* text = reinterpret_cast<LPCWSTR>(lParam);
    platform::Machine::Current().RecordBroadcast(
        {message, wParam, IS_INTRESOURCE(text) ? std::u16string() : std::u16string(text), flags,
         timeout});
  } else if (!FindWindowOf(handle)) {
    SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return 0;
  }
  const LRESULT answer = SendMessageW(handle, message, wParam, lParam);
  if (result != nullptr) *result = static_cast<DWORD_PTR>(answer);
  return TRUE;
}

LRESULT WINAPI DefWindowProcW(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
  const auto window = FindWindowOf(handle);
  if (!window) return 0;
  switch (message) {
    case WM_SETTEXT:
      window->text = lParam != 0 ? reinterpret_cast<LPCWSTR>(lParam) : u"";
      platform::InvalidateWindow(*window, true);
      return TRUE;
    case WM_GETTEXT:
      return platform::CopyOut(window->text, wParam, lParam);
    case WM_GETTEXTLENGTH:
      return static_cast<LRESULT>(window->text.size());
    case WM_SETFONT:
      window->font = reinterpret_cast<HFONT>(wParam);
      platform::InvalidateWindow(*window, true);
      return 0;
    case WM_GETFONT:
      return reinterpret_cast<LRESULT>(window->font);
    case WM_SETREDRAW:
      window->redraw = wParam != 0;
      if (window->redraw) platform::InvalidateWindow(*window, true);
      return 0;
    case WM_ENABLE:
      platform::InvalidateWindow(*window, false);
      return 0;
    case WM_CLOSE:
      DestroyWindow(handle);
      return 0;
    default:
      return 0;
  }
}

}  // extern "C"
