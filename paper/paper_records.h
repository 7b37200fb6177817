// What the paper checks and the preview compute with: limits of a paper's sizes, the measures of a
// scaled label and the places of the drawn labels.
#pragma once

#include <windows.h>

#include <cstdint>

namespace kestrel {

// Smallest and largest value of one measured field.
struct SizeLimit {
  int16_t minimum;
  int16_t maximum;
};

// The limits of a paper, in the unit of the paper being edited.
struct PaperLimits {
  SizeLimit width, length, gap, eyeMark;
  SizeLimit printableLeft, printableTop, printableWidth, printableHeight;
};
static_assert(sizeof(PaperLimits) == 32);

// The limits in tenths of a millimetre. That of the eye-mark is in dots of the head.
constexpr SizeLimit kLabelWidths = {100, 580};
constexpr SizeLimit kLabelLengths = {100, 1630};
constexpr SizeLimit kGaps = {0, 80};
constexpr SizeLimit kPrintableWidths = {284, 480};
constexpr SizeLimit kPrintableHeights = {160, 1600};
constexpr int16_t kWidthKeptPrintable = 140;  // of the widest label, right of the printable left
constexpr int kMaxEyeMarkDots = 99;

constexpr int kMaxPreviewLabels = 16;

// Where one label of the whole-label view lies, in pixels of its box. An empty rectangle is not
// drawn.
struct PreviewLabel {
  RECT label;
  RECT printable;
  RECT picture;
  int eyeMark;  // height of the eye-mark bars at the label's top
};

// A paper scaled to its preview box; recomputed for every drawing. Everything but scale and unit is
// in pixels.
struct PreviewGeometry {
  RECT box;
  int centreX, centreY;
  float scale;  // pixels a unit of the paper; 0: the paper has no size and no label is drawn
  int width, height, printableLeft, printableTop, printableWidth, printableHeight, gap, eyeMark;
  RECT picture;  // square inside the printable area
  uint16_t unit;
};

// One dotted line of a marker.
struct MarkerLine {
  POINT from;
  POINT to;
};

}  // namespace kestrel
