#include "paper/fields/immediate_list.h"

namespace kestrel {
namespace {

ListAction Take(OpenListState& state, LRESULT selection, bool isOpen) {
  state.taken = selection;
  return isOpen && selection == state.openedWith ? ListAction::kRestore : ListAction::kChoose;
}

}  // namespace

ListAction OnListNotified(HWND dialog, int list, int notification, OpenListState& state) {
  const bool wasOpen = state.open;
  const LRESULT selection = SendDlgItemMessageW(dialog, list, CB_GETCURSEL, 0, 0);
  switch (notification) {
    case CBN_DROPDOWN:
      state = {true, selection, selection};
      return ListAction::kOpened;
    case CBN_SELCHANGE:
      return Take(state, selection, wasOpen);
    case CBN_CLOSEUP:
      state.open = false;
      // With nothing taken since the list was opened, a choice by mouse notifies CBN_SELCHANGE.
      if (!wasOpen || state.taken == state.openedWith || selection == state.taken) {
        return ListAction::kNone;
      }
      return Take(state, selection, true);
    default:
      return ListAction::kNone;
  }
}

}  // namespace kestrel
