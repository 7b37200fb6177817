// Trackbars: a position in a range that a person drags.
#include <windows.h>
#include <commctrl.h>

#include <algorithm>
#include <utility>

#include "platform/desktop/windows/desktop.h"

namespace platform {

namespace {

struct TrackbarState : WindowState {
  int minimum = 0;
  int maximum = 100;
  int position = 0;
  int line = 1;
  int page = 20;

  void Move(int64_t value) {
    position = static_cast<int>(std::clamp<int64_t>(value, minimum, std::max(minimum, maximum)));
  }
};

void Notify(const Window& window, int code, int position) {
  const UINT message = (window.style & TBS_VERT) != 0 ? WM_VSCROLL : WM_HSCROLL;
  SendMessageW(window.parent, message,
               MAKEWPARAM(static_cast<WORD>(code), static_cast<WORD>(position)),
               reinterpret_cast<LPARAM>(window.handle));
}

}  // namespace

bool SlideTo(HWND handle, int position) {
  const WindowPtr window = FindWindowOf(handle);
  if (!window || !IsShown(handle) || !IsReachable(handle)) return false;
  auto* state = StateOf<TrackbarState>(*window);
  if (state == nullptr) return false;
  SetFocus(handle);
  state->Move(position);
  Notify(*window, TB_THUMBTRACK, state->position);
  if (!window->destroying) Notify(*window, TB_THUMBPOSITION, state->position);
  if (!window->destroying) Notify(*window, TB_ENDTRACK, 0);
  return true;
}

void DescribeTrackbar(const Window& window, ControlView& view) {
  const auto* state = StateOf<TrackbarState>(window);
  if (state == nullptr) return;
  view.minimum = state->minimum;
  view.maximum = state->maximum;
  view.position = state->position;
}

LRESULT CALLBACK TrackbarProc(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
  const WindowPtr window = FindWindowOf(handle);
  if (!window) return 0;
  if (message == WM_CREATE) {
    window->state = std::make_unique<TrackbarState>();
    return 0;
  }
  TrackbarState& state = *StateOf<TrackbarState>(*window);
  const auto number = static_cast<int>(lParam);
  switch (message) {
    case TBM_GETPOS:
      return state.position;
    case TBM_SETPOS:
      state.Move(number);
      return 0;
    case TBM_GETRANGEMIN:
      return state.minimum;
    case TBM_GETRANGEMAX:
      return state.maximum;
    case TBM_SETRANGEMIN:
      state.minimum = number;
      state.Move(state.position);
      return 0;
    case TBM_SETRANGEMAX:
      state.maximum = number;
      state.Move(state.position);
      return 0;
    case TBM_SETRANGE:
      state.minimum = static_cast<SHORT>(LOWORD(static_cast<DWORD_PTR>(lParam)));
      state.maximum = static_cast<SHORT>(HIWORD(static_cast<DWORD_PTR>(lParam)));
      state.Move(state.position);
      return 0;
    case TBM_SETLINESIZE:
      return std::exchange(state.line, number);
    case TBM_SETPAGESIZE:
      return std::exchange(state.page, number);
    case TBM_GETLINESIZE:
      return state.line;
    case TBM_GETPAGESIZE:
      return state.page;
    default:
      return DefWindowProcW(handle, message, wParam, lParam);
  }
}

}  // namespace platform

extern "C" {

void WINAPI InitCommonControls() {}

BOOL WINAPI InitCommonControlsEx(const INITCOMMONCONTROLSEX* request) {
  return request != nullptr && request->dwSize == sizeof *request ? TRUE : FALSE;
}

}  // extern "C"
