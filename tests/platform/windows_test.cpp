// Windows, controls and drawing: order of notifications, focus, keyboard, modal windows, painting.
#include <windows.h>
#include <commctrl.h>

#include <functional>
#include <limits>

#include "platform/gdi32/gdi.h"
#include "platform/user32/window.h"
#include "resources/resource.h"
#include "tests/support/steps.h"
#include "tests/support/test_machine.h"

namespace support {
namespace {

using platform::MakeControl;

// A window under test, which records the messages of its procedure.
class WindowTest : public MachineTest {
 protected:
  // A control id with its notification code; for other messages, a number of the message.
  using By = std::pair<int, UINT>;
  using Messages = std::vector<By>;

  static platform::ControlRequest Edit(int id, DWORD style = 0) {
    return MakeControl(u"edit", id, u"", style | WS_TABSTOP, id, 0, 60, 20);
  }
  static platform::ControlRequest Button(int id, DWORD style = 0) {
    return MakeControl(u"button", id, u"Press", style | WS_TABSTOP, id, 0, 60, 20);
  }

  // Shows a window with these controls. OK and Cancel end it.
  INT_PTR Run(std::vector<platform::ControlRequest> controls, Steps steps) {
    current_ = this;
    window = platform::CreateTopWindow({u"", 150, 150, nullptr, Proc,
                                        platform::WindowView::Kind::kDialog, nullptr,
                                        std::move(controls)});
    return RunSteps(std::move(steps), [this] { return platform::RunModal(window); });
  }
  // Shows an edit with an up-down, and another edit.
  void RunUpDown(std::function<void(Desk&)> steps, DWORD style = UDS_SETBUDDYINT) {
    style |= UDS_ALIGNRIGHT | UDS_ARROWKEYS;
    Run({Edit(10), MakeControl(u"msctls_updown32", 11, u"", style, 0, 0, 9, 12), Edit(12)},
        {steps, Close()});
  }
  void Attach(int low, int high, int position) {
    Send(11, UDM_SETBUDDY, reinterpret_cast<WPARAM>(Item(10)));
    Send(11, UDM_SETRANGE32, static_cast<WPARAM>(low), high);
    Send(11, UDM_SETPOS32, 0, position);
  }
  HWND Item(int id) const { return GetDlgItem(window, id); }
  LRESULT Send(int id, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return SendDlgItemMessageW(window, id, message, wParam, lParam);
  }
  Messages TakeMessages() { return std::exchange(messages, {}); }

  HWND window = nullptr;
  Messages messages;
  std::function<INT_PTR(UINT, WPARAM, LPARAM)> on;  // a result other than 0 is returned

 private:
  static INT_PTR CALLBACK Proc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    Messages& messages = current_->messages;
    if (message == WM_COMMAND) messages.emplace_back(LOWORD(wParam), HIWORD(wParam));
    if (message == WM_DRAWITEM) messages.emplace_back(static_cast<int>(wParam), message);
    if (message == WM_VSCROLL) messages.emplace_back(static_cast<SHORT>(HIWORD(wParam)), message);
    if (message == WM_NOTIFY)
      messages.emplace_back(reinterpret_cast<const NMUPDOWN*>(lParam)->iPos, UDN_DELTAPOS);
    const INT_PTR answer = current_->on ? current_->on(message, wParam, lParam) : 0;
    const int id = LOWORD(wParam);
    if (answer != 0 || message != WM_COMMAND || (id != IDOK && id != IDCANCEL)) return answer;
    return EndDialog(window, id);
  }
  static inline WindowTest* current_ = nullptr;
};

TEST_F(WindowTest, LostFocusIsNotifiedFirstAndItsHandlerMayMoveFocus) {
  on = [&](UINT message, WPARAM wParam, LPARAM) {
    if (message == WM_COMMAND && wParam == MAKEWPARAM(11, EN_KILLFOCUS)) {
      EXPECT_EQ(GetFocus(), Item(12)) << "the gainer has it by then";
      SetFocus(Item(10));
    }
    return INT_PTR{0};
  };
  const auto steps = [&](Desk& desk) {
    EXPECT_TRUE(desk.Focus(11) && desk.Focus(11) && !desk.Focus(12) && desk.Click(IDOK));
  };
  Run({Edit(10), Edit(11), MakeControl(u"combobox", 12, u"", WS_TABSTOP, 0, 0, 60, 90),
       Button(IDOK)},
      {steps});
  EXPECT_EQ(TakeMessages(),
            Messages({By(10, EN_SETFOCUS), By(10, EN_KILLFOCUS), By(11, EN_SETFOCUS),
                      By(11, EN_KILLFOCUS), By(12, CBN_KILLFOCUS), By(10, EN_SETFOCUS),
                      By(10, EN_KILLFOCUS), By(IDOK, BN_CLICKED)}));
}

TEST_F(WindowTest, TabSkipsUnusableControlsAndEntersGroupAtCheckedButton) {
  const auto steps = [&](Desk& desk) {
    CheckRadioButton(window, 20, 21, 21);
    std::vector<int> order;
    const auto tab = [&](bool back) { return desk.Tab(back) ? desk.FocusedId() : 0; };
    for (const bool back : {false, false, false, true, true}) order.push_back(tab(back));
    EXPECT_TRUE(desk.Key(VK_UP) && desk.Control(20).checked && !desk.Control(21).checked);
    for (const bool back : {false, true}) order.push_back(tab(back));
    EXPECT_EQ(order, (std::vector{21, 30, 10, 30, 21, 30, 20}));
  };
  Run({Edit(10), Edit(11, WS_DISABLED), Button(20, BS_AUTORADIOBUTTON | WS_GROUP),
       Button(21, BS_AUTORADIOBUTTON), Button(30, WS_GROUP)},
      {steps, Close()});
}

TEST_F(WindowTest, EnterPressesDefaultButtonUnlessDisabled) {
  const auto steps = [&](Desk& desk) {
    const auto move = [&](WPARAM to, bool handle) {
      return SendMessageW(window, WM_NEXTDLGCTL, to, handle) == 0;
    };
    const std::function<bool()> kMoves[] = {[] { return true; },
                                            [&] { return desk.Focus(20); },
                                            [&] { return desk.Focus(10); },
                                            [&] { return SetFocus(Item(20)) != nullptr; },
                                            [&] { return move(WPARAM(Item(20)), true); },
                                            [&] { return move(TRUE, false); }};
    std::vector<int> pressed;
    for (const auto& one : kMoves) {
      EXPECT_TRUE(one() && desk.Control(20).defaultButton != desk.Control(21).defaultButton);
      if (desk.Enter()) pressed.push_back(TakeMessages().back().first);
    }
    EXPECT_EQ(pressed, (std::vector{21, 20, 21, 21, 20, 21}));
    for (const int id : {21, IDCANCEL}) EXPECT_FALSE(EnableWindow(Item(id), FALSE));
    EXPECT_FALSE(desk.Enter() || desk.Escape());
    desk.Close();  // goes through the cancel button, which is disabled
    EnableWindow(Item(IDCANCEL), TRUE);
    SetWindowPos(Item(20), nullptr, 0, 0, 0, 0, SWP_NOMOVE);
    EXPECT_FALSE(desk.Click(20)) << "shrunk to nothing";
    EnableWindow(Item(10), FALSE);
    EXPECT_EQ(desk.FocusedId(), 10) << "it keeps the focus, and the keyboard is dead";
    EXPECT_FALSE(desk.Tab() || desk.Enter() || desk.Escape() || desk.AccessKey(u'P'));
    EXPECT_FALSE(desk.Focus(10) || desk.Type(10, u"x") || desk.Focus(99) || SetFocus(Item(10)));
  };
  Run({Edit(10), Button(20), Button(21, BS_DEFPUSHBUTTON), Button(IDCANCEL)},
      {steps, Click(IDCANCEL)});
  EXPECT_EQ(Run({Edit(10)}, {Enter()}), IDOK) << "no default button: OK";
}

TEST_F(WindowTest, ModalWindowBlocksWindowsBelow) {
  on = [&](UINT message, WPARAM wParam, LPARAM) -> INT_PTR {
    if (message != WM_COMMAND || wParam != MAKEWPARAM(20, BN_CLICKED)) return 0;
    EXPECT_EQ(MessageBoxW(Item(20), u"Sure?", u"Ask", MB_OKCANCEL | MB_DEFBUTTON2), IDCANCEL);
    return TRUE;
  };
  const auto below = [&](Desk& desk) {
    EXPECT_FALSE(desk.Windows()[0].enabled || desk.Focus(10) || SetFocus(Item(10)));
    EXPECT_EQ(desk.Title() + desk.MessageText(), u"AskSure?");
    EXPECT_TRUE(desk.FocusedId() == IDCANCEL && desk.Enter());
  };
  Run({Edit(10), Button(20)}, {Click(20), below, ExpectFocus(20), Focus(10), Escape()});
  // Esc and the close box work when there is a cancel button, or only OK; otherwise they do
  // nothing.
  const auto show = [](UINT kind, Steps steps) {
    return RunSteps(steps, [=] { return MessageBoxW(nullptr, u"", u"", kind); });
  };
  const auto stay = [](Desk& desk) { EXPECT_TRUE(desk.Close() && desk.Escape()); };
  EXPECT_EQ(show(MB_OK, {Escape()}), IDOK);
  EXPECT_EQ(show(MB_YESNO, {stay, Click(IDYES)}), IDYES);
}

INT_PTR CALLBACK Stubborn(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG && lParam == 3) EndDialog(dialog, 3);
  if (message == WM_INITDIALOG && lParam == 5) SetFocus(GetDlgItem(dialog, IDCANCEL));
  if (message == WM_CLOSE && MessageBoxW(dialog, u"", u"", MB_YESNO) != IDNO) return FALSE;
  if (message == WM_COMMAND && LOWORD(wParam) == IDCANCEL) EndDialog(dialog, 7);
  return message == WM_CLOSE;
}

TEST_F(WindowTest, DialogWithoutUserIsCancelled) {
  const auto show = [&](LPARAM param, HWND owner = nullptr, int id = IDD_PAPER_REFERENCE) {
    return DialogBoxParamW(module_, MAKEINTRESOURCEW(id), owner, Stubborn, param);
  };
  EXPECT_EQ(show(3), 3) << "ended while it opened";
  EXPECT_EQ(RunSteps({ExpectFocus(IDCANCEL), Escape()}, [&] { return show(5); }), 7)
      << "the focus that the procedure chose stays";
  EXPECT_EQ(show(1), IDCANCEL) << "even one that will not close, and the boxes it opens";
  const auto stale = reinterpret_cast<HWND>(0x1234);
  EXPECT_FALSE(SetWindowTextW(stale, u"x") || EndDialog(stale, 1) || show(1, stale));
  EXPECT_EQ(GetLastError(), ERROR_INVALID_WINDOW_HANDLE);
  EXPECT_EQ(show(1, nullptr, 9999), -1);
  EXPECT_TRUE(GetWindowLongPtrW(stale, 0) == 0 && GetLastError() == ERROR_INVALID_WINDOW_HANDLE);
  machine().faults.FailNth(platform::Fault::kWindow, 2);
  EXPECT_EQ(show(1), -1) << "its first control";
  EXPECT_TRUE(desk().Windows().empty());
}

TEST_F(WindowTest, TextLimitAppliesToUserInputOnly) {
  const auto steps = [&](Desk& desk) {
    TakeMessages();
    Send(10, EM_LIMITTEXT, 3);
    const auto shows = [&](bool) { return desk.Text(10); };
    EXPECT_EQ(shows(desk.Type(10, u"abcd")), u"abc");
    EXPECT_EQ(shows(desk.Paste(10, u"wxyz\r\nv")), u"wxy");
    EXPECT_EQ(shows(desk.Paste(10, u"w\nx")), u"w") << "the first line";
    EXPECT_EQ(TakeMessages().size(), 10u)
        << "EN_UPDATE and EN_CHANGE, nothing for what does not fit";
    EXPECT_EQ(shows(SetDlgItemTextW(window, 10, u"12345")), u"12345");
    EXPECT_EQ(shows(desk.Type(10, u"6")), u"12345") << "over the limit: nothing more goes in";
    EXPECT_EQ(TakeMessages(), Messages({By(10, EN_UPDATE), By(10, EN_CHANGE)}));
    Send(10, EM_SETSEL, 1, 3);
    EXPECT_EQ(shows(desk.Key(VK_BACK) && desk.Key(VK_BACK) && desk.Key(VK_DELETE)), u"5");
    EXPECT_FALSE(desk.Type(11, u"x") || desk.Paste(11, u"x")) << "read only";
  };
  Run({Edit(10), Edit(11, ES_READONLY)}, {steps, Close()});
}

TEST_F(WindowTest, SelectionByUserNotifiesButByMessageDoesNot) {
  const auto steps = [&](Desk& desk) {
    const auto text = [](const WCHAR* of) { return reinterpret_cast<LPARAM>(of); };
    for (const WCHAR* one : {u"one", u"two", u"three"}) {
      Send(12, CB_ADDSTRING, 0, text(one));
      Send(13, LB_INSERTSTRING, 0, text(one));
    }
    EXPECT_TRUE(Send(12, CB_SETCURSEL, 3) == CB_ERR && Send(12, CB_SETCURSEL, 0) == 0);
    ExpectItems(13, {u"three", u"two", u"one"})(desk);
    desk.Select(12, 0);  // what was chosen already
    desk.Select(12, u"three");
    EXPECT_EQ(TakeMessages(),
              Messages({By(12, CBN_SETFOCUS), By(12, CBN_DROPDOWN), By(12, CBN_SELENDOK),
                        By(12, CBN_CLOSEUP), By(12, CBN_DROPDOWN), By(12, CBN_SELENDOK),
                        By(12, CBN_CLOSEUP), By(12, CBN_SELCHANGE)}));
    EXPECT_TRUE(desk.Key(VK_UP) && desk.Select(13, 0) && desk.Text(12) == u"two");
    EXPECT_EQ(TakeMessages(),
              Messages({By(12, CBN_SELENDOK), By(12, CBN_SELCHANGE), By(12, CBN_KILLFOCUS),
                        By(13, LBN_SETFOCUS), By(13, LBN_SELCHANGE)}));
  };
  Run({MakeControl(u"combobox", 12, u"", WS_TABSTOP, 0, 0, 50, 90),
       MakeControl(u"listbox", 13, u"", LBS_NOTIFY | WS_TABSTOP, 0, 0, 50, 90)},
      {steps, Close()});
}

// Arrows notify at once. Enter and Esc first close the list, and reach the dialog only when it is
// closed. A list that loses the focus closes as with Esc.
TEST_F(WindowTest, OpenListNotifiesEachArrowAndEscRestoresTheSelection) {
  const auto steps = [&](Desk& desk) {
    for (const WCHAR* one : {u"one", u"two", u"three"})
      Send(12, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(one));
    Send(12, CB_SETCURSEL, 0);
    const auto shows = [&](bool) {
      return desk.Control(12).open ? u"+" + desk.Text(12) : desk.Text(12);
    };
    desk.Focus(12);
    TakeMessages();
    EXPECT_EQ(shows(desk.Key(VK_F4) && desk.Key(VK_DOWN) && desk.Key(VK_DOWN)), u"+three");
    EXPECT_EQ(TakeMessages(),
              Messages({By(12, CBN_DROPDOWN), By(12, CBN_SELCHANGE), By(12, CBN_SELCHANGE)}));
    EXPECT_EQ(shows(desk.Escape()), u"one");
    EXPECT_EQ(TakeMessages(), Messages({By(12, CBN_SELENDCANCEL), By(12, CBN_CLOSEUP)}));
    EXPECT_EQ(shows(desk.Key(VK_F4) && desk.Key(VK_DOWN) && desk.Enter()), u"two");
    EXPECT_EQ(TakeMessages(), Messages({By(12, CBN_DROPDOWN), By(12, CBN_SELCHANGE),
                                        By(12, CBN_SELENDOK), By(12, CBN_CLOSEUP)}));
    EXPECT_EQ(shows(desk.Key(VK_F4) && desk.Key(VK_UP) && desk.Tab()), u"two");
    EXPECT_EQ(TakeMessages(),
              Messages({By(12, CBN_DROPDOWN), By(12, CBN_SELCHANGE), By(12, CBN_SELENDCANCEL),
                        By(12, CBN_CLOSEUP), By(12, CBN_KILLFOCUS), By(10, EN_SETFOCUS)}));
    EXPECT_TRUE(desk.Focus(12) && desk.Key(VK_F4) && desk.Key(VK_F4) && !desk.Control(12).open);
    EXPECT_EQ(TakeMessages(),
              Messages({By(10, EN_KILLFOCUS), By(12, CBN_SETFOCUS), By(12, CBN_DROPDOWN),
                        By(12, CBN_SELENDOK), By(12, CBN_CLOSEUP)}));
    desk.Escape();
    EXPECT_EQ(TakeMessages(), Messages({By(IDCANCEL, BN_CLICKED), By(12, CBN_KILLFOCUS)}));
  };
  EXPECT_EQ(Run({MakeControl(u"combobox", 12, u"", WS_TABSTOP, 0, 0, 50, 90), Edit(10)}, {steps}),
            IDCANCEL);
}

TEST_F(WindowTest, KeyboardFocusChecksARadioButtonAndNotifies) {
  const auto steps = [&](Desk& desk) {
    EXPECT_TRUE(desk.Tab() && desk.FocusedId() == 20 && desk.Control(20).checked);
    EXPECT_EQ(TakeMessages(),
              Messages({By(10, EN_SETFOCUS), By(10, EN_KILLFOCUS), By(20, BN_CLICKED)}));
    EXPECT_TRUE(desk.Tab() && desk.Tab(true));  // checked already
    EXPECT_EQ(TakeMessages(), Messages({By(10, EN_SETFOCUS), By(10, EN_KILLFOCUS)}));
  };
  Run({Edit(10), Button(20, BS_AUTORADIOBUTTON | WS_GROUP), Button(21, BS_AUTORADIOBUTTON)},
      {steps, Close()});
}

TEST_F(WindowTest, UpDownPositionIsBuddyNumberInRange) {
  // The range, the text of the buddy, and the position; 5 when the text is invalid.
  const std::tuple<int, int, const char16_t*, int> kCases[] = {
      {0, 100, u"42", 42},   {0, 100, u" +7", 7},
      {0, 100, u"100", 100}, {-9, 50, u"-9", -9},
      {100, 0, u"60", 60},   {0, 100, u"101", 5},
      {0, 100, u"", 5},      {0, 100, u"-", 5},
      {0, 100, u"4a", 5},    {0, 100, u"99999999999999999999", 5}};
  for (const DWORD writes : {UDS_SETBUDDYINT, DWORD{0}}) {
    const auto steps = [&](Desk&) {
      BOOL error = FALSE;
      const auto query = [&] {
        return Send(11, UDM_GETPOS32, 0, reinterpret_cast<LPARAM>(&error));
      };
      for (const auto& [low, high, text, position] : kCases) {
        Attach(low, high, 5);
        SetDlgItemTextW(window, 10, text);
        EXPECT_EQ(query(), writes != 0 ? position : 5);
        EXPECT_EQ(error, writes != 0 && position == 5) << position;
      }
    };
    RunUpDown(steps, writes);
  }
}

TEST_F(WindowTest, UpDownStepNotifiesThenMovesThenScrolls) {
  int refuse = 0;
  on = [&](UINT message, WPARAM, LPARAM) -> INT_PTR {
    SetWindowLongPtrW(window, DWLP_MSGRESULT, refuse);
    return message == WM_NOTIFY;
  };
  RunUpDown([&](Desk& desk) {
    const auto set = [&](int to) { return Send(11, UDM_SETPOS32, 0, to), desk.Text(10); };
    const auto spun = [&](int steps) { return desk.Spin(11, steps) ? desk.Text(10) : u"no"; };
    Attach(0, 10, 9);  // aligned it takes the buddy's edge once only
    Attach(-800, 800, 9);
    EXPECT_TRUE(desk.Control(10).rect.right == 54 && desk.Control(11).rect.right == 70);
    EXPECT_EQ(set(1234), u"800");
    TakeMessages();
    EXPECT_EQ(set(-3) + set(-3), u"-3-3");
    EXPECT_EQ(TakeMessages(), Messages({By(10, EN_UPDATE), By(10, EN_CHANGE)}));
    SetDlgItemTextW(window, 10, u"5x");
    EXPECT_EQ(set(-3), u"-3") << "the same position over a spoilt text restores it";
    SetDlgItemTextW(window, 10, u"8");
    desk.Focus(12);
    TakeMessages();
    EXPECT_EQ(spun(1), u"9");
    EXPECT_EQ(TakeMessages(), Messages({By(12, EN_KILLFOCUS), By(10, EN_SETFOCUS),
                                        By(8, UDN_DELTAPOS), By(10, EN_UPDATE), By(10, EN_CHANGE),
                                        By(9, WM_VSCROLL), By(9, WM_VSCROLL)}));
    refuse = 1;
    EXPECT_EQ(spun(-1), u"9");
    EXPECT_EQ(TakeMessages(), Messages({By(9, UDN_DELTAPOS), By(9, WM_VSCROLL)}));
    refuse = 0;
    EXPECT_EQ(spun(std::numeric_limits<int>::min()), u"-800");
    EXPECT_TRUE(desk.Key(VK_UP) && desk.Text(10) == u"-799");
    Send(11, UDM_SETRANGE32, 900, 0);
    EXPECT_TRUE(set(800) == u"800" && spun(1) == u"799") << "upside down";
    EnableWindow(Item(10), FALSE);
    EXPECT_EQ(spun(1), u"no");
  });
}

TEST_F(WindowTest, WmPaintComesAfterInput) {
  on = [&](UINT message, WPARAM, LPARAM lParam) -> INT_PTR {
    if (message == WM_CTLCOLORSTATIC) return reinterpret_cast<INT_PTR>(GetStockObject(BLACK_BRUSH));
    return message == WM_DRAWITEM &&
           Rectangle(reinterpret_cast<const DRAWITEMSTRUCT*>(lParam)->hDC, 0, 0, 9, 9);
  };
  const auto steps = [&](Desk& desk) {
    InvalidateRect(Item(30), nullptr, FALSE);
    desk.Type(11, u"a");
  };
  const auto painted = [&](Desk& desk) {
    EXPECT_TRUE(desk.Control(31).background == 0 && desk.Control(30).drawing.size() == 1);
    EXPECT_EQ(TakeMessages(), Messages({By(11, EN_SETFOCUS), By(30, WM_DRAWITEM), By(11, EN_UPDATE),
                                        By(11, EN_CHANGE), By(30, WM_DRAWITEM)}));
  };
  Run({MakeControl(u"static", 30, u"", SS_OWNERDRAW, 0, 0, 60, 18), Edit(11),
       MakeControl(u"static", 31, u"", 0, 0, 0, 9, 9)},
      {steps, painted, Close()});
}

TEST_F(WindowTest, DisplayListHoldsVisibleOperationsOnly) {
  const auto steps = [&](Desk&) {
    const HDC dc = GetDC(window);
    // The kinds of visible operations: 0 rectangle, 1 fill, 2 line, 4 text.
    const auto seen = [&](BOOL) {
      std::string kinds;
      for (const platform::DrawOp& op : platform::FindWindowOf(window)->drawing)
        kinds += std::to_string(static_cast<int>(op.kind));
      return kinds;
    };
    const auto fill = [&](RECT rect, int stock) {
      return FillRect(dc, &rect, static_cast<HBRUSH>(GetStockObject(stock)));
    };
    SetBkMode(dc, TRANSPARENT);
    for (int i = 0; i < 3; ++i) {
      fill({0, 0, 150, 150}, WHITE_BRUSH);
      LineTo(dc, 100, 4);
      TextOutW(dc, 2, 2, u"搬", 1);
      EXPECT_EQ(seen(TextOutW(dc, 2, 2, u"搬", 1)), "124");
    }
    fill({0, 0, 150, 150}, WHITE_BRUSH);
    Rectangle(dc, 10, 10, 40, 40);
    fill({20, 20, 150, 150}, BLACK_BRUSH);
    EXPECT_EQ(seen(fill({10, 10, 39, 40}, BLACK_BRUSH)), "1011") << "a column is left to be seen";
    EXPECT_EQ(seen(fill({10, 10, 40, 40}, WHITE_BRUSH)), "111");
    const HPEN pen = CreatePen(PS_SOLID, 1, 0);
    const HGDIOBJ old = SelectObject(dc, pen);
    EXPECT_FALSE(DeleteObject(pen)) << "selected";
    const int state = SaveDC(dc);
    SelectObject(dc, old);
    EXPECT_FALSE(DeleteObject(pen) || RestoreDC(dc, state + 1)) << "held by the saved state";
    EXPECT_TRUE(RestoreDC(dc, state) && SelectObject(dc, old) == pen && DeleteObject(pen));
    EXPECT_FALSE(DeleteObject(pen) || SelectObject(dc, pen)) << "stale";
    const HBITMAP picture = LoadBitmapW(module_, MAKEINTRESOURCEW(IDB_BACKGROUND));
    const HDC memory = CreateCompatibleDC(dc);
    EXPECT_FALSE(SelectObject(dc, picture) || DeleteDC(dc) || ReleaseDC(window, memory));
    EXPECT_TRUE(SelectObject(memory, picture) && !DeleteObject(picture));
    EXPECT_EQ(platform::LiveGdiObjects() + platform::LiveDcs(), 3);
    EXPECT_TRUE(DeleteDC(memory) && DeleteObject(picture) && ReleaseDC(window, dc));
    EXPECT_EQ(platform::LiveGdiObjects() + platform::LiveDcs(), 0);
  };
  Run({}, {steps, Close()});
}

}  // namespace
}  // namespace support
