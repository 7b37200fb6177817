// Edit controls of one line.
#include <algorithm>

#include "platform/desktop/windows/manager.h"

namespace platform {

namespace {

constexpr size_t kDefaultLimit = 32767;  // characters a person may enter when no limit was set
constexpr size_t kNoLimit = 0x7FFFFFFE;  // what EM_LIMITTEXT makes of 0

struct EditState : WindowState {
  size_t limit = kDefaultLimit;
  size_t from = 0;  // the selection, from <= to
  size_t to = 0;
};

// -1 as the end is that of the text, as the start it removes the selection (EM_SETSEL).
void Select(const Window& window, EditState& state, INT start, INT end) {
  const size_t length = window.text.size();
  const auto place = [=](INT at) {
    return at < 0 ? length : std::min<size_t>(static_cast<size_t>(at), length);
  };
  state.from = start < 0 ? state.to : std::min(place(start), place(end));
  state.to = start < 0 ? state.to : std::max(place(start), place(end));
}

void Change(const WindowPtr& window) {
  InvalidateWindow(*window, false);
  NotifyCommand(*window, EN_UPDATE);
  if (!window->destroying) NotifyCommand(*window, EN_CHANGE);
}

// Puts a text in place of the selection, as much of it as the limit leaves room for. Nothing is
// notified when nothing changes.
void Insert(const WindowPtr& window, EditState& state, std::u16string_view text) {
  const size_t kept = window->text.size() - (state.to - state.from);
  const std::u16string_view fits = text.substr(0, state.limit > kept ? state.limit - kept : 0);
  if (fits.empty() && (!text.empty() || state.from == state.to)) return;
  window->text.replace(state.from, state.to - state.from, fits);
  state.from = state.to = state.from + fits.size();
  Change(window);
}

// The edit that a person's keys reach; null for one that cannot be written into.
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
  EditState& state = *StateOf<EditState>(*window);
  if (character == VK_BACK) {
    if (state.from == state.to && state.from > 0) --state.from;
    Insert(window, state, {});
  } else if (character >= u' ') {
    Insert(window, state, {&character, 1});
  }
  return true;
}

bool PressDelete(HWND edit) {
  const WindowPtr window = Writable(edit);
  if (!window) return false;
  EditState& state = *StateOf<EditState>(*window);
  if (state.from == state.to && state.to < window->text.size()) ++state.to;
  Insert(window, state, {});
  return true;
}

bool PasteText(HWND edit, std::u16string_view text) {
  const WindowPtr window = Writable(edit);
  if (!window) return false;
  std::u16string line(text);
  std::erase_if(line, [](char16_t c) { return c == u'\r' || c == u'\n'; });
  Insert(window, *StateOf<EditState>(*window), line);
  return true;
}

void DescribeEdit(const Window& window, ControlView& view) {
  const auto* state = StateOf<EditState>(window);
  if (state == nullptr) return;
  view.readOnly = (window.style & ES_READONLY) != 0;
  view.textLimit = static_cast<int>(state->limit);
}

LRESULT CALLBACK EditProc(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
  const WindowPtr window = FindWindowOf(handle);
  if (!window) return 0;
  auto* state = StateOf<EditState>(*window);
  switch (message) {
    case WM_CREATE:
      window->state = std::make_unique<EditState>();
      return 0;
    case WM_SETTEXT:
      window->text = lParam != 0 ? reinterpret_cast<LPCWSTR>(lParam) : u"";
      state->from = state->to = 0;
      Change(window);
      return TRUE;
    case EM_LIMITTEXT:
      state->limit = wParam != 0 ? wParam : kNoLimit;
      return 0;
    case EM_SETSEL:
      Select(*window, *state, static_cast<INT>(wParam), static_cast<INT>(lParam));
      return 0;
    case EM_GETSEL:
      if (wParam != 0) *reinterpret_cast<DWORD*>(wParam) = static_cast<DWORD>(state->from);
      if (lParam != 0) *reinterpret_cast<DWORD*>(lParam) = static_cast<DWORD>(state->to);
      return MAKELONG(state->from, state->to);
    case WM_SETFOCUS:
      NotifyCommand(*window, EN_SETFOCUS);
      return 0;
    case WM_KILLFOCUS:
      NotifyCommand(*window, EN_KILLFOCUS);
      return 0;
    default:
      return DefaultProc(handle, message, wParam, lParam);
  }
}

}  // namespace platform
