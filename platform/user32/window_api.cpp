// Properties of windows: position, visibility, text and words; and the cursor.
#include <winbase.h>

#include <algorithm>
#include <utility>

#include "platform/machine/machine.h"
#include "platform/user32/manager.h"

namespace platform {

namespace {

// When a top-level window closes, its owner becomes active, or else the topmost visible window.
void ActivateNext(const Window& left) {
  WindowManager& manager = Manager();
  HWND next = TopLevelOf(left.owner);
  for (size_t i = manager.tops.size(); next == nullptr && i > 0; --i) {
    const HWND top = manager.tops[i - 1];
    if (top != left.handle && IsShown(top)) next = top;
  }
  if (next != nullptr) {
    ActivateTop(next);
    return;
  }
  SetFocus(nullptr);
  manager.active = nullptr;
}

// Returns the stored word of an index; null for an unsupported index.
LONG_PTR* WordOf(Window& window, int index) {
  if (index == GWLP_USERDATA) return &window.userData;
  if (!window.dialog) return nullptr;
  if (index == DWLP_MSGRESULT) return &window.dialog->messageResult;
  return index == DWLP_USER ? &window.dialog->user : nullptr;
}

}  // namespace

void SetVisible(HWND handle, bool visible) {
  const WindowPtr window = FindWindowOf(handle);
  if (!window || window->visible() == visible) return;
  WindowManager& manager = Manager();
  window->style = visible ? window->style | WS_VISIBLE : window->style & ~WS_VISIBLE;
  if (visible) {
    InvalidateWindow(*window);
    return;
  }
  if (window->parent != nullptr) {
    if (IsDescendant(window->handle, manager.focus)) SetFocus(window->parent);
  } else if (manager.active == window->handle) {
    ActivateNext(*window);
  }
}

void PlaceWindow(Window& window, const RECT& rect) {
  window.rect = rect;
  InvalidateWindow(window);
}

}  // namespace platform

using platform::FindWindowOf;

extern "C" {

HWND WINAPI GetParent(HWND handle) {
  const auto window = FindWindowOf(handle);
  if (!window) return nullptr;
  return window->parent != nullptr ? window->parent : window->owner;
}

// A focused control that is disabled keeps the focus, and keys have no effect until the mouse or
// the program moves the focus.
BOOL WINAPI EnableWindow(HWND handle, BOOL enable) {
  const auto window = FindWindowOf(handle);
  if (!window) return FALSE;
  const bool was = window->enabled();
  if (was == (enable != FALSE)) return !was;
  window->style = enable ? window->style & ~WS_DISABLED : window->style | WS_DISABLED;
  // A control looks different when disabled; a top-level window and its contents do not.
  if (window->parent != nullptr) platform::InvalidateWindow(*window);
  return !was;
}

BOOL WINAPI IsWindowEnabled(HWND handle) {
  const auto window = FindWindowOf(handle);
  return window && window->enabled();
}

BOOL WINAPI SetWindowPos(HWND handle, HWND, int x, int y, int cx, int cy, UINT flags) {
  const auto window = FindWindowOf(handle);
  if (!window) return FALSE;
  RECT rect = window->rect;
  if ((flags & SWP_NOMOVE) == 0) rect.left = x, rect.top = y;
  rect.right = rect.left + std::max(cx, 0);
  rect.bottom = rect.top + std::max(cy, 0);
  platform::PlaceWindow(*window, rect);
  return TRUE;
}

BOOL WINAPI GetClientRect(HWND handle, LPRECT rect) {
  const auto window = FindWindowOf(handle);
  if (!window || rect == nullptr) return FALSE;
  *rect = {0, 0, window->width(), window->height()};
  return TRUE;
}

BOOL WINAPI SetWindowTextW(HWND handle, LPCWSTR text) {
  return SendMessageW(handle, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text)) != 0;
}

int WINAPI GetWindowTextW(HWND handle, LPWSTR text, int size) {
  if (text == nullptr || size <= 0) return 0;
  *text = 0;
  return static_cast<int>(
      SendMessageW(handle, WM_GETTEXT, static_cast<WPARAM>(size), reinterpret_cast<LPARAM>(text)));
}

int WINAPI GetWindowTextLengthW(HWND handle) {
  const auto window = FindWindowOf(handle);
  return window ? static_cast<int>(platform::ViewOf(*window).text.size()) : 0;
}

LONG_PTR WINAPI GetWindowLongPtrW(HWND handle, int index) {
  const auto window = FindWindowOf(handle);
  if (!window) {
    SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return 0;
  }
  const LONG_PTR* word = platform::WordOf(*window, index);
  return word != nullptr ? *word : 0;
}

LONG_PTR WINAPI SetWindowLongPtrW(HWND handle, int index, LONG_PTR value) {
  const LONG_PTR before = GetWindowLongPtrW(handle, index);
  const auto window = FindWindowOf(handle);
  if (!window) return 0;
  if (LONG_PTR* word = platform::WordOf(*window, index)) *word = value;
  return before;
}

// Supports the system cursors (null instance). Their handles are their ids.
HCURSOR WINAPI LoadCursorW(HINSTANCE instance, LPCWSTR name) {
  if (instance != nullptr || !IS_INTRESOURCE(name)) return nullptr;
  return reinterpret_cast<HCURSOR>(reinterpret_cast<ULONG_PTR>(name));
}

HCURSOR WINAPI SetCursor(HCURSOR cursor) {
  platform::WindowManager& manager = platform::Manager();
  const HCURSOR before = std::exchange(manager.cursor, cursor);
  if (cursor == LoadCursorW(nullptr, IDC_WAIT) && manager.user != nullptr)
    manager.user->Wait(platform::Machine::Current().desk());
  return before;
}

}  // extern "C"
