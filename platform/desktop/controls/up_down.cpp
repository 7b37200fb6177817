// Up-downs: a position in a range, and the edit that shows it.
#include <windows.h>
#include <commctrl.h>

#include <algorithm>
#include <string>

#include "platform/desktop/windows/desktop.h"

namespace platform {

namespace {

constexpr int kArrowWidth = 16;

struct UpDownState : WindowState {
  int lower = 100;  // as created; upside down until a range is set
  int upper = 0;
  int position = 0;
  int base = 10;
  HWND buddy = nullptr;
  LONG taken = 0;  // pixels of the buddy's width that an aligned up-down stands on

  bool Inside(int64_t value) const {
    return value >= std::min(lower, upper) && value <= std::max(lower, upper);
  }
  int Clamped(int64_t value) const {
    return static_cast<int>(
        std::clamp<int64_t>(value, std::min(lower, upper), std::max(lower, upper)));
  }
};

bool WritesBuddy(const Window& window) { return (window.style & UDS_SETBUDDYINT) != 0; }

std::u16string NumberText(const Window& window, const UpDownState& state, int value) {
  constexpr char16_t kDigits[] = u"0123456789ABCDEF";
  if (state.base == 16) {
    std::u16string hex = u"0x0000";
    for (size_t i = 0; i < 4; ++i) hex[5 - i] = kDigits[(value >> (4 * i)) & 15];
    return hex;
  }
  std::u16string text;
  for (char c : std::to_string(value)) text.push_back(static_cast<char16_t>(c));
  if ((window.style & UDS_NOTHOUSANDS) == 0) {
    const size_t first = value < 0 ? 1 : 0;
    for (size_t at = text.size(); at > first + 3;) text.insert(at -= 3, u",");
  }
  return text;
}

// A whole number in a text: blanks before it, a sign, digits with separators between them.
bool ReadNumber(const UpDownState& state, std::u16string_view text, int64_t& value) {
  size_t at = 0;
  while (at < text.size() && text[at] == u' ') ++at;
  const bool negative = at < text.size() && text[at] == u'-';
  if (at < text.size() && (negative || text[at] == u'+')) ++at;
  if (state.base == 16 && text.substr(at, 2) == u"0x") at += 2;
  bool any = false;
  value = 0;
  for (; at < text.size(); ++at) {
    const char16_t c = text[at];
    if (c == u',' && state.base == 10) continue;
    int digit = c >= u'0' && c <= u'9' ? c - u'0' : 99;
    if (c >= u'A' && c <= u'F') digit = c - u'A' + 10;
    if (c >= u'a' && c <= u'f') digit = c - u'a' + 10;
    if (digit >= state.base || value > 0x7FFFFFFF) return false;
    value = value * state.base + digit;
    any = true;
  }
  if (negative) value = -value;
  return any;
}

// Takes the buddy's number as the position; false, and the position stays, when there is no buddy
// or it shows none that lies in the range.
bool ReadBuddy(const Window& window, UpDownState& state) {
  const WindowPtr buddy = FindWindowOf(state.buddy);
  if (!buddy || !WritesBuddy(window)) return buddy != nullptr;
  int64_t value = 0;
  if (!ReadNumber(state, buddy->text, value) || !state.Inside(value)) return false;
  state.position = static_cast<int>(value);
  return true;
}

void WriteBuddy(const Window& window, const UpDownState& state) {
  const WindowPtr buddy = FindWindowOf(state.buddy);
  if (!buddy || !WritesBuddy(window)) return;
  const std::u16string text = NumberText(window, state, state.position);
  if (text != buddy->text) SetWindowTextW(state.buddy, text.c_str());
}

int SetPosition(Window& window, UpDownState& state, int64_t value) {
  const int before = state.position;
  state.position = state.Clamped(value);
  WriteBuddy(window, state);
  return before;
}

// An aligned up-down stands inside the edge of its buddy, which gives up that width.
void Align(Window& window, UpDownState& state) {
  const WindowPtr buddy = FindWindowOf(state.buddy);
  const bool right = (window.style & UDS_ALIGNRIGHT) != 0;
  if (!buddy || (!right && (window.style & UDS_ALIGNLEFT) == 0)) return;
  const RECT place = buddy->rect;
  state.taken = std::min<LONG>(kArrowWidth, buddy->width());
  const LONG left = right ? place.right - state.taken : place.left;
  MoveWindow(state.buddy, right ? place.left : place.left + state.taken, place.top,
             buddy->width() - state.taken, buddy->height(), TRUE);
  MoveWindow(window.handle, left, place.top, state.taken, place.bottom - place.top, TRUE);
}

void GiveBackWidth(const Window& window, UpDownState& state) {
  const WindowPtr buddy = FindWindowOf(state.buddy);
  if (buddy && state.taken > 0) {
    const bool right = (window.style & UDS_ALIGNRIGHT) != 0;
    MoveWindow(state.buddy, right ? buddy->rect.left : buddy->rect.left - state.taken,
               buddy->rect.top, buddy->width() + state.taken, buddy->height(), TRUE);
  }
  state.taken = 0;
}

HWND SetBuddy(Window& window, UpDownState& state, HWND buddy) {
  const HWND before = state.buddy;
  GiveBackWidth(window, state);
  state.buddy = FindWindowOf(buddy) ? buddy : nullptr;
  Align(window, state);
  return before;
}

// The window made just before the up-down becomes its buddy.
HWND PreviousSibling(const Window& window) {
  const WindowPtr parent = FindWindowOf(window.parent);
  if (!parent) return nullptr;
  const auto here = std::find(parent->children.begin(), parent->children.end(), window.handle);
  return here == parent->children.begin() || here == parent->children.end() ? nullptr : *(here - 1);
}

LRESULT AnswerPosition16(const Window& window, UpDownState& state) {
  const bool good = ReadBuddy(window, state);
  return MAKELONG(static_cast<WORD>(state.position), good ? 0 : 1);
}

LRESULT AnswerPosition32(const Window& window, UpDownState& state, LPARAM error) {
  const bool good = ReadBuddy(window, state);
  if (error != 0) *reinterpret_cast<BOOL*>(error) = good ? FALSE : TRUE;
  return state.position;
}

void Notify(const Window& window, int code, int position) {
  const UINT message = (window.style & UDS_HORZ) != 0 ? WM_HSCROLL : WM_VSCROLL;
  SendMessageW(window.parent, message,
               MAKEWPARAM(static_cast<WORD>(code), static_cast<WORD>(position)),
               reinterpret_cast<LPARAM>(window.handle));
}

// One press of an arrow. The dialog may refuse it or change how far it goes.
void Step(const WindowPtr& window, UpDownState& state, bool up) {
  ReadBuddy(*window, state);
  const int direction = (state.upper >= state.lower) == up ? 1 : -1;
  NMUPDOWN notice = {};
  notice.hdr.hwndFrom = window->handle;
  notice.hdr.idFrom = static_cast<UINT_PTR>(window->id);
  notice.hdr.code = UDN_DELTAPOS;
  notice.iPos = state.position;
  notice.iDelta = direction;
  if (SendMessageW(window->parent, WM_NOTIFY, notice.hdr.idFrom,
                   reinterpret_cast<LPARAM>(&notice)) != 0) {
    return;
  }
  if (window->destroying) return;
  int64_t next = int64_t{state.position} + notice.iDelta;
  if ((window->style & UDS_WRAP) != 0 && !state.Inside(next)) {
    next =
        notice.iDelta > 0 ? std::min(state.lower, state.upper) : std::max(state.lower, state.upper);
  }
  SetPosition(*window, state, next);
  if (!window->destroying) Notify(*window, SB_THUMBPOSITION, state.position);
}

}  // namespace

bool SpinBy(HWND handle, bool up) {
  const WindowPtr window = FindWindowOf(handle);
  if (!window || !IsShown(handle) || !IsReachable(handle)) return false;
  auto* state = StateOf<UpDownState>(*window);
  if (state == nullptr) return false;
  if (FindWindowOf(state->buddy)) {
    if (!IsReachable(state->buddy)) return false;
    SetFocus(state->buddy);
  }
  if (!window->destroying && IsReachable(handle)) Step(window, *state, up);
  if (!window->destroying) Notify(*window, SB_ENDSCROLL, state->position);
  return true;
}

HWND ArrowUpDownOf(HWND edit) {
  const WindowPtr window = FindWindowOf(edit);
  const WindowPtr parent = window ? FindWindowOf(window->parent) : nullptr;
  if (!parent) return nullptr;
  for (HWND child : parent->children) {
    const WindowPtr one = FindWindowOf(child);
    const auto* state = one ? StateOf<UpDownState>(*one) : nullptr;
    if (state != nullptr && state->buddy == edit && (one->style & UDS_ARROWKEYS) != 0) return child;
  }
  return nullptr;
}

void DescribeUpDown(const Window& window, ControlView& view) {
  const auto* state = StateOf<UpDownState>(window);
  if (state == nullptr) return;
  view.minimum = state->lower;
  view.maximum = state->upper;
  view.position = state->position;
  view.buddy = GetDlgCtrlID(state->buddy);
}

static LRESULT RangeMessage(UpDownState& state, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case UDM_SETRANGE:  // the maximum in the low word
      state.upper = static_cast<SHORT>(LOWORD(static_cast<DWORD_PTR>(lParam)));
      state.lower = static_cast<SHORT>(HIWORD(static_cast<DWORD_PTR>(lParam)));
      return 0;
    case UDM_SETRANGE32:
      state.lower = static_cast<int>(wParam);
      state.upper = static_cast<int>(lParam);
      return 0;
    case UDM_GETRANGE:
      return MAKELONG(static_cast<WORD>(state.upper), static_cast<WORD>(state.lower));
    default:  // UDM_GETRANGE32
      if (wParam != 0) *reinterpret_cast<INT*>(wParam) = state.lower;
      if (lParam != 0) *reinterpret_cast<INT*>(lParam) = state.upper;
      return 0;
  }
}

LRESULT CALLBACK UpDownProc(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
  const WindowPtr window = FindWindowOf(handle);
  if (!window) return 0;
  if (message == WM_CREATE) {
    auto made = std::make_unique<UpDownState>();
    UpDownState& state = *made;
    window->state = std::move(made);
    if ((window->style & UDS_AUTOBUDDY) != 0) SetBuddy(*window, state, PreviousSibling(*window));
    return 0;
  }
  UpDownState& state = *StateOf<UpDownState>(*window);
  switch (message) {
    case UDM_SETRANGE:
    case UDM_GETRANGE:
    case UDM_SETRANGE32:
    case UDM_GETRANGE32:
      return RangeMessage(state, message, wParam, lParam);
    case UDM_SETPOS:
      return SetPosition(*window, state,
                         static_cast<SHORT>(LOWORD(static_cast<DWORD_PTR>(lParam))));
    case UDM_SETPOS32:
      return SetPosition(*window, state, static_cast<int>(lParam));
    case UDM_GETPOS:
      return AnswerPosition16(*window, state);
    case UDM_GETPOS32:
      return AnswerPosition32(*window, state, lParam);
    case UDM_SETBUDDY:
      return reinterpret_cast<LRESULT>(SetBuddy(*window, state, reinterpret_cast<HWND>(wParam)));
    case UDM_GETBUDDY:
      return reinterpret_cast<LRESULT>(state.buddy);
    case UDM_SETBASE: {
      const int before = state.base;
      if (wParam != 10 && wParam != 16) return 0;
      state.base = static_cast<int>(wParam);
      return before;
    }
    case UDM_GETBASE:
      return state.base;
    default:
      return DefWindowProcW(handle, message, wParam, lParam);
  }
}

}  // namespace platform
