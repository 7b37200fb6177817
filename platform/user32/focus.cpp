// The keyboard focus. The window that loses the focus is notified first; GetFocus already returns
// the new one then.
#include <winbase.h>

#include "platform/user32/manager.h"

namespace platform {

namespace {

// Moves the focus within the active top-level window; null removes it.
HWND MoveFocus(HWND to) {
  WindowManager& manager = Manager();
  const HWND from = manager.focus;
  if (from == to) return from;
  manager.focus = to;
  if (from != nullptr) SendMessageW(from, WM_KILLFOCUS, reinterpret_cast<WPARAM>(to), 0);
  if (to != nullptr && manager.focus == to)
    SendMessageW(to, WM_SETFOCUS, reinterpret_cast<WPARAM>(from), 0);
  return from;
}

// Activates a top-level window without moving the focus into it.
void ChangeActive(HWND top) {
  WindowManager& manager = Manager();
  const HWND left = manager.active;
  if (left == top) return;
  const WindowPtr old = FindWindowOf(left);
  if (old && IsDescendant(left, manager.focus)) old->lastFocus = manager.focus;
  manager.active = top;
  if (std::erase(manager.tops, top) != 0) manager.tops.push_back(top);
}

}  // namespace

void ActivateTop(HWND top) {
  const WindowPtr window = FindWindowOf(top);
  if (!window || Manager().active == top) return;
  ChangeActive(top);
  const HWND last = window->lastFocus;
  const bool usable = last != nullptr && IsDescendant(top, last) && IsReachable(last);
  MoveFocus(usable ? last : top);
}

}  // namespace platform

extern "C" {

HWND WINAPI SetFocus(HWND handle) {
  if (handle == nullptr) return platform::MoveFocus(nullptr);
  if (!platform::FindWindowOf(handle)) {
    SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return nullptr;
  }
  if (!platform::IsReachable(handle)) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return nullptr;
  }
  platform::ChangeActive(platform::TopLevelOf(handle));
  return platform::MoveFocus(handle);
}

HWND WINAPI GetFocus() { return platform::Manager().focus; }

}  // extern "C"
