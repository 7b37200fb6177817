// Drop-down lists whose selection takes effect at once, before the page is left or OK is clicked.
#pragma once

#include <windows.h>

#include "paper/fields/open_list_state.h"

namespace kestrel {

enum class ListAction {
  kNone,
  kOpened,   // save the state that a selection would change
  kChoose,   // apply the selection
  kRestore,  // restore the saved state: the selection is again that of the time of opening
};

// Handles a notification of a drop-down list and returns the action that the dialog has to take. An
// arrow key in an open list sends CBN_SELCHANGE at once. Esc restores the selection and sends
// CBN_SELENDCANCEL and CBN_CLOSEUP, but no CBN_SELCHANGE. CBN_SELCHANGE may come before or after
// CBN_CLOSEUP; both orders have the same result. Needs every notification of the list.
ListAction OnListNotified(HWND dialog, int list, int notification, OpenListState& state);

}  // namespace kestrel
