// What the paper page and the registration dialog keep in the session while the sheet is open.
#pragma once

#include <windows.h>

#include "paper/fields/open_list_state.h"
#include "paper/paper_info.h"
#include "paper/paper_records.h"

namespace kestrel {

enum PaperDialogMode : int { kNewPaper = 0, kEditPaper = 1, kEditFreePaper = 2 };

// What the page's picture box shows.
enum PaperPicture : int {
  kWholeLabelPicture = 0,
  kMarkedLabelPicture = 1,  // the whole label with the markers of the offsets
  kFieldPicture = 2,        // the sketch of the field that has the focus
};

// The registration dialog's part.
struct PaperDialogState {
  int edited;  // entry of the paper being edited
  PaperInfo work;
  PaperLimits limits;  // in the unit of work
  int fieldPicture;    // bitmap id
  bool wholeLabel;     // the whole-label view lies over the sketch
};

struct PaperPageState {
  int selected;  // list entry
  OpenListState list;
  PaperInfo preview;   // copy of the selected paper
  bool dataReference;  // check box of the page that the dialog reads
  PaperDialogMode mode;
  int orientationPicture;  // bitmap ids
  int fieldPicture;
  bool filling;  // edit notifications are ignored meanwhile
  PaperPicture picture;
  PaperDialogState dialog;
};

}  // namespace kestrel
