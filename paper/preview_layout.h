// The geometry of the whole-label view: a strip of labels scaled to its box, and the markers of the
// offsets. Pure arithmetic over rectangles; preview_draw draws it.
#pragma once

#include <windows.h>

#include "paper/paper_info.h"
#include "paper/paper_records.h"

namespace kestrel {

constexpr int kMaxPreviewLabels = 16;

// Where one label of the whole-label view lies, in pixels of its box. An empty rectangle is not
// drawn.
struct PreviewLabel {
  RECT label;
  RECT printable;
  RECT picture;
  int eyeMark;  // height of the eye-mark bars at the label's top
};

// A paper scaled to its preview box; recomputed for every drawing. Everything but the scale is in
// pixels.
struct PreviewGeometry {
  RECT box;
  int centreX, centreY;
  float scale;  // pixels a unit of the paper; 0: the paper has no size and no label is drawn
  int width, height, printableLeft, printableTop, printableWidth, printableHeight, gap, eyeMark;
  RECT picture;  // square inside the printable area
};

// One dotted line of a marker.
struct MarkerLine {
  POINT from;
  POINT to;
};

// Where the strip is shown; the place of the first label differs.
enum class PreviewPlace { kPage, kDialog };

// Scales a paper to a box, given as the client rectangle of its control. A paper whose larger side
// is 0 or less gets scale 0 and no measures.
PreviewGeometry MeasurePreview(const PaperInfo& paper, const RECT& box);

// A number of the paper's units in pixels of the preview, rounded half up, below zero too.
int ScaleToPreview(int value, float scale);

// Lays out the labels that can be seen in the box: the first one, those above it, then those below.
// Answers how many there are.
int LayOutLabels(const PreviewGeometry& geometry, PreviewPlace place,
                 PreviewLabel (&labels)[kMaxPreviewLabels]);

constexpr int kMaxMarkerLines = 2;
// The lines that mark an offset field of the paper page (by control id), clamped to the box.
// Answers how many there are, 0 for any other control. The first line starts at the marked point.
int LayOutMarker(const PreviewGeometry& geometry, int field, const PaperOffsets& offsets,
                 bool eyeMarkSensor, MarkerLine (&lines)[kMaxMarkerLines]);

}  // namespace kestrel
