// Which window has the keyboard. The window that loses it hears of it first, and by then GetFocus
// already answers the one that gains it.
#include <utility>

#include "platform/desktop/windows/desktop.h"

namespace platform {

namespace {

constexpr WPARAM kInactive = 0;  // WM_ACTIVATE, WA_INACTIVE
constexpr WPARAM kActive = 1;    // WA_ACTIVE

// Moves the focus between windows of the active top-level window; null takes it away.
HWND MoveFocus(HWND to) {
  DesktopState& desktop = TheDesktop();
  const HWND from = desktop.focus;
  if (from == to) return from;
  desktop.focus = to;
  if (FindWindowOf(from)) SendMessageW(from, WM_KILLFOCUS, reinterpret_cast<WPARAM>(to), 0);
  if (to != nullptr && desktop.focus == to && FindWindowOf(to)) {
    SendMessageW(to, WM_SETFOCUS, reinterpret_cast<WPARAM>(from), 0);
  }
  return from;
}

// Makes a top-level window active without moving the focus into it.
void ChangeActive(HWND top) {
  DesktopState& desktop = TheDesktop();
  const HWND left = desktop.active;
  if (left == top) return;
  if (const WindowPtr old = FindWindowOf(left)) {
    if (IsDescendant(left, desktop.focus)) old->lastFocus = desktop.focus;
    SendMessageW(left, WM_ACTIVATE, kInactive, reinterpret_cast<LPARAM>(top));
  }
  desktop.active = top;
  if (std::erase(desktop.tops, top) != 0) desktop.tops.push_back(top);
  if (FindWindowOf(top)) SendMessageW(top, WM_ACTIVATE, kActive, reinterpret_cast<LPARAM>(left));
}

}  // namespace

HWND TopLevelOf(HWND handle) {
  HWND top = handle;
  for (WindowPtr window = FindWindowOf(handle); window; window = FindWindowOf(window->parent)) {
    top = window->handle;
  }
  return FindWindowOf(top) ? top : nullptr;
}

bool IsDescendant(HWND ancestor, HWND handle) {
  for (WindowPtr window = FindWindowOf(handle); window; window = FindWindowOf(window->parent)) {
    if (window->handle == ancestor) return true;
  }
  return false;
}

bool IsShown(HWND handle) {
  WindowPtr window = FindWindowOf(handle);
  if (!window) return false;
  for (; window; window = FindWindowOf(window->parent)) {
    if (!window->visible()) return false;
  }
  return true;
}

bool IsReachable(HWND handle) {
  WindowPtr window = FindWindowOf(handle);
  if (!window) return false;
  for (; window; window = FindWindowOf(window->parent)) {
    if (!window->enabled()) return false;
  }
  return true;
}

void ActivateTop(HWND top) {
  const WindowPtr window = FindWindowOf(top);
  if (!window || TheDesktop().active == top) return;
  ChangeActive(top);
  const HWND last = window->lastFocus;
  const bool usable = last != nullptr && IsDescendant(top, last) && IsReachable(last);
  MoveFocus(usable ? last : top);
}

}  // namespace platform

using platform::FindWindowOf;
using platform::TheDesktop;

extern "C" {

HWND WINAPI SetFocus(HWND handle) {
  if (handle == nullptr) return platform::MoveFocus(nullptr);
  if (!FindWindowOf(handle)) {
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

HWND WINAPI GetFocus() { return TheDesktop().focus; }

HWND WINAPI GetActiveWindow() { return TheDesktop().active; }

}  // extern "C"
