// Drawing into display lists: rectangles, lines, fills, bitmaps and texts.
#include <algorithm>
#include <string>

#include "platform/gdi32/gdi.h"
#include "platform/user32/window.h"

using namespace platform;
using namespace platform::gdi;

namespace {

bool IsEmpty(const RECT& rect) { return rect.left >= rect.right || rect.top >= rect.bottom; }

RECT Common(const RECT& a, const RECT& b) {
  const RECT common = {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
                       std::min(a.bottom, b.bottom)};
  return IsEmpty(common) ? RECT{} : common;
}

RECT Upright(const RECT& rect) {
  return {std::min(rect.left, rect.right), std::min(rect.top, rect.bottom),
          std::max(rect.left, rect.right), std::max(rect.top, rect.bottom)};
}

bool Contains(const RECT& outer, const RECT& inner) {
  return outer.left <= inner.left && outer.top <= inner.top && outer.right >= inner.right &&
         outer.bottom >= inner.bottom;
}

// The pixels that an operation can change.
RECT AffectedArea(const DrawOp& op) {
  if (op.kind != DrawOp::Kind::kLine) return op.rect;
  const RECT box = Upright(op.rect);
  const LONG half = op.penWidth;
  return {box.left - half, box.top - half, box.right + half + 1, box.bottom + half + 1};
}

RECT VisibleArea(const DrawOp& op, const RECT& area) {
  const RECT box = Common(AffectedArea(op), area);
  return IsEmpty(op.clip) ? box : Common(box, op.clip);
}

// The pixels that an operation replaces completely; empty when the pixels below show through.
RECT CoveredArea(const DrawOp& op, const RECT& area) {
  const bool isTransparent =
      op.kind == DrawOp::Kind::kLine || (op.kind == DrawOp::Kind::kText && !op.opaque);
  return isTransparent ? RECT{} : VisibleArea(op, area);
}

// Returns an operation with the pen, brush and colours of the context.
DrawOp MakeOp(ObjectStore& store, const Dc& dc, DrawOp::Kind kind, const RECT& rect) {
  DrawOp op;
  op.kind = kind;
  op.rect = rect;
  const Pen& pen = store.Selected<Pen>(dc);
  op.pen = pen.colour;
  op.penStyle = pen.style;
  op.penWidth = std::max(1, pen.width);
  op.brush = store.Selected<Brush>(dc).colour;
  op.textColour = dc.state.textColour;
  op.background = dc.state.background;
  return op;
}

}  // namespace

namespace platform::gdi {

void Record(const Dc& dc, DrawOp op) {
  const WindowPtr window = FindWindowOf(dc.window);
  if (!window) return;
  const RECT area = {0, 0, window->width(), window->height()};
  if (IsEmpty(VisibleArea(op, area))) return;
  const RECT hidden = CoveredArea(op, area);
  std::erase_if(window->drawing, [&](const DrawOp& earlier) {
    return earlier == op || (!IsEmpty(hidden) && Contains(hidden, VisibleArea(earlier, area)));
  });
  window->drawing.push_back(std::move(op));
}

}  // namespace platform::gdi

// As documented, the rectangle excludes its last column and row.
BOOL WINAPI Rectangle(HDC dc, int left, int top, int right, int bottom) {
  return WithDc(dc, FALSE, [&](ObjectStore& store, Dc& it) {
    Record(it, MakeOp(store, it, DrawOp::Kind::kRectangle, Upright({left, top, right, bottom})));
    return TRUE;
  });
}

BOOL WINAPI MoveToEx(HDC dc, int x, int y, LPPOINT previous) {
  return WithDc(dc, FALSE, [=](ObjectStore&, Dc& it) {
    if (previous != nullptr) *previous = it.state.position;
    it.state.position = {x, y};
    return TRUE;
  });
}

BOOL WINAPI LineTo(HDC dc, int x, int y) {
  return WithDc(dc, FALSE, [=](ObjectStore& store, Dc& it) {
    const POINT from = it.state.position;
    Record(it, MakeOp(store, it, DrawOp::Kind::kLine, {from.x, from.y, x, y}));
    it.state.position = {x, y};
    return TRUE;
  });
}

// The only supported operation is SRCCOPY: the target shows the resource itself.
BOOL WINAPI StretchBlt(HDC dc, int x, int y, int width, int height, HDC source, int sourceX,
                       int sourceY, int sourceWidth, int sourceHeight, DWORD rop) {
  return WithDc(dc, FALSE, [&](ObjectStore& store, Dc& it) {
    const Dc* from = store.FindDc(source);
    if (from == nullptr || rop != SRCCOPY) return FALSE;
    DrawOp op;
    op.kind = DrawOp::Kind::kImage;
    op.rect = {x, y, x + width, y + height};
    op.bitmap = store.Selected<Bitmap>(*from).resourceId;
    op.source = {sourceX, sourceY, sourceX + sourceWidth, sourceY + sourceHeight};
    Record(it, std::move(op));
    return TRUE;
  });
}

BOOL WINAPI BitBlt(HDC dc, int x, int y, int width, int height, HDC source, int sourceX,
                   int sourceY, DWORD rop) {
  return StretchBlt(dc, x, y, width, height, source, sourceX, sourceY, width, height, rop);
}

BOOL WINAPI TextOutW(HDC dc, int x, int y, LPCWSTR text, int length) {
  return length < 0 ? FALSE
                    : ExtTextOutW(dc, x, y, 0, nullptr, text, static_cast<UINT>(length), nullptr);
}

// A filled box also clips, so that the operation covers no more than the box.
BOOL WINAPI ExtTextOutW(HDC dc, int x, int y, UINT options, const RECT* rect, LPCWSTR text,
                        UINT length, const INT*) {
  return WithDc(dc, FALSE, [&](ObjectStore& store, Dc& it) {
    const LOGFONTW& font = store.Selected<LOGFONTW>(it);
    const FontShape shape = ShapeOf(font);
    const std::u16string_view units(text, length);
    DrawOp op = MakeOp(store, it, DrawOp::Kind::kText,
                       {x, y, x + TextWidth(shape, units), y + shape.height});
    op.text = units;
    op.at = {x, y};
    op.opaque = it.state.backgroundMode == OPAQUE;
    op.fontHeight = shape.height;
    op.fontAscent = shape.ascent;
    op.fontWidth = font.lfWidth == 0 ? 0 : shape.average;
    op.face = font.lfFaceName;
    if (rect != nullptr && (options & (ETO_CLIPPED | ETO_OPAQUE)) != 0) op.clip = *rect;
    if (rect != nullptr && (options & ETO_OPAQUE) != 0) {
      op.rect = *rect;
      op.opaque = true;
    }
    Record(it, std::move(op));
    return TRUE;
  });
}
