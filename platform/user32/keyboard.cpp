// Keys that a dialog handles itself: Tab, Enter, Esc, access keys and arrows.
#include <algorithm>

#include "platform/user32/manager.h"

namespace platform {

namespace {

// Returns true when keys have an effect: they go to the focused window, and have none while it is
// disabled.
bool AcceptsKeys(HWND top) {
  const HWND focus = GetFocus();
  return FindWindowOf(top) && IsReachable(top) && IsShown(top) &&
         (!IsDescendant(top, focus) || IsReachable(focus));
}

// Presses a button by id without moving the focus. Without such a button, the dialog gets the
// command.
bool PressButton(HWND dialog, int id) {
  const HWND button = GetDlgItem(dialog, id);
  if (button != nullptr && !IsReachable(button)) return false;
  SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), reinterpret_cast<LPARAM>(button));
  return true;
}

char16_t Upper(char16_t c) { return c >= u'a' && c <= u'z' ? static_cast<char16_t>(c - 32) : c; }

// Returns the letter after a single "&"; 0 when there is none. "&&" displays an ampersand.
char16_t AccessLetter(const Window& window) {
  if (window.windowClass != WindowClass::kButton && window.windowClass != WindowClass::kStatic) {
    return 0;
  }
  if (window.windowClass == WindowClass::kStatic && (window.style & SS_NOPREFIX) != 0) return 0;
  const std::u16string& text = window.text;
  for (size_t i = 0; i + 1 < text.size(); ++i) {
    if (text[i] != u'&') continue;
    if (text[i + 1] != u'&') return Upper(text[i + 1]);
    ++i;
  }
  return 0;
}

// The access key of a label focuses the next control in tab order.
bool FocusAfterLabel(HWND top, HWND label) {
  const HWND next = NextStop(top, label, false);
  FocusInDialog(next);
  return next != nullptr;
}

// Selects the next usable radio button of a group, wrapping around.
bool MoveInGroup(const Window& radio, bool back) {
  std::vector<HWND> group = GroupOf(radio);
  if (back) std::reverse(group.begin(), group.end());
  std::rotate(group.begin(), std::find(group.begin(), group.end(), radio.handle), group.end());
  for (size_t i = 1; i < group.size(); ++i) {
    const WindowPtr next = FindWindowOf(group[i]);
    if (next && IsRadio(*next) && next->visible() && next->enabled()) return ClickControl(group[i]);
  }
  return false;
}

}  // namespace

bool PressTab(HWND top, bool back) {
  if (!AcceptsKeys(top)) return false;
  const HWND next = NextStop(top, GetFocus(), back);
  if (next == nullptr) return false;
  FocusInDialog(next);
  return true;
}

bool PressEnter(HWND top) {
  if (!AcceptsKeys(top)) return false;
  if (CloseFocusedList(true)) return true;
  const HWND focus = GetFocus();
  const WindowPtr window = FindWindowOf(focus);
  if (window && IsDescendant(top, focus) && IsDefaultButton(*window)) return ClickControl(focus);
  if (auto* sheet = StateOf<SheetState>(*FindWindowOf(top))) return sheet->Press(SheetButton::kOk);
  const int own = FindWindowOf(top)->dialog->defaultId;
  return PressButton(top, own != 0 ? own : IDOK);
}

bool PressEscape(HWND top) {
  if (!AcceptsKeys(top)) return false;
  if (CloseFocusedList(false)) return true;
  if (auto* sheet = StateOf<SheetState>(*FindWindowOf(top))) {
    return sheet->Press(SheetButton::kCancel);
  }
  return PressButton(top, IDCANCEL);
}

bool PressAccessKey(HWND top, char16_t letter) {
  if (!AcceptsKeys(top)) return false;
  const std::vector<HWND> order = ControlsInOrder(top);
  const auto focus = std::find(order.begin(), order.end(), GetFocus());
  const size_t start = focus == order.end() ? 0 : static_cast<size_t>(focus - order.begin()) + 1;
  for (size_t i = 0; i < order.size(); ++i) {
    const HWND control = order[(start + i) % order.size()];
    const WindowPtr window = FindWindowOf(control);
    if (!window || AccessLetter(*window) != Upper(letter) || !IsShown(control)) continue;
    const bool label =
        window->windowClass == WindowClass::kStatic || (window->style & BS_TYPEMASK) == BS_GROUPBOX;
    if (label) return FocusAfterLabel(top, control);
    if (IsReachable(control)) return ClickControl(control);
  }
  return false;
}

bool PressKey(HWND top, int key) {
  const HWND focus = GetFocus();
  const WindowPtr window = FindWindowOf(focus);
  if (!AcceptsKeys(top) || !window || !IsDescendant(top, focus)) return false;
  if (key == VK_F4) return DropList(focus);
  const bool up = key == VK_UP;
  switch (window->windowClass) {
    case WindowClass::kEdit:
      if (key == VK_BACK) return TypeCharacter(focus, VK_BACK);
      if (key == VK_DELETE) return PressDelete(focus);
      return SpinBy(ArrowUpDownOf(focus), up);
    case WindowClass::kComboBox:
    case WindowClass::kListBox:
      return PickItem(focus, std::max(window->list.selected + (up ? -1 : 1), 0), true);
    default:
      return IsRadio(*window) && MoveInGroup(*window, up);
  }
}

}  // namespace platform
