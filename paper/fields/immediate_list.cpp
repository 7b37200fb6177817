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
  const LRESULT selection = SendDlgItemMessageW(dialog, list, CB_GETCURSEL, 0, 0);
  switch (notification) {
    case CBN_DROPDOWN:
      state = {true, selection, selection};
      return ListAction::kOpened;
    case CBN_SELCHANGE:
      return Apply(state, selection, wasOpen);
    case CBN_CLOSEUP:
      state.open = false;
      // When no other selection was applied while the list was open, a click sends CBN_SELCHANGE.
      if (!wasOpen || state.applied == state.openedWith || selection == state.applied) {
        return ListAction::kNone;
      }
      return Apply(state, selection, true);
    default:
      return ListAction::kNone;
  }
}

}  // namespace kestrel
