// What a page stores of a drop-down list while it is open (paper/fields/immediate_list.h).
#pragma once

#include <windows.h>

namespace kestrel {

// The state of a dialog's open list. All zero: no list is open.
struct OpenListState {
  bool open;
  LRESULT openedWith;  // the selection when the list was opened; CB_ERR: none
  LRESULT taken;       // the last selection that took effect
};

}  // namespace kestrel
