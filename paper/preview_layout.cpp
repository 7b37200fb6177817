#include "paper/preview_layout.h"

#include <algorithm>

#include "resources/resource.h"

namespace kestrel {
namespace {

// The largest coordinate: outside every box, and small enough that sums of coordinates and sixteen
// pitches fit into 32 bits.
constexpr int kMaxCoordinate = 1 << 24;

// Rounds a number to 32 bits. The x87 registers of an x86 processor have a higher precision, with
// which a value half way between two pixels could be rounded differently than on x64.
float RoundToFloat(float number) {
  const volatile float rounded = number;
  return rounded;
}

RECT Offset(const RECT& rect, int dx, int dy) {
  return {rect.left + dx, rect.top + dy, rect.right + dx, rect.bottom + dy};
}

// Clips a rectangle to the height of the box; returns an empty one when it is outside.
RECT ClipToHeight(const RECT& rect, int height) {
  if (rect.bottom <= 0 || rect.top >= height) return {};
  return {rect.left, std::max<LONG>(rect.top, 0), rect.right, std::min<LONG>(rect.bottom, height)};
}

// Places a label at its top left corner and clips it to the height of the box. Returns false when
// the label is outside.
bool PlaceLabel(const PreviewGeometry& geometry, int x, int y, PreviewLabel& out) {
  const int height = geometry.box.bottom;
  if (y + geometry.height < 1 || y >= height) return false;

  const int left = x + geometry.printableLeft;
  const int top = y + geometry.printableTop;
  const RECT printable = {left, top, left + geometry.printableWidth,
                          top + geometry.printableHeight};
  out.label = {x, std::max(y, 0), x + geometry.width, y + geometry.height};
  out.printable = ClipToHeight(printable, height);
  out.picture = ClipToHeight(Offset(geometry.picture, left, top), height);
  out.eyeMark = std::max(geometry.eyeMark + std::min(y, 0), 0);
  return true;
}

MarkerLine Across(const PreviewGeometry& geometry, POINT from) {
  return {from, {geometry.box.right, from.y}};
}

POINT ClampToBox(const PreviewGeometry& geometry, int x, int y) {
  return {std::clamp<LONG>(x, 0, std::max<LONG>(geometry.box.right, 0)),
          std::clamp<LONG>(y, 0, std::max<LONG>(geometry.box.bottom, 0))};
}

}  // namespace

int ScaleToPreview(int value, float scale) {
  const float exact = RoundToFloat(RoundToFloat(static_cast<float>(value)) * scale);
  const float pixels = std::clamp<float>(exact, -kMaxCoordinate, kMaxCoordinate);
  const int whole = static_cast<int>(pixels);
  // The fraction is exact. A sum with 0.5 is not when the caller has set the x87 to 24 bits.
  const float fraction = pixels - static_cast<float>(whole);
  return whole + (fraction >= 0.5F ? 1 : 0) - (fraction < -0.5F ? 1 : 0);
}

PreviewGeometry MeasurePreview(const PaperInfo& paper, const RECT& box) {
  PreviewGeometry geometry = {};
  geometry.box = box;
  geometry.centreX = (box.left + box.right) / 2;
  geometry.centreY = (box.top + box.bottom) / 2;
  const int larger = std::max(paper.LabelWidth, paper.LabelHeight);
  if (larger <= 0) return geometry;

  const float scale =
      RoundToFloat(static_cast<float>(box.right - box.left) / static_cast<float>(larger));
  geometry.scale = scale;
  geometry.width = ScaleToPreview(paper.LabelWidth, scale);
  geometry.height = ScaleToPreview(paper.LabelHeight, scale);
  geometry.printableLeft = ScaleToPreview(paper.PrintableLeft, scale);
  geometry.printableTop = ScaleToPreview(paper.PrintableTop, scale);
  geometry.printableWidth = ScaleToPreview(paper.PrintableWidth, scale);
  geometry.printableHeight = ScaleToPreview(paper.PrintableHeight, scale);
  geometry.gap = ScaleToPreview(paper.GapSize, scale);
  geometry.eyeMark = ScaleToPreview(paper.EyeMarkSize, scale);

  const int side = std::min(geometry.printableWidth, geometry.printableHeight) / 2;
  const int left = geometry.printableWidth / 2 - side / 2;
  const int top = geometry.printableHeight / 2 - side / 2;
  geometry.picture = {left, top, left + side, top + side};
  return geometry;
}

int LayOutLabels(const PreviewGeometry& geometry, PreviewPlace place,
                 PreviewLabel (&labels)[kMaxPreviewLabels]) {
  if (geometry.scale <= 0) return 0;
  const int x = geometry.centreX - geometry.width / 2;
  const int y = place == PreviewPlace::kPage ? geometry.centreY + geometry.gap / 2
                                             : geometry.centreY - geometry.height / 4;
  const int pitch = geometry.height + geometry.gap;

  int count = 0;
  if (PlaceLabel(geometry, x, y, labels[count])) ++count;
  // With no positive pitch the labels would be drawn over each other.
  if (pitch <= 0) return count;
  for (int k = 1; count < kMaxPreviewLabels; ++k) {
    if (!PlaceLabel(geometry, x, y - k * pitch, labels[count])) break;
    ++count;
  }
  for (int k = 1; count < kMaxPreviewLabels && k * pitch < geometry.box.bottom; ++k) {
    if (!PlaceLabel(geometry, x, y + k * pitch, labels[count])) break;
    ++count;
  }
  return count;
}

int LayOutMarker(const PreviewGeometry& geometry, int field, const PaperOffsets& offsets,
                 bool eyeMarkSensor, MarkerLine (&lines)[kMaxMarkerLines]) {
  const auto dots = [&](int value) { return ScaleToPreview(value, geometry.scale); };
  const int middleX = geometry.box.right / 2;
  const int middleY = geometry.box.bottom / 2;
  const int halfGap = geometry.gap / 2;
  switch (field) {
    case IDC_PAPER_VERT_BASE:
    case IDC_PAPER_HORZ_BASE: {
      const POINT point =
          ClampToBox(geometry, middleX - geometry.width / 2 + dots(offsets.horzBase),
                     middleY + halfGap + dots(offsets.vertBase));
      lines[0] = Across(geometry, point);
      lines[1] = {point, ClampToBox(geometry, point.x, geometry.centreY + geometry.height)};
      return 2;
    }
    case IDC_PAPER_PITCH_OFFSET: {
      const int edge = eyeMarkSensor ? middleY + halfGap : middleY - halfGap;
      lines[0] = Across(geometry, ClampToBox(geometry, 0, edge + dots(offsets.pitch)));
      return 1;
    }
    case IDC_PAPER_PEEL_OFFSET:
      lines[0] = Across(geometry, ClampToBox(geometry, 0, middleY + dots(offsets.peel)));
      return 1;
    case IDC_PAPER_TEAR_OFFSET:
      lines[0] = Across(geometry, ClampToBox(geometry, 0, middleY + dots(offsets.tear)));
      return 1;
    default:
      return 0;
  }
}

}  // namespace kestrel
