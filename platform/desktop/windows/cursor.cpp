// The cursor's shape, and arithmetic on rectangles.
#include <algorithm>
#include <utility>

#include "platform/desktop/windows/desktop.h"
#include "platform/machine.h"

extern "C" {

// The system's own shapes (LoadCursor with no instance); their handles are their ids, out of the
// way of every other handle.
HCURSOR WINAPI LoadCursorW(HINSTANCE instance, LPCWSTR name) {
  if (instance != nullptr || !IS_INTRESOURCE(name)) return nullptr;
  return reinterpret_cast<HCURSOR>(reinterpret_cast<ULONG_PTR>(name));
}

HCURSOR WINAPI SetCursor(HCURSOR cursor) {
  const HCURSOR before = std::exchange(platform::TheDesktop().cursor, cursor);
  if (cursor == LoadCursorW(nullptr, IDC_WAIT) && platform::TheDesktop().user != nullptr)
    platform::TheDesktop().user->Wait(platform::Machine::Current().desk());
  return before;
}

BOOL WINAPI IsRectEmpty(const RECT* rect) {
  return rect == nullptr || rect->left >= rect->right || rect->top >= rect->bottom;
}

BOOL WINAPI IntersectRect(LPRECT rect, const RECT* a, const RECT* b) {
  if (rect == nullptr || a == nullptr || b == nullptr) return FALSE;
  const RECT common = {std::max(a->left, b->left), std::max(a->top, b->top),
                       std::min(a->right, b->right), std::min(a->bottom, b->bottom)};
  *rect = IsRectEmpty(&common) ? RECT{} : common;
  return !IsRectEmpty(&common);
}

}  // extern "C"
