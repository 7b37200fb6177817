// List boxes and combo boxes. A selection by message sends no notification; a selection by the user
// does.
#include <algorithm>
#include <utility>

#include "platform/user32/manager.h"

namespace platform {

namespace {

int Count(const ListData& list) { return static_cast<int>(list.texts.size()); }

bool IsCombo(const Window& window) { return window.windowClass == WindowClass::kComboBox; }
bool IsList(const Window& window) {
  return IsCombo(window) || window.windowClass == WindowClass::kListBox;
}

// Inserts a text before an index, or at the end for -1. Returns the index, or CB_ERR when it is
// beyond the end.
LRESULT Insert(ListData& list, INT index, LPARAM text) {
  if (index > Count(list)) return CB_ERR;
  if (index < 0) index = Count(list);
  list.texts.insert(list.texts.begin() + index, reinterpret_cast<LPCWSTR>(text));
  if (list.selected >= index) ++list.selected;
  return index;
}

LRESULT SetSelection(ListData& list, WPARAM index) {
  list.selected = index < list.texts.size() ? static_cast<int>(index) : -1;
  return list.selected;
}

LRESULT Clear(ListData& list) {
  list.texts.clear();
  list.selected = -1;
  return 0;
}

// The dialog may fill the list during CBN_DROPDOWN.
void Open(const WindowPtr& window) {
  ListData& list = window->list;
  list.open = true;
  NotifyCommand(*window, CBN_DROPDOWN);
  list.openedWith = list.selected;
}

// Closes an open list. Without `accept` the selection at opening is restored, without
// CBN_SELCHANGE.
void Close(const WindowPtr& window, bool accept) {
  ListData& list = window->list;
  if (!std::exchange(list.open, false)) return;
  NotifyCommand(*window, accept ? CBN_SELENDOK : CBN_SELENDCANCEL);
  if (!accept) SetSelection(list, static_cast<WPARAM>(list.openedWith));
  NotifyCommand(*window, CBN_CLOSEUP);
}

}  // namespace

std::u16string SelectedText(const ListData& list) {
  return list.selected < 0 ? std::u16string() : list.texts[static_cast<size_t>(list.selected)];
}

bool DropList(HWND handle) {
  const WindowPtr window = FindWindowOf(handle);
  if (!window || !IsCombo(*window) || !IsShown(handle) || !IsReachable(handle)) return false;
  if (window->list.open)
    Close(window, true);
  else
    Open(window);
  return true;
}

bool CloseFocusedList(bool accept) {
  const WindowPtr window = FindWindowOf(GetFocus());
  if (!window || !window->list.open) return false;
  Close(window, accept);
  return true;
}

// A selection by mouse opens the list of a combo box before and closes it after; a selection beyond
// the last entry cancels. A selection by key changes an open or a closed list without opening or
// closing it.
bool PickItem(HWND handle, int index, bool byKey) {
  const WindowPtr window = FindWindowOf(handle);
  if (!window || !IsList(*window) || index < 0 || !IsShown(handle) || !IsReachable(handle))
    return false;
  ListData& list = window->list;
  SetFocus(handle);
  if (!IsReachable(handle)) return false;
  const bool combo = IsCombo(*window);
  if (combo && !byKey && !list.open) Open(window);
  const bool exists = index < Count(list);
  const bool changes = list.selected != index;
  if (exists) SetSelection(list, static_cast<WPARAM>(index));
  if (combo && !byKey) Close(window, exists);
  if (combo && byKey && !list.open && exists && changes) NotifyCommand(*window, CBN_SELENDOK);
  if (!exists) return false;
  if (combo ? changes : (window->style & LBS_NOTIFY) != 0)
    NotifyCommand(*window, combo ? CBN_SELCHANGE : LBN_SELCHANGE);
  return true;
}

LRESULT ComboBoxProc(const WindowPtr& window, UINT message, WPARAM wParam, LPARAM lParam) {
  ListData& list = window->list;
  switch (message) {
    case CB_ADDSTRING:
      return Insert(list, -1, lParam);
    case CB_INSERTSTRING:
      return Insert(list, static_cast<INT>(wParam), lParam);
    case CB_RESETCONTENT:
      return Clear(list);
    case CB_GETCURSEL:
      return list.selected;
    case CB_SETCURSEL:
      return SetSelection(list, wParam);
    case WM_SETFOCUS:
      NotifyCommand(*window, CBN_SETFOCUS);
      return 0;
    case WM_KILLFOCUS:
      Close(window, false);
      NotifyCommand(*window, CBN_KILLFOCUS);
      return 0;
    default:
      return 0;
  }
}

LRESULT ListBoxProc(const WindowPtr& window, UINT message, WPARAM wParam, LPARAM lParam) {
  ListData& list = window->list;
  switch (message) {
    case LB_INSERTSTRING:
      return Insert(list, static_cast<INT>(wParam), lParam);
    case LB_RESETCONTENT:
      return Clear(list);
    case LB_GETCURSEL:
      return list.selected;
    case LB_SETCURSEL:
      return SetSelection(list, wParam);
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
      if ((window->style & LBS_NOTIFY) != 0)
        NotifyCommand(*window, message == WM_SETFOCUS ? LBN_SETFOCUS : LBN_KILLFOCUS);
      return 0;
    default:
      return DefaultProc(window, message, wParam, lParam);
  }
}

}  // namespace platform
