// List boxes and combo boxes. Messages choose without notifying anybody; a person's choice
// notifies.
#include <algorithm>

#include "platform/desktop/windows/manager.h"

namespace platform {

namespace {

struct ItemList : WindowState {
  std::vector<std::u16string> texts;
  int selected = -1;

  int count() const { return static_cast<int>(texts.size()); }
  std::u16string Chosen() const {
    return selected < 0 ? std::u16string() : texts[static_cast<size_t>(selected)];
  }
};

bool IsCombo(const Window& window) { return window.windowClass == WindowClass::kComboBox; }

// Before an index, or at the end for -1 (nothing happens for one behind it); answers where.
LRESULT Insert(Window& window, ItemList& list, INT index, LPARAM text) {
  if (index > list.count()) return CB_ERR;
  if (index < 0) index = list.count();
  list.texts.insert(list.texts.begin() + index, reinterpret_cast<LPCWSTR>(text));
  if (list.selected >= index) ++list.selected;
  InvalidateWindow(window, false);
  return index;
}

LRESULT Choose(Window& window, ItemList& list, WPARAM index) {
  list.selected = index < list.texts.size() ? static_cast<int>(index) : -1;
  InvalidateWindow(window, false);
  return list.selected;
}

LRESULT Clear(Window& window, ItemList& list) {
  list.texts.clear();
  list.selected = -1;
  InvalidateWindow(window, true);
  return 0;
}

}  // namespace

// A combo box's list opens before a choice and closes behind it; one that falls through is none.
bool PickItem(HWND handle, int index) {
  const WindowPtr window = FindWindowOf(handle);
  auto* list = window ? StateOf<ItemList>(*window) : nullptr;
  if (list == nullptr || index < 0 || !IsShown(handle) || !IsReachable(handle)) return false;
  SetFocus(handle);
  if (window->destroying || !IsReachable(handle)) return false;
  const bool combo = IsCombo(*window);
  if (combo) NotifyCommand(*window, CBN_DROPDOWN);  // the dialog may fill the list only now
  if (window->destroying) return false;
  const bool good = index < list->count();
  const bool other = list->selected != index;
  if (good) Choose(*window, *list, static_cast<WPARAM>(index));
  if (combo) NotifyCommand(*window, good ? CBN_SELENDOK : CBN_SELENDCANCEL);
  if (combo && !window->destroying) NotifyCommand(*window, CBN_CLOSEUP);
  if (!good || window->destroying) return good;
  if (combo ? other : (window->style & LBS_NOTIFY) != 0)
    NotifyCommand(*window, combo ? CBN_SELCHANGE : LBN_SELCHANGE);
  return true;
}

void DescribeList(const Window& window, ControlView& view) {
  const auto* list = StateOf<ItemList>(window);
  if (list == nullptr) return;
  view.items = list->texts;
  view.selection = list->selected;
  if (IsCombo(window)) view.text = list->Chosen();
}

LRESULT CALLBACK ComboBoxProc(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
  const WindowPtr window = FindWindowOf(handle);
  if (!window) return 0;
  auto* list = StateOf<ItemList>(*window);
  switch (message) {
    case WM_CREATE:
      window->state = std::make_unique<ItemList>();
      window->rect.bottom = std::min(window->rect.bottom, window->rect.top + kClosedComboHeight);
      return 0;
    case CB_ADDSTRING:
      return Insert(*window, *list, -1, lParam);
    case CB_INSERTSTRING:
      return Insert(*window, *list, static_cast<INT>(wParam), lParam);
    case CB_RESETCONTENT:
      return Clear(*window, *list);
    case CB_GETCURSEL:
      return list->selected;
    case CB_SETCURSEL:
      return Choose(*window, *list, wParam);
    case WM_GETTEXT:  // the selection's
      return CopyOut(list->Chosen(), wParam, lParam);
    case WM_SETTEXT:
      return CB_ERR;  // a list alone takes no text
    case WM_SETFOCUS:
      NotifyCommand(*window, CBN_SETFOCUS);
      return 0;
    case WM_KILLFOCUS:
      NotifyCommand(*window, CBN_KILLFOCUS);
      return 0;
    default:
      return 0;
  }
}

LRESULT CALLBACK ListBoxProc(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
  const WindowPtr window = FindWindowOf(handle);
  if (!window) return 0;
  auto* list = StateOf<ItemList>(*window);
  switch (message) {
    case WM_CREATE:
      window->state = std::make_unique<ItemList>();
      return 0;
    case LB_INSERTSTRING:
      return Insert(*window, *list, static_cast<INT>(wParam), lParam);
    case LB_RESETCONTENT:
      return Clear(*window, *list);
    case LB_GETCURSEL:
      return list->selected;
    case LB_SETCURSEL:
      return Choose(*window, *list, wParam);
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
      if ((window->style & LBS_NOTIFY) != 0)
        NotifyCommand(*window, message == WM_SETFOCUS ? LBN_SETFOCUS : LBN_KILLFOCUS);
      return 0;
    default:
      return DefaultProc(handle, message, wParam, lParam);
  }
}

}  // namespace platform
