// Edit controls of one line, and of several as far as texts with line breaks go.
#include <algorithm>

#include "platform/desktop/windows/desktop.h"

namespace platform {

namespace {

constexpr size_t kDefaultLimit = 32767;  // characters a person may enter when no limit was set

constexpr size_t kNoLimit = 0x7FFFFFFE;  // what EM_LIMITTEXT makes of 0

struct EditState : WindowState {
  size_t limit = kDefaultLimit;
  size_t from = 0;  // the selection, from <= to
  size_t to = 0;
  bool modified = false;
};

void NotifyChange(const WindowPtr& window) {
  NotifyCommand(*window, EN_UPDATE);
  if (!window->destroying) NotifyCommand(*window, EN_CHANGE);
}

void Select(const Window& window, EditState& state, WPARAM start, LPARAM end) {
  const size_t length = window.text.size();
  const auto from = static_cast<INT>(start);
  if (from < 0) {  // removes the selection
    state.from = state.to;
    return;
  }
  const size_t a = std::min<size_t>(static_cast<size_t>(from), length);
  const auto last = static_cast<INT>(end);
  const size_t b = last < 0 ? length : std::min<size_t>(static_cast<size_t>(last), length);
  state.from = std::min(a, b);
  state.to = std::max(a, b);
}

std::u16string WithCaseOf(const Window& window, std::u16string_view text) {
  std::u16string cased(text);
  for (char16_t& c : cased) {
    if ((window.style & ES_UPPERCASE) != 0 && c >= u'a' && c <= u'z') c -= 32;
    if ((window.style & ES_LOWERCASE) != 0 && c >= u'A' && c <= u'Z') c += 32;
  }
  return cased;
}

// Puts a text in place of the selection, as much of it as the limit leaves room for. Nothing is
// notified when nothing changes but that there was no room.
void Insert(const WindowPtr& window, EditState& state, std::u16string_view text) {
  const size_t kept = window->text.size() - (state.to - state.from);
  const size_t room = state.limit > kept ? state.limit - kept : 0;
  const bool cut = text.size() > room;
  const std::u16string fits = WithCaseOf(*window, text.substr(0, room));
  if (cut) NotifyCommand(*window, EN_MAXTEXT);
  if (window->destroying || (fits.empty() && (cut || state.from == state.to))) return;
  const size_t from = std::min(state.from, window->text.size());
  const size_t to = std::min(state.to, window->text.size());
  window->text.replace(from, to - from, fits);
  state.from = state.to = from + fits.size();
  state.modified = true;
  InvalidateWindow(*window, false);
  NotifyChange(window);
}

void SetText(const WindowPtr& window, EditState& state, LPARAM lParam) {
  window->text = lParam != 0 ? reinterpret_cast<LPCWSTR>(lParam) : u"";
  state.from = state.to = 0;
  state.modified = false;
  InvalidateWindow(*window, false);
  if ((window->style & ES_MULTILINE) == 0) NotifyChange(window);
}

bool CanWrite(HWND edit) {
  const WindowPtr window = FindWindowOf(edit);
  return window && window->windowClass == WindowClass::kEdit && IsShown(edit) &&
         IsReachable(edit) && (window->style & ES_READONLY) == 0;
}

void Backspace(const WindowPtr& window, EditState& state) {
  if (state.from == state.to) {
    if (state.from == 0) return;
    --state.from;
  }
  Insert(window, state, {});
}

void TakeCharacter(const WindowPtr& window, EditState& state, WCHAR character) {
  if ((window->style & ES_READONLY) != 0) return;
  if (character == VK_BACK) {
    Backspace(window, state);
    return;
  }
  const bool lineBreak = character == u'\r' || character == u'\n';
  const bool refused = lineBreak ? (window->style & ES_MULTILINE) == 0 : character < u' ';
  const bool digit = character >= u'0' && character <= u'9';
  if (refused || ((window->style & ES_NUMBER) != 0 && !digit)) {
    MessageBeep(0);
    return;
  }
  Insert(window, state,
         lineBreak ? std::u16string_view(u"\r\n") : std::u16string_view(&character, 1));
}

// Delete, and the arrow keys for the up-down that asked for them.
void TakeKey(const WindowPtr& window, EditState& state, WPARAM key) {
  if (key == VK_DELETE && (window->style & ES_READONLY) == 0) {
    if (state.from == state.to && state.to < window->text.size()) ++state.to;
    if (state.from != state.to) Insert(window, state, {});
    return;
  }
  if (key != VK_UP && key != VK_DOWN) return;
  const HWND upDown = ArrowUpDownOf(window->handle);
  if (upDown != nullptr) SpinBy(upDown, key == VK_UP);
}

void SetReadOnly(Window& window, bool readOnly) {
  window.style = readOnly ? window.style | ES_READONLY : window.style & ~ES_READONLY;
  InvalidateWindow(window, true);
}

LRESULT GetSelection(const EditState& state, WPARAM wParam, LPARAM lParam) {
  if (wParam != 0) *reinterpret_cast<DWORD*>(wParam) = static_cast<DWORD>(state.from);
  if (lParam != 0) *reinterpret_cast<DWORD*>(lParam) = static_cast<DWORD>(state.to);
  return MAKELONG(state.from, state.to);
}

}  // namespace

bool TypeCharacter(HWND edit, WCHAR character) {
  if (!CanWrite(edit)) return false;
  SendMessageW(edit, WM_CHAR, character, 1);
  return true;
}

bool PasteText(HWND edit, std::u16string_view text) {
  if (!CanWrite(edit)) return false;
  const WindowPtr window = FindWindowOf(edit);
  std::u16string pasted(text);
  if ((window->style & ES_MULTILINE) == 0)
    std::erase_if(pasted, [](char16_t c) { return c == u'\r' || c == u'\n'; });
  Insert(window, *StateOf<EditState>(*window), pasted);
  return true;
}

void DescribeEdit(const Window& window, ControlView& view) {
  const auto* state = StateOf<EditState>(window);
  view.readOnly = (window.style & ES_READONLY) != 0;
  if (state != nullptr) view.textLimit = static_cast<int>(state->limit);
}

LRESULT CALLBACK EditProc(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
  const WindowPtr window = FindWindowOf(handle);
  if (!window) return 0;
  if (message == WM_CREATE) {
    window->state = std::make_unique<EditState>();
    return 0;
  }
  EditState& state = *StateOf<EditState>(*window);
  switch (message) {
    case WM_SETTEXT:
      SetText(window, state, lParam);
      return TRUE;
    case EM_LIMITTEXT:
      state.limit = wParam != 0 ? wParam : kNoLimit;
      return 0;
    case EM_GETLIMITTEXT:
      return static_cast<LRESULT>(state.limit);
    case EM_SETSEL:
      Select(*window, state, wParam, lParam);
      return 0;
    case EM_GETSEL:
      return GetSelection(state, wParam, lParam);
    case EM_REPLACESEL:
      if (lParam != 0) Insert(window, state, reinterpret_cast<LPCWSTR>(lParam));
      return 0;
    case EM_SETREADONLY:
      SetReadOnly(*window, wParam != 0);
      return TRUE;
    case EM_GETMODIFY:
      return state.modified;
    case EM_SETMODIFY:
      state.modified = wParam != 0;
      return 0;
    case WM_CHAR:
      TakeCharacter(window, state, static_cast<WCHAR>(wParam));
      return 0;
    case WM_KEYDOWN:
      TakeKey(window, state, wParam);
      return 0;
    case WM_CLEAR:
      if (state.from != state.to) Insert(window, state, {});
      return 0;
    case WM_SETFOCUS:
      NotifyCommand(*window, EN_SETFOCUS);
      return 0;
    case WM_KILLFOCUS:
      NotifyCommand(*window, EN_KILLFOCUS);
      return 0;
    default:
      return DefWindowProcW(handle, message, wParam, lParam);
  }
}

}  // namespace platform
