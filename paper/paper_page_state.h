// What the paper page and the registration dialog keep in the session while the sheet is open.
#pragma once

#include <windows.h>

#include "paper/paper_info.h"

namespace kestrel {

constexpr int kMaxPreviewLabels = 16;

// Where one label of the whole-label view lies, in pixels of its box.
struct PreviewLabel {
  RECT label;
  RECT printable;
  RECT picture;
  int eyeMark;  // height of the eye-mark bars
};

// A paper scaled to its preview box; recomputed for every drawing.
struct PreviewGeometry {
  RECT box;
  int centreX, centreY;
  float scale;  // pixels a unit of the paper
  int width, height, printableLeft, printableTop, printableWidth, printableHeight, gap, eyeMark;
  RECT picture;  // inside the printable area
  uint16_t unit;
};

enum PaperDialogMode : int { kNewPaper = 0, kEditPaper = 1, kEditFreePaper = 2 };

// Limits a paper's sizes are held to; PaperLimits in the order of the stored fields, in one unit.
struct PaperLimits {
  int16_t widthMin, widthMax, lengthMin, lengthMax, gapMin, gapMax, eyeMarkMin, eyeMarkMax;
  int16_t leftMin, leftMax, topMin, topMax, printableWidthMin, printableWidthMax;
  int16_t printableHeightMin, printableHeightMax;
};

struct PaperPageState {
  int selected;        // list entry
  PaperInfo preview;   // copy of the selected paper
  bool dataReference;  // check box of the page that the dialog reads
  PaperDialogMode mode;
  int orientationPicture;  // bitmap ids
  int fieldPicture;
  int focusedField;  // control id; 0: none
  bool filling;      // edit notifications are ignored meanwhile
  bool wholeLabel;   // the box shows the whole label
  PreviewGeometry geometry;
  PreviewLabel labels[kMaxPreviewLabels];
  int labelCount;
  POINT lastMarker;

  // The registration dialog:
  int edited;  // entry of the paper being edited
  PaperInfo work;
  PaperLimits limits;  // in the unit of work
  int dialogPicture;
  int dialogField;  // the field that last had the focus
  int pendingSpin;  // the up-down whose click awaits the rewrite of its text
  bool refilling;
  bool dialogWholeLabel;
  int reference;  // chosen reference paper; -1: none
};

}  // namespace kestrel
