// The controls of a dialog by id: texts, numbers, checks, and the order of the Tab key.
#include <algorithm>
#include <string>
#include <vector>

#include "platform/desktop/windows/desktop.h"

namespace platform {

namespace {

// A nested dialog whose controls belong to the outer one's tab order.
bool HoldsControls(const Window& window) {
  return window.windowClass == WindowClass::kDialog &&
         ((window.style & DS_CONTROL) != 0 || (window.exStyle & WS_EX_CONTROLPARENT) != 0 ||
          window.parent != nullptr);
}

void Collect(const Window& parent, std::vector<HWND>& out) {
  for (HWND child : parent.children) {
    const WindowPtr window = FindWindowOf(child);
    if (!window) continue;
    if (!HoldsControls(*window)) {
      out.push_back(child);
    } else if (window->visible() && window->enabled()) {
      Collect(*window, out);
    }
  }
}

// The next element behind (before) a control for which a test holds, around the end.
template <typename Test>
HWND NextOf(const std::vector<HWND>& order, HWND control, bool previous, Test test) {
  const size_t count = order.size();
  const auto found = std::find(order.begin(), order.end(), control);
  size_t at = found != order.end() ? static_cast<size_t>(found - order.begin())
                                   : (previous ? 0 : count - 1);
  for (size_t i = 0; i < count; ++i) {
    at = previous ? (at + count - 1) % count : (at + 1) % count;
    if (test(order[at])) return order[at];
  }
  return nullptr;
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
    InvalidateWindow(*button, false);
  }
}

void FocusInDialog(HWND control) {
  const WindowPtr window = FindWindowOf(control);
  if (!window) return;
  if (window->windowClass == WindowClass::kEdit) SendMessageW(control, EM_SETSEL, 0, -1);
  SetFocus(control);
  if (TheDesktop().focus == control) MoveDefault(control);
}

void FocusFirst(HWND dialog) {
  const HWND first = GetNextDlgTabItem(dialog, nullptr, FALSE);
  if (first != nullptr) FocusInDialog(first);
}

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

BOOL WINAPI SetDlgItemInt(HWND dialog, int id, UINT value, BOOL isSigned) {
  const int64_t number = isSigned ? static_cast<INT>(value) : static_cast<int64_t>(value);
  std::u16string text;
  for (char digit : std::to_string(number)) text.push_back(static_cast<char16_t>(digit));
  return SetDlgItemTextW(dialog, id, text.c_str());
}

UINT WINAPI GetDlgItemInt(HWND dialog, int id, BOOL* translated, BOOL isSigned) {
  WCHAR text[32] = {};
  GetDlgItemTextW(dialog, id, text, 32);
  const WCHAR* at = text;
  while (*at == u' ') ++at;
  const bool negative = isSigned && *at == u'-';
  if (negative) ++at;
  int64_t number = 0;
  bool good = *at != 0;
  for (; *at != 0; ++at) {
    good = good && *at >= u'0' && *at <= u'9' && number <= 0xFFFFFFFF;
    if (good) number = number * 10 + (*at - u'0');
  }
  if (negative) number = -number;
  good = good && (isSigned ? number == static_cast<INT>(number) : number <= 0xFFFFFFFF);
  if (translated != nullptr) *translated = good;
  return good ? static_cast<UINT>(number) : 0;
}

BOOL WINAPI CheckDlgButton(HWND dialog, int id, UINT check) {
  const HWND item = GetDlgItem(dialog, id);
  if (item == nullptr) return FALSE;
  SendMessageW(item, BM_SETCHECK, check, 0);
  return TRUE;
}

BOOL WINAPI CheckRadioButton(HWND dialog, int first, int last, int check) {
  const auto window = FindWindowOf(dialog);
  if (!window) return FALSE;
  const std::vector<HWND> children = window->children;
  for (HWND child : children) {
    const int id = GetDlgCtrlID(child);
    if (id >= std::min(first, last) && id <= std::max(first, last)) {
      SendMessageW(child, BM_SETCHECK, id == check ? BST_CHECKED : BST_UNCHECKED, 0);
    }
  }
  return TRUE;
}

UINT WINAPI IsDlgButtonChecked(HWND dialog, int id) {
  return static_cast<UINT>(SendDlgItemMessageW(dialog, id, BM_GETCHECK, 0, 0));
}

HWND WINAPI GetNextDlgTabItem(HWND dialog, HWND control, BOOL previous) {
  const std::vector<HWND> order = platform::ControlsInOrder(dialog);
  if (order.empty()) return nullptr;
  return platform::NextOf(order, control, previous != FALSE, [](HWND one) {
    const auto window = FindWindowOf(one);
    return window && platform::IsTabStop(*window);
  });
}

HWND WINAPI GetNextDlgGroupItem(HWND, HWND control, BOOL previous) {
  const auto window = FindWindowOf(control);
  if (!window) return nullptr;
  return platform::NextOf(platform::GroupOf(*window), control, previous != FALSE, [](HWND one) {
    const auto item = FindWindowOf(one);
    return item && item->visible() && item->enabled();
  });
}

BOOL WINAPI MapDialogRect(HWND dialog, LPRECT rect) {
  if (!FindWindowOf(dialog) || rect == nullptr) return FALSE;
  *rect = {platform::PixelsAcross(rect->left), platform::PixelsDown(rect->top),
           platform::PixelsAcross(rect->right), platform::PixelsDown(rect->bottom)};
  return TRUE;
}

}  // extern "C"
