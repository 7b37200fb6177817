// Device contexts of windows, and FillRect, which user32 exports.
#include <utility>

#include "platform/gdi32/gdi.h"
#include "platform/user32/window.h"

using namespace platform;
using namespace platform::gdi;

HDC WINAPI GetDC(HWND window) {
  return window == nullptr || FindWindowOf(window) ? AddContext(window, false) : nullptr;
}

int WINAPI ReleaseDC(HWND window, HDC dc) { return RemoveContext(dc, window, false); }

int WINAPI FillRect(HDC dc, const RECT* rect, HBRUSH brush) {
  const auto colour = BrushColour(brush);
  if (!colour) return FALSE;
  return WithDc(dc, FALSE, [&](ObjectStore&, Dc& it) {
    DrawOp op;
    op.rect = *rect;
    op.brush = *colour;
    Record(it, std::move(op));
    return TRUE;
  });
}
