// The state of a drop-down list with immediate effect (paper/fields/immediate_list.h).
#pragma once

#include <windows.h>

namespace kestrel {

// Zero-filled: no list is open.
struct OpenListState {
  bool open;
  bool justClosed;     // CBN_CLOSEUP came; CBN_SELCHANGE of the same click may follow
  LRESULT openedWith;  // the selection at the time of opening; CB_ERR: none
  LRESULT applied;     // the last selection that took effect
};

}  // namespace kestrel
