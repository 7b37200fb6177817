// List boxes and combo boxes. Messages choose without notifying anybody; a person's choice
// notifies.
#include "platform/desktop/controls/item_list.h"

#include <algorithm>

#include "platform/desktop/windows/desktop.h"

namespace platform {

int ItemList::Insert(INT_PTR index, LPCWSTR text) {
  const std::u16string entry = text != nullptr ? text : u"";
  auto at = static_cast<size_t>(count());
  if (index >= 0 && index <= count()) at = static_cast<size_t>(index);
  texts.insert(texts.begin() + static_cast<std::ptrdiff_t>(at), entry);
  data.insert(data.begin() + static_cast<std::ptrdiff_t>(at), 0);
  if (selected >= static_cast<int>(at)) ++selected;
  return static_cast<int>(at);
}

void ItemList::Remove(size_t index) {
  texts.erase(texts.begin() + static_cast<std::ptrdiff_t>(index));
  data.erase(data.begin() + static_cast<std::ptrdiff_t>(index));
  if (selected == static_cast<int>(index)) {
    selected = -1;
  } else if (selected > static_cast<int>(index)) {
    --selected;
  }
}

void ItemList::Clear() {
  texts.clear();
  data.clear();
  selected = -1;
}

int ItemList::Find(INT_PTR after, LPCWSTR text, bool whole) const {
  if (text == nullptr || texts.empty()) return -1;
  const std::u16string wanted = text;
  const auto same = [](char16_t a, char16_t b) {
    const auto lower = [](char16_t c) {
      return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c;
    };
    return lower(a) == lower(b);
  };
  for (int i = 0; i < count(); ++i) {
    const auto start = static_cast<int>(after >= 0 && after < count() ? after + 1 : 0);
    const int index = (start + i) % count();
    const std::u16string& entry = texts[static_cast<size_t>(index)];
    if (entry.size() < wanted.size() || (whole && entry.size() != wanted.size())) continue;
    if (std::equal(wanted.begin(), wanted.end(), entry.begin(), same)) return index;
  }
  return -1;
}

namespace {

bool IsCombo(const Window& window) { return window.windowClass == WindowClass::kComboBox; }

LRESULT CopyItem(const ItemList& list, WPARAM index, LPARAM out) {
  if (!list.Holds(index) || out == 0) return CB_ERR;
  const std::u16string& text = list.texts[index];
  auto* units = reinterpret_cast<LPWSTR>(out);
  std::copy(text.begin(), text.end(), units);
  units[text.size()] = 0;
  return static_cast<LRESULT>(text.size());
}

int SortedPlace(const ItemList& list, LPCWSTR text) {
  const std::u16string entry = text != nullptr ? text : u"";
  return static_cast<int>(std::upper_bound(list.texts.begin(), list.texts.end(), entry) -
                          list.texts.begin());
}

LRESULT AddItem(Window& window, ItemList& list, INT_PTR index, LPARAM text) {
  InvalidateWindow(window, false);
  return list.Insert(index, reinterpret_cast<LPCWSTR>(text));
}

LRESULT ChooseItem(Window& window, ItemList& list, WPARAM wParam) {
  const bool holds = list.Holds(wParam);
  list.selected = holds ? static_cast<int>(wParam) : -1;
  InvalidateWindow(window, false);
  return holds ? list.selected : -1;
}

// The messages that a combo box and a list box share in meaning, each under its own number.
enum class Ask {
  kNone,
  kAdd,
  kInsert,
  kDelete,
  kReset,
  kCount,
  kGetSelection,
  kSetSelection,
  kText,
  kTextLength,
  kGetData,
  kSetData,
  kFind,
  kFindExact,
  kSelectText,
  kReserve
};

struct AskEntry {
  Ask ask;
  UINT combo;
  UINT listBox;
};

constexpr AskEntry kAsks[] = {
    {Ask::kAdd, CB_ADDSTRING, LB_ADDSTRING},
    {Ask::kInsert, CB_INSERTSTRING, LB_INSERTSTRING},
    {Ask::kDelete, CB_DELETESTRING, LB_DELETESTRING},
    {Ask::kReset, CB_RESETCONTENT, LB_RESETCONTENT},
    {Ask::kCount, CB_GETCOUNT, LB_GETCOUNT},
    {Ask::kGetSelection, CB_GETCURSEL, LB_GETCURSEL},
    {Ask::kSetSelection, CB_SETCURSEL, LB_SETCURSEL},
    {Ask::kText, CB_GETLBTEXT, LB_GETTEXT},
    {Ask::kTextLength, CB_GETLBTEXTLEN, LB_GETTEXTLEN},
    {Ask::kGetData, CB_GETITEMDATA, LB_GETITEMDATA},
    {Ask::kSetData, CB_SETITEMDATA, LB_SETITEMDATA},
    {Ask::kFind, CB_FINDSTRING, LB_FINDSTRING},
    {Ask::kFindExact, CB_FINDSTRINGEXACT, LB_FINDSTRINGEXACT},
    {Ask::kSelectText, CB_SELECTSTRING, LB_SELECTSTRING},
    {Ask::kReserve, CB_INITSTORAGE, LB_INITSTORAGE},
};

Ask Meaning(const Window& window, UINT message) {
  for (const AskEntry& entry : kAsks) {
    if (message == (IsCombo(window) ? entry.combo : entry.listBox)) return entry.ask;
  }
  return Ask::kNone;
}

LRESULT ChangeItems(Window& window, ItemList& list, Ask ask, WPARAM wParam, LPARAM lParam) {
  const auto* text = reinterpret_cast<LPCWSTR>(lParam);
  switch (ask) {
    case Ask::kAdd:
      return AddItem(window, list, list.sorted ? SortedPlace(list, text) : -1, lParam);
    case Ask::kInsert: {
      const auto index = static_cast<INT>(wParam);
      if (index > list.count()) return CB_ERR;
      return AddItem(window, list, index, lParam);
    }
    case Ask::kDelete:
      if (!list.Holds(wParam)) return CB_ERR;
      list.Remove(wParam);
      InvalidateWindow(window, false);
      return list.count();
    case Ask::kReset:
      list.Clear();
      InvalidateWindow(window, true);
      return 0;
    case Ask::kSetSelection:
      return ChooseItem(window, list, wParam);
    case Ask::kSetData:
      if (!list.Holds(wParam)) return CB_ERR;
      list.data[wParam] = static_cast<ULONG_PTR>(lParam);
      return 0;
    case Ask::kSelectText: {
      const int found = list.Find(static_cast<INT>(wParam), text, false);
      return found < 0 ? CB_ERR : ChooseItem(window, list, static_cast<WPARAM>(found));
    }
    case Ask::kReserve:
      return static_cast<LRESULT>(wParam);
    default:
      return 0;
  }
}

LRESULT AskItems(const ItemList& list, Ask ask, WPARAM wParam, LPARAM lParam) {
  const auto* text = reinterpret_cast<LPCWSTR>(lParam);
  switch (ask) {
    case Ask::kCount:
      return list.count();
    case Ask::kGetSelection:
      return list.selected;
    case Ask::kText:
      return CopyItem(list, wParam, lParam);
    case Ask::kTextLength:
      return list.Holds(wParam) ? static_cast<LRESULT>(list.texts[wParam].size()) : CB_ERR;
    case Ask::kGetData:
      return list.Holds(wParam) ? static_cast<LRESULT>(list.data[wParam]) : CB_ERR;
    case Ask::kFind:
      return list.Find(static_cast<INT>(wParam), text, false);
    case Ask::kFindExact:
      return list.Find(static_cast<INT>(wParam), text, true);
    default:
      return 0;
  }
}

bool Changes(Ask ask) {
  switch (ask) {
    case Ask::kAdd:
    case Ask::kInsert:
    case Ask::kDelete:
    case Ask::kReset:
    case Ask::kSetSelection:
    case Ask::kSetData:
    case Ask::kSelectText:
    case Ask::kReserve:
      return true;
    default:
      return false;
  }
}

LRESULT ItemProc(const WindowPtr& window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_CREATE) {
    auto list = std::make_unique<ItemList>();
    list->sorted = (window->style & (IsCombo(*window) ? CBS_SORT : LBS_SORT)) != 0;
    window->state = std::move(list);
    if (IsCombo(*window)) {
      window->rect.bottom = std::min(window->rect.bottom, window->rect.top + kClosedComboHeight);
    }
    return 0;
  }
  auto* list = StateOf<ItemList>(*window);
  const Ask ask = list != nullptr ? Meaning(*window, message) : Ask::kNone;
  if (ask == Ask::kNone) return DefWindowProcW(window->handle, message, wParam, lParam);
  return Changes(ask) ? ChangeItems(*window, *list, ask, wParam, lParam)
                      : AskItems(*list, ask, wParam, lParam);
}

// Closes an open list: the choice stands, or the selection goes back to what it was.
void CloseUp(const WindowPtr& window, ItemList& list, bool chosen) {
  if (!list.dropped) return;
  if (!chosen) list.selected = list.chosenBefore;
  NotifyCommand(*window, chosen ? CBN_SELENDOK : CBN_SELENDCANCEL);
  list.dropped = false;
  if (!window->destroying) NotifyCommand(*window, CBN_CLOSEUP);
}

void DropDown(const WindowPtr& window, ItemList& list) {
  if (list.dropped) return;
  list.chosenBefore = list.selected;
  NotifyCommand(*window, CBN_DROPDOWN);
  list.dropped = !window->destroying;
}

// The current selection's text is the text of a combo box.
LRESULT ComboText(const ItemList& list, UINT message, WPARAM wParam, LPARAM lParam) {
  const std::u16string text =
      list.selected >= 0 ? list.texts[static_cast<size_t>(list.selected)] : std::u16string();
  if (message == WM_GETTEXTLENGTH) return static_cast<LRESULT>(text.size());
  return CopyOut(text, wParam, lParam);
}

}  // namespace

bool PickItem(HWND handle, int index) {
  const WindowPtr window = FindWindowOf(handle);
  if (!window || !IsShown(handle) || !IsReachable(handle)) return false;
  auto* list = StateOf<ItemList>(*window);
  if (list == nullptr || index < 0) return false;
  SetFocus(handle);
  if (window->destroying || !IsReachable(handle)) return false;
  if (IsCombo(*window)) DropDown(window, *list);
  // The dialog may have filled the list only now.
  if (index >= list->count() || window->destroying) {
    CloseUp(window, *list, false);
    return false;
  }
  const bool other = list->selected != index;
  list->selected = index;
  InvalidateWindow(*window, false);
  if (IsCombo(*window)) {
    CloseUp(window, *list, true);
    if (other && !window->destroying) NotifyCommand(*window, CBN_SELCHANGE);
  } else if ((window->style & LBS_NOTIFY) != 0) {
    NotifyCommand(*window, LBN_SELCHANGE);
  }
  return true;
}

void DescribeList(const Window& window, ControlView& view) {
  const auto* list = StateOf<ItemList>(window);
  if (list == nullptr) return;
  view.items = list->texts;
  view.selection = list->selected;
  view.dropped = list->dropped;
  if (IsCombo(window)) {
    view.text =
        list->selected >= 0 ? list->texts[static_cast<size_t>(list->selected)] : std::u16string();
  }
}

LRESULT CALLBACK ComboBoxProc(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
  const WindowPtr window = FindWindowOf(handle);
  if (!window) return 0;
  auto* list = StateOf<ItemList>(*window);
  switch (message) {
    case WM_GETTEXT:
    case WM_GETTEXTLENGTH:
      return ComboText(*list, message, wParam, lParam);
    case WM_SETTEXT:
      return CB_ERR;  // a list alone takes no text
    case CB_SHOWDROPDOWN:
      if (wParam != 0) {
        DropDown(window, *list);
      } else {
        CloseUp(window, *list, true);
      }
      return TRUE;
    case CB_GETDROPPEDSTATE:
      return list->dropped;
    case WM_SETFOCUS:
      NotifyCommand(*window, CBN_SETFOCUS);
      return 0;
    case WM_KILLFOCUS:
      CloseUp(window, *list, false);
      NotifyCommand(*window, CBN_KILLFOCUS);
      return 0;
    default:
      return ItemProc(window, message, wParam, lParam);
  }
}

LRESULT CALLBACK ListBoxProc(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
  const WindowPtr window = FindWindowOf(handle);
  if (!window) return 0;
  const bool notifies = (window->style & LBS_NOTIFY) != 0;
  if (message == WM_SETFOCUS || message == WM_KILLFOCUS) {
    if (notifies) NotifyCommand(*window, message == WM_SETFOCUS ? LBN_SETFOCUS : LBN_KILLFOCUS);
    return 0;
  }
  return ItemProc(window, message, wParam, lParam);
}

}  // namespace platform
