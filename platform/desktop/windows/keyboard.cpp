#include "platform/desktop/windows/keyboard.h"

#include <algorithm>

#include "platform/desktop/windows/desktop.h"

namespace platform {

namespace {

// Keys go to the window in focus: while that one is disabled they reach nobody.
bool TakesKeys(HWND top) {
  const HWND focus = GetFocus();
  return FindWindowOf(top) && IsReachable(top) && IsShown(top) &&
         (!IsDescendant(top, focus) || IsReachable(focus));
}

// The dialog that holds a control: a page, or the window itself.
HWND DialogOf(HWND top, HWND control) {
  const WindowPtr window = FindWindowOf(control);
  return window && window->parent != nullptr ? window->parent : top;
}

void SendId(HWND dialog, int id) {
  const HWND button = GetDlgItem(dialog, id);
  SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), reinterpret_cast<LPARAM>(button));
}

// Presses a button by id where it stands; without such a button the dialog gets its command.
bool PressId(HWND dialog, int id) {
  const HWND button = GetDlgItem(dialog, id);
  if (button != nullptr && !IsReachable(button)) {
    MessageBeep(0);
    return false;
  }
  SendId(dialog, id);
  return true;
}

char16_t Upper(char16_t c) { return c >= u'a' && c <= u'z' ? static_cast<char16_t>(c - 32) : c; }

// The letter behind a single "&"; 0 when there is none. "&&" shows an ampersand.
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

// A label's letter leads to the next stop behind it.
bool FollowLabel(HWND top, HWND label) {
  const HWND next = GetNextDlgTabItem(top, label, FALSE);
  FocusInDialog(next);
  return next != nullptr;
}

bool MoveInGroup(HWND top, HWND radio, bool back) {
  const HWND next = GetNextDlgGroupItem(top, radio, back);
  const WindowPtr window = FindWindowOf(next);
  if (!window || next == radio || !IsRadio(*window)) return false;
  return ClickControl(next);
}

}  // namespace

bool PressTab(HWND top, bool back) {
  if (!TakesKeys(top)) return false;
  const HWND next = GetNextDlgTabItem(top, GetFocus(), back);
  if (next == nullptr) return false;
  FocusInDialog(next);
  return true;
}

bool PressEnter(HWND top) {
  if (!TakesKeys(top)) return false;
  const HWND focus = GetFocus();
  const WindowPtr window = FindWindowOf(focus);
  if (window && IsDescendant(top, focus) && IsDefaultButton(*window)) return ClickControl(focus);
  if (window && window->windowClass == WindowClass::kEdit && (window->style & ES_WANTRETURN) != 0) {
    return TypeCharacter(focus, u'\r');
  }
  if (auto* sheet = StateOf<SheetState>(*FindWindowOf(top))) return sheet->Press(SheetButton::kOk);
  const auto answer = static_cast<DWORD>(SendMessageW(top, DM_GETDEFID, 0, 0));
  return PressId(top, HIWORD(answer) == DC_HASDEFID ? LOWORD(answer) : IDOK);
}

bool PressEscape(HWND top) {
  if (!TakesKeys(top)) return false;
  if (auto* sheet = StateOf<SheetState>(*FindWindowOf(top))) {
    return sheet->Press(SheetButton::kCancel);
  }
  return PressId(top, IDCANCEL);
}

bool PressAccessKey(HWND top, char16_t letter) {
  if (!TakesKeys(top)) return false;
  const std::vector<HWND> order = ControlsInOrder(top);
  const auto focus = std::find(order.begin(), order.end(), GetFocus());
  const size_t start = focus == order.end() ? 0 : static_cast<size_t>(focus - order.begin()) + 1;
  for (size_t i = 0; i < order.size(); ++i) {
    const HWND control = order[(start + i) % order.size()];
    const WindowPtr window = FindWindowOf(control);
    if (!window || AccessLetter(*window) != Upper(letter) || !IsShown(control)) continue;
    const bool label =
        window->windowClass == WindowClass::kStatic || (window->style & BS_TYPEMASK) == BS_GROUPBOX;
    if (label) return FollowLabel(top, control);
    if (IsReachable(control)) return ClickControl(control);
  }
  MessageBeep(0);
  return false;
}

bool PressKey(HWND top, int key) {
  const HWND focus = GetFocus();
  const WindowPtr window = FindWindowOf(focus);
  if (!TakesKeys(top) || !window || !IsDescendant(top, focus)) return false;
  const bool back = key == VK_UP;
  if (key == VK_UP || key == VK_DOWN) {
    if (IsRadio(*window)) return MoveInGroup(DialogOf(top, focus), focus, back);
    if (window->windowClass == WindowClass::kComboBox ||
        window->windowClass == WindowClass::kListBox) {
      ControlView view;
      DescribeList(*window, view);
      return PickItem(focus, std::max(view.selection + (back ? -1 : 1), 0));
    }
  }
  if (window->windowClass != WindowClass::kEdit) return false;
  if (key == VK_BACK) return TypeCharacter(focus, VK_BACK);
  SendMessageW(focus, WM_KEYDOWN, static_cast<WPARAM>(key), 1);
  return true;
}

}  // namespace platform
