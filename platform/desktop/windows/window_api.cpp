// What a window is asked and told: place, visibility, text, words.
#include <algorithm>

#include "platform/desktop/windows/desktop.h"

namespace platform {

namespace {

HWND Find(HWND handle) {
  if (FindWindowOf(handle)) return handle;
  SetLastError(ERROR_INVALID_WINDOW_HANDLE);
  return nullptr;
}

// What a hidden or moved child uncovers belongs to its parent.
void Uncover(const Window& window) {
  if (const WindowPtr parent = FindWindowOf(window.parent)) {
    parent->invalid = true;
    parent->erase = true;
  }
}

// After a top-level window is gone its owner becomes active, or else the visible one below it.
void ActivateNext(const Window& left) {
  DesktopState& desktop = TheDesktop();
  HWND next = TopLevelOf(left.owner);
  for (size_t i = desktop.tops.size(); next == nullptr && i > 0; --i) {
    const HWND top = desktop.tops[i - 1];
    if (top != left.handle && IsShown(top)) next = top;
  }
  if (next != nullptr) {
    ActivateTop(next);
    return;
  }
  SetFocus(nullptr);
  desktop.active = nullptr;
}

void SetVisible(const WindowPtr& window, bool visible) {
  if (window->visible() == visible) return;
  DesktopState& desktop = TheDesktop();
  SendMessageW(window->handle, WM_SHOWWINDOW, visible, 0);
  window->style = visible ? window->style | WS_VISIBLE : window->style & ~WS_VISIBLE;
  if (visible) {
    InvalidateWindow(*window, true);
    return;
  }
  Uncover(*window);
  if (window->parent != nullptr) {
    if (IsDescendant(window->handle, desktop.focus)) SetFocus(window->parent);
  } else if (desktop.active == window->handle) {
    ActivateNext(*window);
  }
}

POINT OriginOf(HWND handle) {
  POINT origin = {};
  for (WindowPtr window = FindWindowOf(handle); window; window = FindWindowOf(window->parent)) {
    origin.x += window->rect.left;
    origin.y += window->rect.top;
  }
  return origin;
}

}  // namespace

RECT ScreenRect(const Window& window) {
  const POINT origin = OriginOf(window.handle);
  return {origin.x, origin.y, origin.x + window.width(), origin.y + window.height()};
}

HWND ChildWithId(const Window& parent, int id) {
  for (HWND child : parent.children) {
    const WindowPtr window = FindWindowOf(child);
    if (window && window->id == id) return child;
  }
  return nullptr;
}

}  // namespace platform

using platform::FindWindowOf;
using platform::TheDesktop;

extern "C" {

HWND WINAPI GetParent(HWND handle) {
  const auto window = FindWindowOf(handle);
  if (!window) return nullptr;
  return window->parent != nullptr ? window->parent : window->owner;
}

HWND WINAPI GetWindow(HWND handle, UINT command) {
  const auto window = FindWindowOf(handle);
  if (!window) return nullptr;
  if (command == GW_CHILD) return window->children.empty() ? nullptr : window->children.front();
  const auto parent = FindWindowOf(window->parent);
  if (!parent || command != GW_HWNDNEXT) return nullptr;
  const auto here = std::find(parent->children.begin(), parent->children.end(), handle);
  return here == parent->children.end() || here + 1 == parent->children.end() ? nullptr
                                                                              : *(here + 1);
}

// A control that is disabled while it has the focus keeps it, and the keyboard is dead until a
// mouse or the program moves it.
BOOL WINAPI EnableWindow(HWND handle, BOOL enable) {
  const auto window = FindWindowOf(handle);
  if (!window) return FALSE;
  const bool was = window->enabled();
  if (was == (enable != FALSE)) return !was;
  window->style = enable ? window->style & ~WS_DISABLED : window->style | WS_DISABLED;
  SendMessageW(handle, WM_ENABLE, static_cast<WPARAM>(enable != FALSE), 0);
  return !was;
}

BOOL WINAPI IsWindowEnabled(HWND handle) {
  const auto window = FindWindowOf(handle);
  return window && window->enabled();
}

BOOL WINAPI ShowWindow(HWND handle, int command) {
  const auto window = FindWindowOf(handle);
  if (!window) return FALSE;
  const BOOL was = window->visible();
  platform::SetVisible(window, command != SW_HIDE);
  return was;
}

BOOL WINAPI IsWindowVisible(HWND handle) { return platform::IsShown(handle); }

BOOL WINAPI SetWindowPos(HWND handle, HWND, int x, int y, int cx, int cy, UINT flags) {
  const auto window = FindWindowOf(handle);
  if (!window) return FALSE;
  RECT rect = window->rect;
  LONG width = window->width();
  LONG height = window->height();
  if ((flags & SWP_NOMOVE) == 0) {
    rect.left = x;
    rect.top = y;
  }
  if ((flags & SWP_NOSIZE) == 0) {
    width = std::max(cx, 0);
    height = std::max(cy, 0);
    if (window->windowClass == platform::WindowClass::kComboBox) {
      height = std::min(height, platform::kClosedComboHeight);
    }
  }
  const bool moved = rect.left != window->rect.left || rect.top != window->rect.top ||
                     width != window->width() || height != window->height();
  if (moved) {
    window->rect = {rect.left, rect.top, rect.left + width, rect.top + height};
    platform::Uncover(*window);
    platform::InvalidateWindow(*window, true);
    SendMessageW(handle, WM_SIZE, 0, MAKELPARAM(width, height));
  }
  if ((flags & SWP_SHOWWINDOW) != 0) platform::SetVisible(window, true);
  if ((flags & SWP_HIDEWINDOW) != 0) platform::SetVisible(window, false);
  return TRUE;
}

BOOL WINAPI MoveWindow(HWND handle, int x, int y, int width, int height, BOOL) {
  return SetWindowPos(handle, nullptr, x, y, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
}

BOOL WINAPI GetClientRect(HWND handle, LPRECT rect) {
  const auto window = FindWindowOf(handle);
  if (!window || rect == nullptr) return FALSE;
  *rect = {0, 0, window->width(), window->height()};
  return TRUE;
}

BOOL WINAPI GetWindowRect(HWND handle, LPRECT rect) {
  const auto window = FindWindowOf(handle);
  if (!window || rect == nullptr) return FALSE;
  *rect = platform::ScreenRect(*window);
  return TRUE;
}

int WINAPI MapWindowPoints(HWND from, HWND to, LPPOINT points, UINT count) {
  if (points == nullptr) return 0;
  const POINT a = platform::OriginOf(from);
  const POINT b = platform::OriginOf(to);
  const LONG dx = a.x - b.x;
  const LONG dy = a.y - b.y;
  for (UINT i = 0; i < count; ++i) {
    points[i].x += dx;
    points[i].y += dy;
  }
  return MAKELONG(static_cast<WORD>(dx), static_cast<WORD>(dy));
}

BOOL WINAPI SetWindowTextW(HWND handle, LPCWSTR text) {
  if (platform::Find(handle) == nullptr) return FALSE;
  return SendMessageW(handle, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text)) != 0;
}

int WINAPI GetWindowTextW(HWND handle, LPWSTR text, int size) {
  if (text == nullptr || size <= 0) return 0;
  *text = 0;
  if (platform::Find(handle) == nullptr) return 0;
  return static_cast<int>(
      SendMessageW(handle, WM_GETTEXT, static_cast<WPARAM>(size), reinterpret_cast<LPARAM>(text)));
}

int WINAPI GetWindowTextLengthW(HWND handle) {
  return static_cast<int>(SendMessageW(handle, WM_GETTEXTLENGTH, 0, 0));
}

}  // extern "C"
