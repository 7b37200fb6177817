// Putting drawing operations into display lists: clipping, and dropping what can no longer be seen.
#include <algorithm>

#include "platform/desktop/drawing/gdi.h"
#include "platform/desktop/windows/window.h"

namespace platform::gdi {
namespace {

bool Contains(const RECT& outer, const RECT& inner) {
  return outer.left <= inner.left && outer.top <= inner.top && outer.right >= inner.right &&
         outer.bottom >= inner.bottom;
}

bool Same(const RECT& a, const RECT& b) { return Contains(a, b) && Contains(b, a); }

// The pixels that an operation replaces whatever was there; empty when it lets something through.
RECT Covered(const DrawOp& op) {
  switch (op.kind) {
    case DrawOp::Kind::kFill:
    case DrawOp::Kind::kImage:
      return op.rect;
    case DrawOp::Kind::kText:
      return op.opaque ? op.rect : RECT{};
    case DrawOp::Kind::kRectangle:
      return op.hollow ? RECT{} : op.rect;
    case DrawOp::Kind::kLine:
      return {};
  }
  return {};
}

// The pixels that an operation can touch.
RECT Touched(const DrawOp& op) {
  RECT box = op.rect;
  if (op.kind == DrawOp::Kind::kLine) {
    const LONG half = op.penWidth;
    box = {std::min(op.rect.left, op.rect.right) - half,
           std::min(op.rect.top, op.rect.bottom) - half,
           std::max(op.rect.left, op.rect.right) + half + 1,
           std::max(op.rect.top, op.rect.bottom) + half + 1};
  }
  return box;
}

RECT Clipped(const RECT& rect, const RECT& clip, const RECT& area) {
  RECT box = {};
  IntersectRect(&box, &rect, &area);
  if (!IsRectEmpty(&clip)) IntersectRect(&box, &box, &clip);
  return box;
}

bool Identical(const DrawOp& a, const DrawOp& b) {
  return a.kind == b.kind && Same(a.rect, b.rect) && a.pen == b.pen && a.penStyle == b.penStyle &&
         a.penWidth == b.penWidth && a.brush == b.brush && a.hollow == b.hollow &&
         a.bitmap == b.bitmap && Same(a.source, b.source) && a.text == b.text && a.at.x == b.at.x &&
         a.at.y == b.at.y && a.textColour == b.textColour && a.background == b.background &&
         a.opaque == b.opaque && a.fontHeight == b.fontHeight && a.fontWidth == b.fontWidth &&
         a.face == b.face && Same(a.clip, b.clip);
}

}  // namespace

Target WindowTarget(HWND handle) {
  const auto window = FindWindowOf(handle);
  if (!window) return {};
  return {&window->drawing, {0, 0, window->width(), window->height()}};
}

// What a later operation hides completely is dropped, and so is an earlier drawing of the very same
// thing: the later one paints the same pixels over it. So a list cannot grow by redrawing.
void Record(const Target& target, DrawOp op) {
  if (!target.list) return;
  const RECT seen = Clipped(Touched(op), op.clip, target.area);
  if (IsRectEmpty(&seen)) return;
  const RECT hidden = Clipped(Covered(op), op.clip, target.area);
  std::erase_if(*target.list, [&](const DrawOp& earlier) {
    if (Identical(earlier, op)) return true;
    return !IsRectEmpty(&hidden) &&
           Contains(hidden, Clipped(Touched(earlier), earlier.clip, target.area));
  });
  target.list->push_back(std::move(op));
}

void Record(ObjectStore& store, const Dc& dc, DrawOp op) {
  if (dc.state.clip) {
    RECT clip = *dc.state.clip;
    if (!IsRectEmpty(&op.clip)) IntersectRect(&clip, &clip, &op.clip);
    if (IsRectEmpty(&clip)) return;
    op.clip = clip;
  }
  Record(store.TargetOf(dc), std::move(op));
}

DrawOp Prepared(ObjectStore& store, const Dc& dc, DrawOp::Kind kind) {
  DrawOp op;
  op.kind = kind;
  if (const auto* pen = store.FindAs<LOGPEN>(dc.state.pen)) {
    op.pen = pen->lopnColor;
    op.penStyle = static_cast<int>(pen->lopnStyle);
    op.penWidth = std::max<int>(1, pen->lopnWidth.x);
  }
  if (const auto* brush = store.FindAs<LOGBRUSH>(dc.state.brush)) {
    op.brush = brush->lbColor;
    op.hollow = brush->lbStyle == BS_NULL;
  }
  op.textColour = dc.state.textColour;
  op.background = dc.state.background;
  return op;
}

}  // namespace platform::gdi
