// Rectangles, lines and fills.
#include <algorithm>

#include "platform/desktop/drawing/gdi.h"

using namespace platform;
using namespace platform::gdi;

namespace {

BOOL Fill(HDC dc, const RECT& rect, COLORREF colour) {
  ObjectStore& store = ObjectStore::Get();
  const std::lock_guard guard(store.lock);
  const Dc* it = store.FindDc(dc);
  if (!it) return FALSE;
  DrawOp op;
  op.kind = DrawOp::Kind::kFill;
  op.rect = rect;
  op.brush = colour;
  Record(store, *it, std::move(op));
  return TRUE;
}

// Windows' own colours as a fresh installation shows them.
COLORREF SystemColour(int index) {
  switch (index) {
    case COLOR_WINDOWTEXT:
    case COLOR_BTNTEXT:
      return RGB(0, 0, 0);
    case COLOR_HIGHLIGHT:
      return RGB(0, 120, 215);
    case COLOR_BTNFACE:
      return RGB(240, 240, 240);
    case COLOR_GRAYTEXT:
      return RGB(109, 109, 109);
    default:
      return RGB(255, 255, 255);
  }
}

// A brush argument may be a system colour's index plus one.
std::optional<COLORREF> FillColour(HBRUSH brush) {
  const auto value = reinterpret_cast<uintptr_t>(brush);
  if (value > 0 && value <= 31) return SystemColour(static_cast<int>(value) - 1);
  return BrushColour(brush);
}

}  // namespace

// The last column and row of the rectangle are not drawn, as the documentation of Rectangle says.
BOOL WINAPI Rectangle(HDC dc, int left, int top, int right, int bottom) {
  ObjectStore& store = ObjectStore::Get();
  const std::lock_guard guard(store.lock);
  const Dc* it = store.FindDc(dc);
  if (!it) return FALSE;
  DrawOp op = Prepared(store, *it, DrawOp::Kind::kRectangle);
  op.rect = {std::min(left, right), std::min(top, bottom), std::max(left, right),
             std::max(top, bottom)};
  if (!(op.hollow && op.penStyle == PS_NULL)) Record(store, *it, std::move(op));
  return TRUE;
}

BOOL WINAPI MoveToEx(HDC dc, int x, int y, LPPOINT previous) {
  ObjectStore& store = ObjectStore::Get();
  const std::lock_guard guard(store.lock);
  Dc* it = store.FindDc(dc);
  if (!it) return FALSE;
  if (previous) *previous = it->state.position;
  it->state.position = {x, y};
  return TRUE;
}

BOOL WINAPI LineTo(HDC dc, int x, int y) {
  ObjectStore& store = ObjectStore::Get();
  const std::lock_guard guard(store.lock);
  Dc* it = store.FindDc(dc);
  if (!it) return FALSE;
  DrawOp op = Prepared(store, *it, DrawOp::Kind::kLine);
  op.rect = {it->state.position.x, it->state.position.y, x, y};
  it->state.position = {x, y};
  if (op.penStyle != PS_NULL) Record(store, *it, std::move(op));
  return TRUE;
}

// The current position takes no part in it.
BOOL WINAPI Polyline(HDC dc, const POINT* points, int count) {
  ObjectStore& store = ObjectStore::Get();
  const std::lock_guard guard(store.lock);
  const Dc* it = store.FindDc(dc);
  if (!it || count < 2) return FALSE;
  DrawOp op = Prepared(store, *it, DrawOp::Kind::kLine);
  if (op.penStyle == PS_NULL) return TRUE;
  for (int i = 1; i < count; ++i) {
    op.rect = {points[i - 1].x, points[i - 1].y, points[i].x, points[i].y};
    Record(store, *it, op);
  }
  return TRUE;
}

BOOL WINAPI PatBlt(HDC dc, int x, int y, int width, int height, DWORD rop) {
  const RECT rect = {x, y, x + width, y + height};
  if (rop == BLACKNESS) return Fill(dc, rect, RGB(0, 0, 0));
  if (rop == WHITENESS) return Fill(dc, rect, RGB(255, 255, 255));
  const auto colour = BrushColour(static_cast<HBRUSH>(GetCurrentObject(dc, OBJ_BRUSH)));
  return rop == PATCOPY && colour ? Fill(dc, rect, *colour) : FALSE;
}

int WINAPI FillRect(HDC dc, const RECT* rect, HBRUSH brush) {
  const auto colour = FillColour(brush);
  if (!colour) return GetObjectType(brush) == OBJ_BRUSH;
  return Fill(dc, *rect, *colour);
}

// A frame one pixel wide in the brush's colour.
int WINAPI FrameRect(HDC dc, const RECT* rect, HBRUSH brush) {
  ObjectStore& store = ObjectStore::Get();
  const std::lock_guard guard(store.lock);
  const Dc* it = store.FindDc(dc);
  const auto colour = FillColour(brush);
  if (!it || !colour || IsRectEmpty(rect)) return 0;
  DrawOp op;
  op.kind = DrawOp::Kind::kRectangle;
  op.rect = *rect;
  op.pen = *colour;
  op.hollow = true;
  Record(store, *it, std::move(op));
  return 1;
}

BOOL WINAPI DrawFocusRect(HDC dc, const RECT* rect) {
  ObjectStore& store = ObjectStore::Get();
  const std::lock_guard guard(store.lock);
  const Dc* it = store.FindDc(dc);
  if (!it) return FALSE;
  DrawOp op;
  op.kind = DrawOp::Kind::kRectangle;
  op.rect = *rect;
  op.penStyle = PS_DOT;
  op.hollow = true;
  Record(store, *it, std::move(op));
  return TRUE;
}

DWORD WINAPI GetSysColor(int index) { return SystemColour(index); }

HBRUSH WINAPI GetSysColorBrush(int index) {
  ObjectStore& store = ObjectStore::Get();
  const std::lock_guard guard(store.lock);
  if (index < 0 || index > 30) return nullptr;
  static HGDIOBJ brushes[31] = {};
  if (!brushes[index])
    brushes[index] = store.Add(OBJ_BRUSH, LOGBRUSH{BS_SOLID, SystemColour(index), 0}, true);
  return static_cast<HBRUSH>(brushes[index]);
}
