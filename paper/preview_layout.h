// The geometry of the whole-label view: a strip of labels, scaled to its box, and the markers of
// the offsets. preview_draw draws it.
#pragma once

#include <windows.h>

#include "paper/paper_info.h"
#include "paper/paper_records.h"

namespace kestrel {

constexpr int kMaxPreviewLabels = 16;

// The rectangles of one label in pixels of the box. An empty rectangle is not drawn.
struct PreviewLabel {
  RECT label;
  RECT printable;
  RECT picture;
  int eyeMark;  // height of the eye-mark bars at the top of the label
};

// A paper scaled to its preview box, in pixels. It is computed anew for every drawing.
struct PreviewGeometry {
  RECT box;
  int centreX, centreY;
  float scale;  // pixels per unit of the paper; 0: the paper has no size
  int width, height, printableLeft, printableTop, printableWidth, printableHeight, gap, eyeMark;
  RECT picture;  // square inside the printable area
};

// A dotted line of a marker.
struct MarkerLine {
  POINT from;
  POINT to;
};

// The window of the strip, which determines the position of the first label.
enum class PreviewPlace { kPage, kDialog };

// Scales a paper to a box, the client rectangle of a control. Returns scale 0 and no sizes when the
// larger side of the paper is 0 or less.
PreviewGeometry MeasurePreview(const PaperInfo& paper, const RECT& box);

// Converts a value in units of the paper to pixels, rounded half up, for negative values too.
int ScaleToPreview(int value, float scale);

// Lays out the labels that are visible in the box: the first label, those above it, then those
// below it. Returns their number.
int LayOutLabels(const PreviewGeometry& geometry, PreviewPlace place,
                 PreviewLabel (&labels)[kMaxPreviewLabels]);

constexpr int kMaxMarkerLines = 2;
// Lays out the lines that mark an offset field of the paper page, named by its control id, clamped
// to the box. The first line starts at the marked point. Returns the number of lines, 0 for any
// other control.
int LayOutMarker(const PreviewGeometry& geometry, int field, const PaperOffsets& offsets,
                 bool eyeMarkSensor, MarkerLine (&lines)[kMaxMarkerLines]);

}  // namespace kestrel
