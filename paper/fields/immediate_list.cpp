#include "paper/fields/immediate_list.h"

namespace kestrel {
namespace {

ListAction Apply(OpenListState& state, LRESULT selection, bool isOpen) {
  state.applied = selection;
  return isOpen && selection == state.openedWith ? ListAction::kRestore : ListAction::kChoose;
}

}  // namespace

ListAction OnListNotified(HWND dialog, int list, int notification, OpenListState& state) {
  const bool wasOpen = state.open;
  const bool wasJustClosed = state.justClosed;
  const LRESULT selection = SendDlgItemMessageW(dialog, list, CB_GETCURSEL, 0, 0);
  switch (notification) {
    case CBN_DROPDOWN:
      state = {.open = true, .justClosed = false, .openedWith = selection, .applied = selection};
      return ListAction::kOpened;
    case CBN_SELCHANGE:
      state.justClosed = false;
      // CBN_CLOSEUP has already applied this selection, or restored the state.
      if (wasJustClosed && selection == state.applied) return ListAction::kNone;
      return Apply(state, selection, wasOpen);
    case CBN_CLOSEUP:
      state.open = false;
      state.justClosed = wasOpen;
      // When no other selection was applied while the list was open, a click sends CBN_SELCHANGE.
      if (!wasOpen || state.applied == state.openedWith || selection == state.applied) {
        return ListAction::kNone;
      }
      return Apply(state, selection, true);
    case CBN_SETFOCUS:
      // The dialog may have changed the selection since the list was closed, or another list of the
      // dialog was closed.
      state.justClosed = false;
      return ListAction::kNone;
    default:
      return ListAction::kNone;
  }
}

}  // namespace kestrel
