// The words of a window: procedure, styles, ids, data, and those of a dialog.
#include <algorithm>

#include "platform/desktop/windows/desktop.h"

namespace platform {

namespace {

// The long-sized slot of an index; null when the index has none of its own.
LONG_PTR* SlotOf(Window& window, int index) {
  if (index == GWLP_USERDATA) return &window.userData;
  if (!window.dialog) return nullptr;
  if (index == DWLP_MSGRESULT) return &window.dialog->messageResult;
  if (index == DWLP_USER) return &window.dialog->user;
  return nullptr;
}

LONG_PTR GetWord(Window& window, int index) {
  if (const LONG_PTR* slot = SlotOf(window, index)) return *slot;
  switch (index) {
    case GWL_STYLE:
      return static_cast<LONG_PTR>(window.style);
    case GWL_EXSTYLE:
      return static_cast<LONG_PTR>(window.exStyle);
    case GWLP_ID:
      return window.id;
    case GWLP_WNDPROC:
      return reinterpret_cast<LONG_PTR>(window.proc);
    case GWLP_HINSTANCE:
      return reinterpret_cast<LONG_PTR>(window.instance);
    case GWLP_HWNDPARENT:
      return reinterpret_cast<LONG_PTR>(window.parent != nullptr ? window.parent : window.owner);
    case DWLP_DLGPROC:
      if (window.dialog) return reinterpret_cast<LONG_PTR>(window.dialog->proc);
      break;
    default:
      break;
  }
  SetLastError(ERROR_INVALID_PARAMETER);
  return 0;
}

LONG_PTR SetWord(Window& window, int index, LONG_PTR value) {
  const LONG_PTR before = GetWord(window, index);
  if (LONG_PTR* slot = SlotOf(window, index)) {
    *slot = value;
    return before;
  }
  switch (index) {
    case GWL_STYLE:
      window.style = static_cast<DWORD>(value);
      break;
    case GWL_EXSTYLE:
      window.exStyle = static_cast<DWORD>(value);
      break;
    case GWLP_ID:
      window.id = static_cast<int>(value);
      break;
    case GWLP_WNDPROC:
      if (value != 0) window.proc = reinterpret_cast<WNDPROC>(value);
      break;
    case DWLP_DLGPROC:
      if (window.dialog) window.dialog->proc = reinterpret_cast<DLGPROC>(value);
      break;
    default:
      return 0;
  }
  return before;
}

std::u16string_view NameOf(WindowClass windowClass) {
  switch (windowClass) {
    case WindowClass::kButton:
      return u"Button";
    case WindowClass::kStatic:
      return u"Static";
    case WindowClass::kEdit:
      return u"Edit";
    case WindowClass::kComboBox:
      return u"ComboBox";
    case WindowClass::kListBox:
      return u"ListBox";
    case WindowClass::kUpDown:
      return u"msctls_updown32";
    case WindowClass::kTrackbar:
      return u"msctls_trackbar32";
    default:
      return u"#32770";
  }
}

}  // namespace

}  // namespace platform

extern "C" {

int WINAPI GetClassNameW(HWND handle, LPWSTR name, int size) {
  const auto window = platform::FindWindowOf(handle);
  if (!window || name == nullptr || size <= 0) return 0;
  const std::u16string_view full = platform::NameOf(window->windowClass);
  const size_t units = std::min(full.size(), static_cast<size_t>(size) - 1);
  std::copy_n(full.begin(), units, name);
  name[units] = 0;
  return static_cast<int>(units);
}

LONG_PTR WINAPI GetWindowLongPtrW(HWND handle, int index) {
  const auto window = platform::FindWindowOf(handle);
  if (!window) {
    SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return 0;
  }
  return platform::GetWord(*window, index);
}

LONG_PTR WINAPI SetWindowLongPtrW(HWND handle, int index, LONG_PTR value) {
  const auto window = platform::FindWindowOf(handle);
  if (!window) {
    SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return 0;
  }
  return platform::SetWord(*window, index, value);
}

}  // extern "C"
