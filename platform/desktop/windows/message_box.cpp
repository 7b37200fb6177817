// Message boxes: a modal window with a text and up to three buttons of fixed ids.
#include <algorithm>

#include "platform/desktop/windows/desktop.h"

namespace platform {

namespace {

constexpr int kTextId = 0xFFFF;
constexpr size_t kHistoryLength = 100;

struct BoxButton {
  int id;
  const char16_t* text;
};

constexpr BoxButton kOk = {IDOK, u"OK"};
constexpr BoxButton kCancel = {IDCANCEL, u"キャンセル"};
constexpr BoxButton kAbort = {IDABORT, u"中止(&A)"};
constexpr BoxButton kRetry = {IDRETRY, u"再試行(&R)"};
constexpr BoxButton kIgnore = {IDIGNORE, u"無視(&I)"};
constexpr BoxButton kYes = {IDYES, u"はい(&Y)"};
constexpr BoxButton kNo = {IDNO, u"いいえ(&N)"};

struct BoxKind {
  BoxButton buttons[3];
  int count;
  int closed;     // what Esc and the close box answer; 0: they do nothing
  int abandoned;  // what it answers when nobody is there
};

// By MB_TYPEMASK (MessageBox).
constexpr BoxKind kKinds[] = {
    {{kOk}, 1, IDOK, IDOK},
    {{kOk, kCancel}, 2, IDCANCEL, IDCANCEL},
    {{kAbort, kRetry, kIgnore}, 3, 0, IDABORT},
    {{kYes, kNo, kCancel}, 3, IDCANCEL, IDCANCEL},
    {{kYes, kNo}, 2, 0, IDNO},
    {{kRetry, kCancel}, 2, IDCANCEL, IDCANCEL},
};

const BoxKind& KindOf(UINT style) {
  return kKinds[std::min<size_t>(style & MB_TYPEMASK, std::size(kKinds) - 1)];
}

// Pixels: 6 for a half-width character, 12 for a full one, 12 for a line.
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
  const WindowPtr window = FindWindowOf(box);
  const BoxKind& kind = KindOf(window->messageStyle);
  switch (message) {
    case WM_CLOSE:
      if (kind.closed != 0) EndModal(box, kind.closed);
      return TRUE;
    case WM_COMMAND: {
      const int id = LOWORD(wParam);
      for (int i = 0; i < kind.count; ++i) {
        if (kind.buttons[i].id == id) {
          EndModal(box, id);
          return TRUE;
        }
      }
      if (id == IDCANCEL && kind.closed != 0) EndModal(box, kind.closed);
      return TRUE;
    }
    default:
      return FALSE;
  }
}

constexpr int kMargin = 12;
constexpr int kIconWidth = 44;
constexpr int kButtonWidth = 75;
constexpr int kButtonHeight = 23;
constexpr int kButtonGap = 6;

void AddText(HWND box, std::u16string_view text, const RECT& rect) {
  ControlRequest request;
  request.className = u"static";
  request.text = text;
  request.id = kTextId;
  request.style = WS_VISIBLE | SS_LEFT | SS_NOPREFIX;
  request.rect = rect;
  request.parent = box;
  CreateControl(request);
}

// The buttons stand in a row in the middle; the one that MB_DEFBUTTON names gets the focus.
void AddButtons(HWND box, UINT style, int width, int top) {
  const BoxKind& kind = KindOf(style);
  const int preferred = std::min<int>((style & MB_DEFMASK) >> 8, kind.count - 1);
  const int row = kind.count * kButtonWidth + (kind.count - 1) * kButtonGap;
  int left = (width - row) / 2;
  for (int i = 0; i < kind.count; ++i, left += kButtonWidth + kButtonGap) {
    ControlRequest request;
    request.className = u"button";
    request.text = kind.buttons[i].text;
    request.id = kind.buttons[i].id;
    request.style = WS_VISIBLE | WS_TABSTOP | (i == preferred ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON);
    request.rect = {left, top, left + kButtonWidth, top + kButtonHeight};
    request.parent = box;
    const HWND button = CreateControl(request);
    if (i == preferred) {
      FindWindowOf(box)->dialog->defaultId = request.id;
      SetFocus(button);
    }
  }
}

int ShowBox(HWND owner, std::u16string text, std::u16string caption, UINT style) {
  const SIZE size = TextSize(text);
  const int icon = (style & MB_ICONMASK) != 0 ? kIconWidth : 0;
  const int row = 3 * (kButtonWidth + kButtonGap);
  TopWindowRequest request;
  request.title = caption;
  request.width = std::max<int>(row, size.cx + icon) + 2 * kMargin;
  const int textBottom = kMargin + std::max<int>(size.cy, icon != 0 ? 32 : 12);
  request.height = textBottom + kMargin + kButtonHeight + kMargin;
  request.owner = owner;
  request.proc = BoxProc;
  request.kind = WindowView::Kind::kMessageBox;
  const int width = request.width;
  const HWND box = CreateTopWindow(std::move(request));
  const WindowPtr window = FindWindowOf(box);
  if (!window) return 0;
  window->messageStyle = style;
  window->cancelResult = KindOf(style).abandoned;
  DisableOwner(*window);
  AddText(box, text, {kMargin + icon, kMargin, width - kMargin, textBottom});
  AddButtons(box, style, width, textBottom + kMargin);
  auto& history = TheDesktop().history;
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
