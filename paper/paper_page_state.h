// The data of the paper page in a property-sheet session.
#pragma once

#include <windows.h>

#include "paper/fields/open_list_state.h"
#include "paper/paper_info.h"
#include "paper/paper_records.h"

namespace kestrel {

// The content of the page's picture box.
enum PaperPicture : int {
  kWholeLabelPicture = 0,
  kMarkedLabelPicture = 1,  // the whole label with the markers of the offsets
  kFieldPicture = 2,        // the sketch of the field with the focus
};

struct PaperPageState {
  int selected;  // list entry
  OpenListState list;
  PaperInfo preview;       // copy of the selected paper
  PaperOffsets offsets;    // as typed, limited to their ranges; stored when the page is left
  bool dataReference;      // a new paper starts as a copy of the selected one
  bool filling;            // the page writes its own edits: ignore their notifications
  PaperPicture picture;    // content of the picture box
  int orientationPicture;  // bitmap id
  int fieldPicture;        // bitmap id
};

}  // namespace kestrel
