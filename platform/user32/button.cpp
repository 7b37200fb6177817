// Buttons: push buttons, check boxes, radio buttons, group boxes and owner-drawn buttons.
#include "platform/user32/manager.h"

namespace platform {

namespace {

bool IsButton(const Window& window, DWORD type) {
  return window.windowClass == WindowClass::kButton && (window.style & BS_TYPEMASK) == type;
}

void Toggle(Window& window) {
  if (IsRadio(window)) {
    for (HWND other : GroupOf(window)) {
      const WindowPtr one = FindWindowOf(other);
      if (one && other != window.handle && IsRadio(*one)) SetCheck(*one, false);
    }
  }
  SetCheck(window, IsRadio(window) || !window.checked);
}

}  // namespace

bool IsPushButton(const Window& window) {
  return IsButton(window, BS_PUSHBUTTON) || IsDefaultButton(window);
}
bool IsDefaultButton(const Window& window) { return IsButton(window, BS_DEFPUSHBUTTON); }
bool IsRadio(const Window& window) { return IsButton(window, BS_AUTORADIOBUTTON); }

bool IsOwnerDrawn(const Window& window) {
  return IsButton(window, BS_OWNERDRAW) || (window.windowClass == WindowClass::kStatic &&
                                            (window.style & SS_TYPEMASK) == SS_OWNERDRAW);
}

// The checked radio button of a group is its tab stop.
void SetCheck(Window& window, bool check) {
  if (!IsRadio(window) && !IsButton(window, BS_AUTOCHECKBOX)) return;
  if (IsRadio(window)) {
    window.style = check ? window.style | WS_TABSTOP : window.style & ~WS_TABSTOP;
  }
  window.checked = check;
}

std::vector<HWND> GroupOf(const Window& control) {
  const WindowPtr parent = FindWindowOf(control.parent);
  if (!parent) return {};
  std::vector<HWND> group;
  bool mine = false;
  for (HWND child : parent->children) {
    const WindowPtr one = FindWindowOf(child);
    if (!one) continue;
    if ((one->style & WS_GROUP) != 0) {
      if (mine) break;
      group.clear();
    }
    group.push_back(child);
    mine = mine || child == control.handle;
  }
  return group;
}

void CheckFocusedRadio(HWND handle) {
  const WindowPtr window = FindWindowOf(handle);
  if (!window || !IsRadio(*window) || window->checked || GetFocus() != handle) return;
  Toggle(*window);
  NotifyCommand(*window, BN_CLICKED);
}

bool ClickControl(HWND handle) {
  const WindowPtr window = FindWindowOf(handle);
  if (!window || window->windowClass != WindowClass::kButton || IsButton(*window, BS_GROUPBOX) ||
      !IsShown(handle) || !IsReachable(handle))
    return false;
  SetFocus(handle);
  MoveDefault(handle);
  // The handler of the lost focus may have disabled the button or closed its dialog.
  if (!IsReachable(handle)) return true;
  Toggle(*window);
  NotifyCommand(*window, BN_CLICKED);
  return true;
}

}  // namespace platform
