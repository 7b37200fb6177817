// Text output.
#include <algorithm>

#include "platform/desktop/drawing/gdi.h"

using namespace platform;
using namespace platform::gdi;

namespace {

DrawOp TextOp(ObjectStore& store, const Dc& dc, std::u16string_view text, POINT at) {
  const LOGFONTW& font = SelectedFont(store, dc);
  const FontShape shape = ShapeOf(font);
  DrawOp op = Prepared(store, dc, DrawOp::Kind::kText);
  op.text = text;
  op.at = at;
  op.rect = {at.x, at.y, at.x + TextWidth(shape, text), at.y + shape.height};
  op.opaque = dc.state.backgroundMode == OPAQUE;
  op.fontHeight = shape.height;
  op.fontAscent = shape.ascent;
  op.fontWidth = font.lfWidth == 0 ? 0 : shape.average;
  op.face = font.lfFaceName;
  return op;
}

DrawOp BoxOp(const Dc& dc, const RECT& rect) {
  DrawOp op;
  op.kind = DrawOp::Kind::kFill;
  op.rect = rect;
  op.brush = dc.state.background;
  return op;
}

// Where a text's top left lies when its reference point is aligned otherwise.
POINT Aligned(const Dc& dc, const FontShape& shape, int width, POINT at) {
  const UINT across = dc.state.align & TA_CENTER;
  if (across == TA_CENTER) at.x -= width / 2;
  if (across == TA_RIGHT) at.x -= width;
  const UINT down = dc.state.align & TA_BASELINE;
  if (down == TA_BASELINE) at.y -= shape.ascent;
  if (down == TA_BOTTOM) at.y -= shape.height;
  return at;
}

// Drops the first "&" of each pair that marks an access key; "&&" stays one "&".
std::u16string WithoutPrefixes(std::u16string_view text) {
  std::u16string plain;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == u'&' && i + 1 < text.size()) ++i;
    plain += text[i];
  }
  return plain;
}

// Lines of a text within a width: broken at line ends, and with DT_WORDBREAK at blanks and between
// full-width characters where the width is reached.
std::vector<std::u16string> Lines(std::u16string_view text, const FontShape& shape, int width,
                                  UINT format) {
  std::vector<std::u16string> lines(1);
  if (format & DT_SINGLELINE) {
    lines[0] = text;
    return lines;
  }
  int used = 0;
  for (const char16_t unit : text) {
    if (unit == u'\r') continue;
    if (unit == u'\n') {
      lines.emplace_back();
      used = 0;
      continue;
    }
    const int wide = CharWidth(shape, unit);
    std::u16string& line = lines.back();
    if ((format & DT_WORDBREAK) && used + wide > width && !line.empty()) {
      const size_t blank = line.rfind(u' ');
      std::u16string rest;
      if (wide <= shape.average && unit != u' ' && blank != std::u16string::npos) {
        rest = line.substr(blank + 1);
        line.resize(blank);
      }
      used = TextWidth(shape, rest);
      lines.push_back(std::move(rest));
      if (unit == u' ') continue;
    }
    lines.back() += unit;
    used += wide;
  }
  return lines;
}

}  // namespace

BOOL WINAPI TextOutW(HDC dc, int x, int y, LPCWSTR text, int length) {
  return length < 0 ? FALSE
                    : ExtTextOutW(dc, x, y, 0, nullptr, text, static_cast<UINT>(length), nullptr);
}

BOOL WINAPI ExtTextOutW(HDC dc, int x, int y, UINT options, const RECT* rect, LPCWSTR text,
                        UINT length, const INT*) {
  ObjectStore& store = ObjectStore::Get();
  const std::lock_guard guard(store.lock);
  const Dc* it = store.FindDc(dc);
  if (!it || (!text && length > 0)) return FALSE;
  const std::u16string_view units(text, length);
  const FontShape shape = ShapeOf(SelectedFont(store, *it));
  DrawOp op = TextOp(store, *it, units, Aligned(*it, shape, TextWidth(shape, units), {x, y}));
  if (rect && (options & ETO_CLIPPED)) op.clip = *rect;
  if (rect && (options & ETO_OPAQUE)) {
    // Text that sticks out of its box is not part of what the box covers.
    if (options & ETO_CLIPPED) {
      op.rect = *rect;
      op.opaque = true;
    } else {
      Record(store, *it, BoxOp(*it, *rect));
      op.opaque = false;
    }
  }
  if (op.text.empty() && !op.opaque) return TRUE;
  Record(store, *it, std::move(op));
  return TRUE;
}

// The height of the text; with DT_CALCRECT the rectangle is fitted to it and nothing is drawn.
int WINAPI DrawTextW(HDC dc, LPCWSTR text, int length, LPRECT rect, UINT format) {
  ObjectStore& store = ObjectStore::Get();
  const std::lock_guard guard(store.lock);
  const Dc* it = store.FindDc(dc);
  if (!it || !text || !rect) return 0;
  const std::u16string_view given = length < 0
                                        ? std::u16string_view(text)
                                        : std::u16string_view(text, static_cast<size_t>(length));
  const std::u16string plain =
      (format & DT_NOPREFIX) ? std::u16string(given) : WithoutPrefixes(given);
  const FontShape shape = ShapeOf(SelectedFont(store, *it));
  const auto lines = Lines(plain, shape, rect->right - rect->left, format);
  const int height = static_cast<int>(lines.size()) * shape.height;
  if (format & DT_CALCRECT) {
    int widest = 0;
    for (const auto& line : lines) widest = std::max(widest, TextWidth(shape, line));
    rect->right = rect->left + widest;
    rect->bottom = rect->top + height;
    return height;
  }
  LONG y = rect->top;
  if (format & DT_SINGLELINE) {
    if (format & DT_VCENTER) y = (rect->top + rect->bottom - height) / 2;
    if (format & DT_BOTTOM) y = rect->bottom - height;
  }
  for (const auto& line : lines) {
    const int width = TextWidth(shape, line);
    LONG x = rect->left;
    if (format & DT_CENTER) x = (rect->left + rect->right - width) / 2;
    if (format & DT_RIGHT) x = rect->right - width;
    DrawOp op = TextOp(store, *it, line, {x, y});
    if (!(format & DT_NOCLIP)) op.clip = *rect;
    if (!line.empty()) Record(store, *it, std::move(op));
    y += shape.height;
  }
  return height;
}
