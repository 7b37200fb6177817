// Drop-down lists whose choice takes effect at once, not when the page is left or OK is clicked.
#pragma once

#include <windows.h>

#include "paper/fields/open_list_state.h"

namespace kestrel {

enum class ListAction {
  kNone,
  kOpened,   // store what a choice replaces
  kChoose,   // the selection takes effect
  kRestore,  // the selection is again the one that the list was opened with: restore what was
             // stored
};

// Returns what a notification of a drop-down list asks of its dialog. An arrow key in an open list
// notifies CBN_SELCHANGE at once; Esc restores the selection without notifying it again
// (CBN_SELENDCANCEL, then CBN_CLOSEUP). CBN_SELCHANGE may come before or after CBN_CLOSEUP.
ListAction OnListNotified(HWND dialog, int list, int notification, OpenListState& state);

}  // namespace kestrel
