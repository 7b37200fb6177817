// The drawing operations that are visible in a window, in order, in pixels of its client area. An
// operation that covers others opaquely removes them, so that a list is bounded by what is visible.
#pragma once

#include <windef.h>

#include <string>
#include <vector>

inline bool operator==(const RECT& a, const RECT& b) {
  return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}
inline bool operator==(const POINT& a, const POINT& b) { return a.x == b.x && a.y == b.y; }

namespace platform {

struct DrawOp {
  bool operator==(const DrawOp&) const = default;

  enum class Kind { kRectangle, kFill, kLine, kImage, kText } kind = Kind::kFill;
  RECT rect = {};    // rectangle, fill, image target, text clip box; a line runs from left/top to
                     // right/bottom
  COLORREF pen = 0;  // rectangles and lines
  int penStyle = 0;  // PS_SOLID, PS_DOT …
  int penWidth = 1;
  COLORREF brush = 0xFFFFFF;  // rectangles and fills
  int bitmap = 0;             // images: the bitmap's resource id
  RECT source = {};           // images: the part shown, in the bitmap's pixels
  std::u16string text;
  POINT at = {};  // text: the reference point
  COLORREF textColour = 0;
  COLORREF background = 0xFFFFFF;
  bool opaque = false;  // text: the box is filled with the background first
  int fontHeight = 0;   // pixels
  int fontAscent = 0;   // pixels from the reference point down to the baseline
  int fontWidth = 0;    // average character width in pixels; 0: natural
  std::u16string face;
  RECT clip = {};  // empty: the client area
};

using DisplayList = std::vector<DrawOp>;

}  // namespace platform
