// Up-down controls: a position in a range, and the edit that shows it (the buddy).
#include <windows.h>
#include <commctrl.h>

#include <algorithm>

#include "platform/user32/manager.h"
#include "platform/user32/numbers.h"

namespace platform {

namespace {

constexpr int kArrowWidth = 16;

int Clamped(const UpDownData& of, int64_t value) {
  return static_cast<int>(
      std::clamp<int64_t>(value, std::min(of.lower, of.upper), std::max(of.lower, of.upper)));
}

bool WritesBuddy(const Window& window) { return (window.style & UDS_SETBUDDYINT) != 0; }

// Reads a number as the desk is configured; nullopt when the text is not a number.
std::optional<int64_t> ReadNumber(std::u16string_view text) {
  switch (Manager().buddyReading) {
    case BuddyReading::kDigitsAndMinus:
      if (text.starts_with(u' ') || text.starts_with(u'+')) return std::nullopt;
      break;
    case BuddyReading::kLeadingNumber: {
      const size_t digits = std::min(text.find_first_not_of(u" +-"), text.size());
      return ReadDecimal(text.substr(0, text.find_first_not_of(u"0123456789", digits))).value_or(0);
    }
    case BuddyReading::kWholeText:
      break;
  }
  return ReadDecimal(text);
}

// Sets the position to the number of the buddy. Returns false, and leaves the position, when there
// is no buddy or its text is not a number in the range.
bool ReadBuddy(Window& window) {
  UpDownData& state = window.upDown;
  const WindowPtr buddy = FindWindowOf(state.buddy);
  if (!buddy || !WritesBuddy(window)) return buddy != nullptr;
  const auto value = ReadNumber(buddy->text);
  if (!value || Clamped(state, *value) != *value) return false;
  state.position = static_cast<int>(*value);
  return true;
}

int SetPosition(Window& window, int64_t value) {
  UpDownData& state = window.upDown;
  const int before = state.position;
  state.position = Clamped(state, value);
  const WindowPtr buddy = FindWindowOf(state.buddy);
  if (!buddy || !WritesBuddy(window)) return before;
  const std::u16string text = DecimalText(state.position);
  if (text != buddy->text) SetWindowTextW(state.buddy, text.c_str());
  return before;
}

// An up-down that is aligned to the right edge of its buddy is placed inside it, and the buddy
// shrinks by that width.
HWND SetBuddy(Window& window, HWND handle) {
  UpDownData& state = window.upDown;
  const HWND before = state.buddy;
  const WindowPtr buddy = FindWindowOf(handle);
  state.buddy = buddy ? handle : nullptr;
  if (!buddy || before == handle || (window.style & UDS_ALIGNRIGHT) == 0) return before;
  RECT place = buddy->rect;
  const LONG edge = std::max(place.left, place.right - kArrowWidth);
  PlaceWindow(window, {edge, place.top, place.right, place.bottom});
  place.right = edge;
  PlaceWindow(*buddy, place);
  return before;
}

void Notify(const Window& window, int code, int position) {
  SendMessageW(window.parent, WM_VSCROLL,
               MAKEWPARAM(static_cast<WORD>(code), static_cast<WORD>(position)),
               reinterpret_cast<LPARAM>(window.handle));
}

// Handles one press of an arrow. The dialog may cancel it or change the step.
void Step(const WindowPtr& window, bool up) {
  const UpDownData& state = window->upDown;
  ReadBuddy(*window);
  NMUPDOWN notice = {};
  notice.hdr.hwndFrom = window->handle;
  notice.hdr.idFrom = static_cast<UINT_PTR>(window->id);
  notice.hdr.code = UDN_DELTAPOS;
  notice.iPos = state.position;
  notice.iDelta = (state.upper >= state.lower) == up ? 1 : -1;
  const LRESULT refused =
      SendMessageW(window->parent, WM_NOTIFY, notice.hdr.idFrom, reinterpret_cast<LPARAM>(&notice));
  if (refused != 0) return;
  SetPosition(*window, int64_t{state.position} + notice.iDelta);
  Notify(*window, SB_THUMBPOSITION, state.position);
}

}  // namespace

bool SpinBy(HWND handle, bool up) {
  const WindowPtr window = FindWindowOf(handle);
  if (!window || window->windowClass != WindowClass::kUpDown || !IsShown(handle) ||
      !IsReachable(handle))
    return false;
  const UpDownData& state = window->upDown;
  if (FindWindowOf(state.buddy)) {
    if (!IsReachable(state.buddy)) return false;
    SetFocus(state.buddy);
  }
  if (IsReachable(handle)) Step(window, up);
  Notify(*window, SB_ENDSCROLL, state.position);
  return true;
}

HWND ArrowUpDownOf(HWND edit) {
  const WindowPtr window = FindWindowOf(edit);
  const WindowPtr parent = window ? FindWindowOf(window->parent) : nullptr;
  if (!parent) return nullptr;
  for (HWND child : parent->children) {
    const WindowPtr one = FindWindowOf(child);
    if (one && one->upDown.buddy == edit && (one->style & UDS_ARROWKEYS) != 0) return child;
  }
  return nullptr;
}

LRESULT UpDownProc(const WindowPtr& window, UINT message, WPARAM wParam, LPARAM lParam) {
  UpDownData& state = window->upDown;
  switch (message) {
    case UDM_SETRANGE32:
      state.lower = static_cast<int>(wParam);
      state.upper = static_cast<int>(lParam);
      return 0;
    case UDM_GETRANGE32:
      if (wParam != 0) *reinterpret_cast<INT*>(wParam) = state.lower;
      if (lParam != 0) *reinterpret_cast<INT*>(lParam) = state.upper;
      return 0;
    case UDM_SETPOS32:
      return SetPosition(*window, static_cast<int>(lParam));
    case UDM_GETPOS32: {
      const bool good = ReadBuddy(*window);
      if (lParam != 0) *reinterpret_cast<BOOL*>(lParam) = good ? FALSE : TRUE;
      return state.position;
    }
    case UDM_SETBUDDY:
      return reinterpret_cast<LRESULT>(SetBuddy(*window, reinterpret_cast<HWND>(wParam)));
    case UDM_SETBASE:  // only decimal is supported; returns the previous base
      return wParam == 10 ? 10 : 0;
    default:
      return DefaultProc(window, message, wParam, lParam);
  }
}

}  // namespace platform

extern "C" {

// The classes are always registered.
void WINAPI InitCommonControls() {}

BOOL WINAPI InitCommonControlsEx(const INITCOMMONCONTROLSEX* request) {
  return request != nullptr && request->dwSize == sizeof *request ? TRUE : FALSE;
}

}  // extern "C"
