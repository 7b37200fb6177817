// Edit controls of one line.
#include <algorithm>

#include "platform/user32/manager.h"

namespace platform {

namespace {

constexpr size_t kNoLimit = 0x7FFFFFFE;  // the limit that EM_LIMITTEXT sets for 0

// An end of -1 means the end of the text; a start of -1 removes the selection (EM_SETSEL).
void Select(Window& window, INT start, INT end) {
  EditData& state = window.edit;
  const size_t length = window.text.size();
  const auto place = [=](INT at) {
    return at < 0 ? length : std::min<size_t>(static_cast<size_t>(at), length);
  };
  state.from = start < 0 ? state.to : std::min(place(start), place(end));
  state.to = start < 0 ? state.to : std::max(place(start), place(end));
}

void Change(const WindowPtr& window) {
  NotifyCommand(*window, EN_UPDATE);
  NotifyCommand(*window, EN_CHANGE);
}

// Replaces the selection with a text, truncated to the limit. Sends no notification when nothing
// changes.
void Insert(const WindowPtr& window, std::u16string_view text) {
  EditData& state = window->edit;
  const size_t kept = window->text.size() - (state.to - state.from);
  const std::u16string_view fits = text.substr(0, state.limit > kept ? state.limit - kept : 0);
  if (fits.empty() && (!text.empty() || state.from == state.to)) return;
  window->text.replace(state.from, state.to - state.from, fits);
  state.from = state.to = state.from + fits.size();
  Change(window);
}

// Returns the edit that accepts keys; null when it is read-only, hidden or disabled.
WindowPtr Writable(HWND edit) {
  const WindowPtr window = FindWindowOf(edit);
  const bool can = window && window->windowClass == WindowClass::kEdit && IsShown(edit) &&
                   IsReachable(edit) && (window->style & ES_READONLY) == 0;
  return can ? window : nullptr;
}

}  // namespace

bool TypeCharacter(HWND edit, WCHAR character) {
  const WindowPtr window = Writable(edit);
  if (!window) return false;
  EditData& state = window->edit;
  if (character == VK_BACK) {
    if (state.from == state.to && state.from > 0) --state.from;
    Insert(window, {});
  } else if (character >= u' ') {
    Insert(window, {&character, 1});
  }
  return true;
}

bool PressDelete(HWND edit) {
  const WindowPtr window = Writable(edit);
  if (!window) return false;
  EditData& state = window->edit;
  if (state.from == state.to && state.to < window->text.size()) ++state.to;
  Insert(window, {});
  return true;
}

bool PasteText(HWND edit, std::u16string_view text) {
  const WindowPtr window = Writable(edit);
  if (!window) return false;
  Insert(window, text.substr(0, text.find_first_of(u"\r\n")));
  return true;
}

LRESULT EditProc(const WindowPtr& window, UINT message, WPARAM wParam, LPARAM lParam) {
  EditData& state = window->edit;
  switch (message) {
    case WM_SETTEXT:
      window->text = lParam != 0 ? reinterpret_cast<LPCWSTR>(lParam) : u"";
      state.from = state.to = 0;
      Change(window);
      return TRUE;
    case EM_LIMITTEXT:
      state.limit = wParam != 0 ? wParam : kNoLimit;
      return 0;
    case EM_SETSEL:
      Select(*window, static_cast<INT>(wParam), static_cast<INT>(lParam));
      return 0;
    case EM_GETSEL:
      if (wParam != 0) *reinterpret_cast<DWORD*>(wParam) = static_cast<DWORD>(state.from);
      if (lParam != 0) *reinterpret_cast<DWORD*>(lParam) = static_cast<DWORD>(state.to);
      return MAKELONG(state.from, state.to);
    case WM_SETFOCUS:
      NotifyCommand(*window, EN_SETFOCUS);
      return 0;
    case WM_KILLFOCUS:
      NotifyCommand(*window, EN_KILLFOCUS);
      return 0;
    default:
      return DefaultProc(window, message, wParam, lParam);
  }
}

}  // namespace platform
