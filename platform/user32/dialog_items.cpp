// The controls of a dialog by id: texts, checks and the tab order.
#include <winbase.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/user32/manager.h"

namespace platform {

namespace {

void Collect(const Window& parent, std::vector<HWND>& out) {
  for (HWND child : parent.children) {
    const WindowPtr window = FindWindowOf(child);
    if (!window) continue;
    if (window->windowClass != WindowClass::kDialog) {
      out.push_back(child);
    } else if (window->visible() && window->enabled()) {
      Collect(*window, out);
    }
  }
}

}  // namespace

std::vector<HWND> ControlsInOrder(HWND dialog) {
  std::vector<HWND> order;
  if (const WindowPtr window = FindWindowOf(dialog)) Collect(*window, order);
  return order;
}

bool IsTabStop(const Window& window) {
  return (window.style & WS_TABSTOP) != 0 && window.visible() && window.enabled() &&
         window.windowClass != WindowClass::kStatic &&
         !(window.windowClass == WindowClass::kButton &&
           (window.style & BS_TYPEMASK) == BS_GROUPBOX);
}

void MoveDefault(HWND control) {
  const HWND top = TopLevelOf(control);
  const WindowPtr to = FindWindowOf(control);
  const WindowPtr dialog = FindWindowOf(top);
  if (!to || !dialog || !dialog->dialog) return;
  for (HWND child : ControlsInOrder(top)) {
    const WindowPtr button = FindWindowOf(child);
    if (!button || !IsPushButton(*button)) continue;
    const WindowPtr owner = FindWindowOf(button->parent);
    const bool own = owner && owner->dialog && owner->dialog->defaultId == button->id;
    const bool is = IsPushButton(*to) ? child == control : own && button->id != 0;
    const DWORD type = is ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON;
    if ((button->style & BS_TYPEMASK) == type) continue;
    button->style = (button->style & ~BS_TYPEMASK) | type;
  }
}

void FocusInDialog(HWND control) {
  const WindowPtr window = FindWindowOf(control);
  if (!window) return;
  if (window->windowClass == WindowClass::kEdit) SendMessageW(control, EM_SETSEL, 0, -1);
  SetFocus(control);
  if (Manager().focus == control) MoveDefault(control);
  CheckFocusedRadio(control);
}

HWND NextStop(HWND dialog, HWND control, bool back) {
  const std::vector<HWND> order = ControlsInOrder(dialog);
  const size_t count = order.size();
  const auto found = std::find(order.begin(), order.end(), control);
  size_t at =
      found != order.end() ? static_cast<size_t>(found - order.begin()) : (back ? 0 : count - 1);
  for (size_t i = 0; i < count; ++i) {
    at = back ? (at + count - 1) % count : (at + 1) % count;
    const WindowPtr window = FindWindowOf(order[at]);
    if (window && IsTabStop(*window)) return order[at];
  }
  return nullptr;
}

void FocusFirst(HWND dialog) { FocusInDialog(NextStop(dialog, nullptr, false)); }

}  // namespace platform

using platform::FindWindowOf;

extern "C" {

HWND WINAPI GetDlgItem(HWND dialog, int id) {
  const auto window = FindWindowOf(dialog);
  const HWND item = window ? platform::ChildWithId(*window, id) : nullptr;
  if (item == nullptr) SetLastError(ERROR_INVALID_WINDOW_HANDLE);
  return item;
}

int WINAPI GetDlgCtrlID(HWND handle) {
  const auto window = FindWindowOf(handle);
  return window ? window->id : 0;
}

LRESULT WINAPI SendDlgItemMessageW(HWND dialog, int id, UINT message, WPARAM wParam,
                                   LPARAM lParam) {
  const HWND item = GetDlgItem(dialog, id);
  return item != nullptr ? SendMessageW(item, message, wParam, lParam) : 0;
}

BOOL WINAPI SetDlgItemTextW(HWND dialog, int id, LPCWSTR text) {
  return SetWindowTextW(GetDlgItem(dialog, id), text);
}

UINT WINAPI GetDlgItemTextW(HWND dialog, int id, LPWSTR text, int size) {
  return static_cast<UINT>(GetWindowTextW(GetDlgItem(dialog, id), text, size));
}

BOOL WINAPI CheckDlgButton(HWND dialog, int id, UINT check) {
  const auto item = FindWindowOf(GetDlgItem(dialog, id));
  if (item) platform::SetCheck(*item, check != BST_UNCHECKED);
  return item != nullptr;
}

BOOL WINAPI CheckRadioButton(HWND dialog, int first, int last, int check) {
  const auto window = FindWindowOf(dialog);
  if (!window) return FALSE;
  for (HWND child : window->children) {
    const int id = GetDlgCtrlID(child);
    if (id >= std::min(first, last) && id <= std::max(first, last))
      platform::SetCheck(*FindWindowOf(child), id == check);
  }
  return TRUE;
}

UINT WINAPI IsDlgButtonChecked(HWND dialog, int id) {
  const auto item = FindWindowOf(GetDlgItem(dialog, id));
  return item && item->checked ? BST_CHECKED : BST_UNCHECKED;
}

}  // extern "C"
