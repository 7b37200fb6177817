// Buttons: push buttons, check boxes, radio buttons, group boxes and owner-drawn buttons.
#include <algorithm>

#include "platform/desktop/windows/desktop.h"

namespace platform {

namespace {

struct ButtonState : WindowState {
  UINT check = BST_UNCHECKED;
  LPARAM image = 0;
};

DWORD TypeOf(const Window& window) { return window.style & BS_TYPEMASK; }

bool HasCheck(const Window& window) {
  switch (TypeOf(window)) {
    case BS_CHECKBOX:
    case BS_AUTOCHECKBOX:
    case BS_3STATE:
    case BS_AUTO3STATE:
    case BS_RADIOBUTTON:
    case BS_AUTORADIOBUTTON:
      return true;
    default:
      return false;
  }
}

// A radio button that is checked is the stop of the Tab key in its group.
void SetCheck(Window& window, UINT check) {
  auto* state = StateOf<ButtonState>(window);
  if (state == nullptr || !HasCheck(window)) return;
  const bool threeStates = TypeOf(window) == BS_3STATE || TypeOf(window) == BS_AUTO3STATE;
  const UINT value = std::min(check, threeStates ? BST_INDETERMINATE : BST_CHECKED);
  if (IsRadio(window)) {
    window.style = value != 0 ? window.style | WS_TABSTOP : window.style & ~WS_TABSTOP;
  }
  if (state->check == value) return;
  state->check = value;
  InvalidateWindow(window, false);
}

void Toggle(Window& window) {
  auto* state = StateOf<ButtonState>(window);
  switch (TypeOf(window)) {
    case BS_AUTOCHECKBOX:
      SetCheck(window, state->check == BST_UNCHECKED ? BST_CHECKED : BST_UNCHECKED);
      break;
    case BS_AUTO3STATE:
      SetCheck(window, (state->check + 1) % 3);
      break;
    case BS_AUTORADIOBUTTON:
      for (HWND other : GroupOf(window)) {
        const WindowPtr one = FindWindowOf(other);
        if (one && other != window.handle && TypeOf(*one) == BS_AUTORADIOBUTTON) SetCheck(*one, 0);
      }
      SetCheck(window, BST_CHECKED);
      break;
    default:
      break;
  }
}

}  // namespace

bool IsPushButton(const Window& window) {
  return window.windowClass == WindowClass::kButton &&
         (TypeOf(window) == BS_PUSHBUTTON || TypeOf(window) == BS_DEFPUSHBUTTON);
}

bool IsDefaultButton(const Window& window) {
  return window.windowClass == WindowClass::kButton && TypeOf(window) == BS_DEFPUSHBUTTON;
}

bool IsRadio(const Window& window) {
  return window.windowClass == WindowClass::kButton &&
         (TypeOf(window) == BS_RADIOBUTTON || TypeOf(window) == BS_AUTORADIOBUTTON);
}

bool IsChecked(const Window& window) {
  const auto* state = StateOf<ButtonState>(window);
  return state != nullptr && state->check == BST_CHECKED;
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

bool ClickControl(HWND handle) {
  const WindowPtr window = FindWindowOf(handle);
  if (!window || !IsShown(handle) || !IsReachable(handle)) return false;
  if (window->windowClass == WindowClass::kStatic) {
    if ((window->style & SS_NOTIFY) == 0) return false;
    NotifyCommand(*window, STN_CLICKED);
    return true;
  }
  if (window->windowClass != WindowClass::kButton || TypeOf(*window) == BS_GROUPBOX) return false;
  SetFocus(handle);
  MoveDefault(handle);
  // Whoever lost the focus may have disabled or closed what was about to be pressed.
  if (window->destroying || !IsReachable(handle)) return true;
  Toggle(*window);
  NotifyCommand(*window, BN_CLICKED);
  return true;
}

LRESULT CALLBACK ButtonProc(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
  const WindowPtr window = FindWindowOf(handle);
  if (!window) return 0;
  auto* state = StateOf<ButtonState>(*window);
  const bool notifies = (window->style & BS_NOTIFY) != 0;
  switch (message) {
    case WM_CREATE:
      window->state = std::make_unique<ButtonState>();
      return 0;
    case BM_GETCHECK:
      return state->check;
    case BM_SETCHECK:
      SetCheck(*window, static_cast<UINT>(wParam));
      return 0;
    case BM_SETSTYLE:
      window->style = (window->style & 0xFFFF0000) | LOWORD(wParam);
      InvalidateWindow(*window, false);
      return 0;
    case BM_CLICK:
      ClickControl(handle);
      return 0;
    case BM_SETIMAGE: {
      const LPARAM before = state->image;
      state->image = lParam;
      return before;
    }
    case BM_GETIMAGE:
      return state->image;
    case WM_SETFOCUS:
      if (notifies) NotifyCommand(*window, BN_SETFOCUS);
      return 0;
    case WM_KILLFOCUS:
      if (notifies) NotifyCommand(*window, BN_KILLFOCUS);
      return 0;
    default:
      return DefWindowProcW(handle, message, wParam, lParam);
  }
}

LRESULT CALLBACK StaticProc(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
  struct StaticState : WindowState {
    LPARAM image = 0;
  };
  const WindowPtr window = FindWindowOf(handle);
  if (!window) return 0;
  if (message == WM_CREATE) {
    window->state = std::make_unique<StaticState>();
    return 0;
  }
  auto* state = StateOf<StaticState>(*window);
  if (message == STM_GETIMAGE) return state->image;
  if (message == STM_SETIMAGE) {
    const LPARAM before = state->image;
    state->image = lParam;
    InvalidateWindow(*window, true);
    return before;
  }
  return DefWindowProcW(handle, message, wParam, lParam);
}

}  // namespace platform
