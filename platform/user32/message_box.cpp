// Message boxes: a modal window with a text and up to two buttons.
#include <winbase.h>

#include <algorithm>

#include "platform/user32/manager.h"

namespace platform {

namespace {

constexpr size_t kHistoryLength = 100;

struct BoxKind {
  UINT type;
  int closed;     // the result of Esc and the close box; 0: they do nothing
  int cancelled;  // the result without a user
  struct {
    int id;
    const char16_t* text;
  } buttons[2];
  int count;
};

// The kinds (MB_TYPEMASK) that are supported.
constexpr BoxKind kKinds[] = {
    {MB_OK, IDOK, IDOK, {{IDOK, u"OK"}}, 1},
    {MB_OKCANCEL, IDCANCEL, IDCANCEL, {{IDOK, u"OK"}, {IDCANCEL, u"キャンセル"}}, 2},
    {MB_YESNO, 0, IDNO, {{IDYES, u"はい(&Y)"}, {IDNO, u"いいえ(&N)"}}, 2},
};

const BoxKind& KindOf(UINT style) {
  const auto* kind = std::find_if(std::begin(kKinds), std::end(kKinds), [=](const BoxKind& one) {
    return one.type == (style & MB_TYPEMASK);
  });
  return kind != std::end(kKinds) ? *kind : kKinds[0];
}

// Returns the size of a text in pixels: a half-width character is 6 wide, a full-width one 12, a
// line 12 high.
SIZE TextSize(std::u16string_view text) {
  SIZE size = {0, 12};
  LONG width = 0;
  for (char16_t c : text) {
    if (c == u'\n') {
      size.cy += 12;
      width = 0;
      continue;
    }
    const bool half = c < 0x2000 || (c >= 0xFF61 && c <= 0xFF9F);
    width += c == u'\t' ? 48 : half ? 6 : 12;
    size.cx = std::max(size.cx, width);
  }
  return size;
}

INT_PTR CALLBACK BoxProc(HWND box, UINT message, WPARAM wParam, LPARAM) {
  if (message != WM_CLOSE && message != WM_COMMAND) return FALSE;
  const BoxKind& kind = KindOf(FindWindowOf(box)->messageStyle);
  const int id = message == WM_CLOSE ? IDCANCEL : LOWORD(wParam);
  const auto* end = kind.buttons + kind.count;
  const bool own =
      std::any_of(kind.buttons, end, [=](const auto& button) { return button.id == id; });
  if (own || (id == IDCANCEL && kind.closed != 0)) EndModal(box, own ? id : kind.closed);
  return TRUE;
}

constexpr int kMargin = 12;
constexpr int kIconWidth = 44;
constexpr int kButtonWidth = 75;
constexpr int kButtonHeight = 23;
constexpr int kButtonGap = 6;

int ShowBox(HWND owner, std::u16string text, std::u16string caption, UINT style) {
  const BoxKind& kind = KindOf(style);
  const SIZE size = TextSize(text);
  const int icon = (style & MB_ICONMASK) != 0 ? kIconWidth : 0;
  const int textHeight = std::max<int>(size.cy, icon != 0 ? 32 : 12);
  const int row = kind.count * (kButtonWidth + kButtonGap) - kButtonGap;
  TopWindowRequest request;
  request.title = caption;
  request.width = std::max<int>(3 * (kButtonWidth + kButtonGap), size.cx + icon) + 2 * kMargin;
  request.height = textHeight + kButtonHeight + 3 * kMargin;
  request.owner = owner;
  request.proc = BoxProc;
  request.kind = WindowView::Kind::kMessageBox;
  request.controls = {MakeControl(u"static", IDC_STATIC, text, SS_LEFT | SS_NOPREFIX,
                                  kMargin + icon, kMargin, request.width - 2 * kMargin - icon,
                                  textHeight)};
  // The buttons are in a centred row; MB_DEFBUTTON2 focuses the second.
  const int preferred = kind.count == 2 && (style & MB_DEFBUTTON2) != 0 ? 1 : 0;
  for (int i = 0; i < kind.count; ++i)
    request.controls.push_back(
        MakeControl(u"button", kind.buttons[i].id, kind.buttons[i].text,
                    WS_TABSTOP | (i == preferred ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON),
                    (request.width - row) / 2 + i * (kButtonWidth + kButtonGap),
                    textHeight + 2 * kMargin, kButtonWidth, kButtonHeight));
  const HWND box = CreateTopWindow(std::move(request));
  const WindowPtr window = FindWindowOf(box);
  if (!window) return 0;
  window->messageStyle = style;
  window->cancelResult = kind.cancelled;
  DisableOwner(*window);
  SetFocus(ChildWithId(*window, window->dialog->defaultId));
  auto& history = Manager().history;
  if (history.size() == kHistoryLength) history.erase(history.begin());
  history.push_back({std::move(caption), std::move(text), style});
  return static_cast<int>(RunModal(box));
}

}  // namespace

}  // namespace platform

extern "C" {

int WINAPI MessageBoxW(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type) {
  if (owner != nullptr && !platform::FindWindowOf(owner)) {
    SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return 0;
  }
  return platform::ShowBox(owner, text != nullptr ? text : u"",
                           caption != nullptr ? caption : u"エラー", type);
}

BOOL WINAPI MessageBeep(UINT) { return TRUE; }

}  // extern "C"
