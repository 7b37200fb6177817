// Modal windows: message boxes, who can be reached, who is asked when, and how everything ends.
#include "desktop/window_fixture.h"

namespace test {
namespace {

using ::testing::ElementsAre;

struct BoxCase {
  UINT style;
  std::vector<int> ids;
  int focused;
  int escape;  // what Esc answers; 0: the box stays
  int nobody;  // what it answers when nobody is there
};

TEST_F(WindowTest, MessageBoxesOfferAndAnswerTheirButtons) {
  const BoxCase kCases[] = {
      {MB_OK | MB_ICONHAND, {IDOK}, IDOK, IDOK, IDOK},
      {MB_OKCANCEL | MB_DEFBUTTON2, {IDOK, IDCANCEL}, IDCANCEL, IDCANCEL, IDCANCEL},
      {MB_ABORTRETRYIGNORE, {IDABORT, IDRETRY, IDIGNORE}, IDABORT, 0, IDABORT},
      {MB_YESNOCANCEL | MB_DEFBUTTON3, {IDYES, IDNO, IDCANCEL}, IDCANCEL, IDCANCEL, IDCANCEL},
      {MB_YESNO, {IDYES, IDNO}, IDYES, 0, IDNO},
      {MB_RETRYCANCEL, {IDRETRY, IDCANCEL}, IDRETRY, IDCANCEL, IDCANCEL},
  };
  for (const BoxCase& one : kCases) {
    SCOPED_TRACE(one.style);
    machine->desk().Attach(nullptr);
    EXPECT_EQ(MessageBoxW(nullptr, u"text", u"title", one.style), one.nobody);
    for (int id : one.ids) {
      ScriptedUser user({[&](Desk& desk) {
        EXPECT_TRUE(desk.IsMessageBox());
        EXPECT_EQ(desk.MessageText(), u"text");
        EXPECT_EQ(desk.Title(), u"title");
        EXPECT_EQ(desk.MessageStyle(), one.style);
        EXPECT_EQ(desk.FocusedId(), one.focused);
        if (one.escape == 0) desk.Escape();
        if (one.escape == 0) desk.Close();
        EXPECT_TRUE(desk.Click(id));
      }});
      machine->desk().Attach(&user);
      EXPECT_EQ(MessageBoxW(nullptr, u"text", u"title", one.style), id);
      EXPECT_EQ(user.Problem(), "");
    }
    if (one.escape == 0) continue;
    ScriptedUser user({[](Desk& desk) { desk.Escape(); }, [](Desk& desk) { desk.Close(); }});
    machine->desk().Attach(&user);
    EXPECT_EQ(MessageBoxW(nullptr, u"text", u"title", one.style), one.escape);
    EXPECT_EQ(MessageBoxW(nullptr, u"text", u"title", one.style), one.escape);
  }
  EXPECT_EQ(machine->desk().History().back().caption, u"title");
}

TEST_F(WindowTest, BelowAModalWindowNothingCanBeReached) {
  DialogBuilder builder;
  builder.Edit(10).Button(20);
  on = [&](UINT message, WPARAM wParam, LPARAM) -> INT_PTR {
    if (message != WM_COMMAND || wParam != MAKEWPARAM(20, BN_CLICKED)) return 0;
    Take();
    EXPECT_EQ(MessageBoxW(Item(20), u"Sure?", u"Ask", MB_OKCANCEL), IDCANCEL);
    EXPECT_TRUE(IsWindowEnabled(dialog));
    EXPECT_EQ(GetFocus(), Item(20));
    return TRUE;
  };
  Run(builder, {[&](Desk& desk) { desk.Click(20); },
                [&](Desk& desk) {
                  EXPECT_EQ(desk.ModalDepth(), 2);
                  EXPECT_FALSE(IsWindowEnabled(dialog));
                  ASSERT_EQ(desk.Windows().size(), 2u);
                  EXPECT_FALSE(desk.Windows()[0].enabled);
                  EXPECT_FALSE(desk.Focus(10));
                  EXPECT_FALSE(desk.Has(20));
                  EXPECT_EQ(SetFocus(Item(10)), nullptr);
                  EXPECT_THROW(desk.Text(10), std::out_of_range);
                  desk.Click(IDCANCEL);
                },
                [&](Desk& desk) {
                  EXPECT_EQ(desk.ModalDepth(), 1);
                  desk.Escape();
                }});
}

TEST_F(WindowTest, TheOwnerIsDisabledBeforeTheDialogIsInitialised) {
  DialogBuilder outer;
  outer.Button(20);
  DialogBuilder inner;
  inner.Edit(10);
  static HWND owner;
  static bool ownerEnabled;
  struct Inner {
    static INT_PTR CALLBACK Proc(HWND window, UINT message, WPARAM, LPARAM) {
      if (message != WM_INITDIALOG) return FALSE;
      ownerEnabled = IsWindowEnabled(owner);
      EndDialog(window, 3);
      ownerEnabled = ownerEnabled || !IsWindowEnabled(owner);
      return TRUE;
    }
  };
  Run(outer, {[&](Desk& desk) {
        owner = dialog;
        ownerEnabled = true;
        EXPECT_EQ(DialogBoxIndirectParamW(nullptr, inner.Template(), Item(20), Inner::Proc, 0), 3);
        EXPECT_FALSE(ownerEnabled);
        // One that was disabled before stays so.
        EnableWindow(dialog, FALSE);
        EXPECT_EQ(DialogBoxIndirectParamW(nullptr, inner.Template(), Item(20), Inner::Proc, 0), 3);
        EXPECT_FALSE(IsWindowEnabled(dialog));
        EXPECT_FALSE(desk.Close());
        EnableWindow(dialog, TRUE);
        desk.Close();
      }});
}

TEST_F(WindowTest, TheFocusLeavesWithTheWindowAndComesBack) {
  DialogBuilder builder;
  builder.Edit(10).Edit(11);
  on = [&](UINT message, WPARAM wParam, LPARAM) -> INT_PTR {
    if (message != WM_COMMAND || wParam != MAKEWPARAM(11, EN_CHANGE)) return 0;
    MessageBoxW(dialog, u"No", u"", MB_OK);
    Take();
    SetFocus(Item(10));
    return TRUE;
  };
  Run(builder, {[&](Desk& desk) {
                  desk.Focus(11);
                  Take();
                  // The rest of what was being typed is not put into the other field.
                  EXPECT_FALSE(desk.Type(11, u"ab"));
                  EXPECT_EQ(desk.FocusedId(), 10);
                  EXPECT_EQ(desk.Text(11), u"a");
                  EXPECT_THAT(Take(), ElementsAre("11 EN_KILLFOCUS", "10 EN_SETFOCUS"));
                },
                [&](Desk& desk) {
                  EXPECT_THAT(Take(),
                              ElementsAre("11 EN_UPDATE", "11 EN_CHANGE", "11 EN_KILLFOCUS"));
                  desk.Enter();
                  EXPECT_THAT(Take(), ElementsAre("11 EN_SETFOCUS"));
                },
                [&](Desk& desk) { desk.Close(); }});
}

TEST_F(WindowTest, PostedMessagesThenPaintingThenTheUser) {
  DialogBuilder builder;
  builder.Edit(10).Add(u"static", 30, SS_OWNERDRAW).Add(u"static", 31, SS_OWNERDRAW | WS_VISIBLE);
  logPaint = true;
  RECT drawn = {};
  on = [&](UINT message, WPARAM, LPARAM lParam) -> INT_PTR {
    if (message != WM_DRAWITEM) return 0;
    const auto* item = reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
    drawn = item->rcItem;
    EXPECT_NE(item->hDC, nullptr);
    EXPECT_EQ(item->hwndItem, Item(30));
    EXPECT_EQ(item->CtlType, ODT_STATIC);
    return TRUE;
  };
  init = [&] { PostMessageW(dialog, WM_APP, 0, 0); };
  Run(builder, {[&](Desk&) {
                  EXPECT_THAT(Take(),
                              ElementsAre("INIT", "10 EN_SETFOCUS", "POSTED", "PAINT", "DRAW 30"));
                  EXPECT_EQ(drawn.right, 60);
                  EXPECT_EQ(drawn.bottom, 18);
                },
                [&](Desk&) {
                  EXPECT_TRUE(Take().empty());
                  InvalidateRect(Item(30), nullptr, FALSE);
                },
                [&](Desk&) {
                  EXPECT_THAT(Take(), ElementsAre("DRAW 30"));
                  InvalidateRect(dialog, nullptr, TRUE);
                },
                [&](Desk&) {
                  EXPECT_THAT(Take(), ElementsAre("PAINT", "DRAW 30"));
                  Send(30, WM_SETREDRAW, FALSE);
                  InvalidateRect(Item(30), nullptr, TRUE);
                  ShowWindow(Item(31), SW_HIDE);
                },
                [&](Desk&) {
                  EXPECT_TRUE(Take().empty());
                  Send(30, WM_SETREDRAW, TRUE);
                  UpdateWindow(Item(30));
                  EXPECT_THAT(Take(), ElementsAre("DRAW 30"));
                },
                [&](Desk& desk) { desk.Close(); }});
}

TEST_F(WindowTest, TextsAskTheDialogForTheirBackground) {
  DialogBuilder builder;
  builder.Edit(10).Add(u"static", 30, SS_CENTER, u"White").Add(u"static", 31, 0, u"Plain");
  builder.Edit(11, ES_READONLY);
  std::vector<int> asked;
  on = [&](UINT message, WPARAM, LPARAM lParam) -> INT_PTR {
    if (message != WM_CTLCOLORSTATIC) return 0;
    asked.push_back(GetDlgCtrlID(reinterpret_cast<HWND>(lParam)));
    return asked.back() == 30 ? reinterpret_cast<INT_PTR>(GetStockObject(WHITE_BRUSH)) : 0;
  };
  Run(builder, {[&](Desk& desk) {
                  EXPECT_THAT(asked, ElementsAre(30, 31, 11));
                  EXPECT_EQ(desk.Control(30).background, 0xFFFFFFu);
                  EXPECT_TRUE(desk.Control(30).centred);
                  EXPECT_EQ(desk.Control(31).background, 0xFFFFFFFFu);
                  asked.clear();
                  EnableWindow(Item(10), FALSE);
                },
                [&](Desk& desk) {
                  EXPECT_THAT(asked, ElementsAre(10));
                  desk.Close();
                }});
}

TEST_F(WindowTest, TrackbarsMoveInTheirRangeAndSaySo) {
  DialogBuilder builder;
  builder.Edit(10).Add(TRACKBAR_CLASSW, 40, WS_TABSTOP);
  Run(builder, {[&](Desk& desk) {
        Send(40, TBM_SETRANGE, TRUE, MAKELPARAM(static_cast<WORD>(-100), 100));
        Send(40, TBM_SETPOS, TRUE, 500);
        EXPECT_EQ(Send(40, TBM_GETPOS), 100);
        Take();
        EXPECT_TRUE(desk.Slide(40, -20));
        EXPECT_THAT(Take(),
                    ElementsAre("10 EN_KILLFOCUS", "SCROLL 5 -20", "SCROLL 4 -20", "SCROLL 8 0"));
        EXPECT_EQ(desk.Control(40).position, -20);
        desk.Close();
      }});
}

TEST_F(WindowTest, ABroadcastIsRecordedAndReachesEveryWindow) {
  DialogBuilder builder;
  builder.Edit(10);
  int heard = 0;
  on = [&](UINT message, WPARAM, LPARAM) {
    heard += message == WM_DEVMODECHANGE;
    return INT_PTR{0};
  };
  Run(builder, {[&](Desk& desk) {
        EXPECT_NE(
            SendMessageTimeoutW(HWND_BROADCAST, WM_DEVMODECHANGE, 0,
                                reinterpret_cast<LPARAM>(u"Printer"), SMTO_NORMAL, 300, nullptr),
            0);
        desk.Close();
      }});
  EXPECT_EQ(heard, 1);
  ASSERT_EQ(machine->Broadcasts().size(), 1u);
  EXPECT_EQ(machine->Broadcasts()[0].text, u"Printer");
  EXPECT_EQ(machine->Broadcasts()[0].timeout, 300u);
}

TEST_F(WindowTest, NobodyThereCancels) {
  DialogBuilder builder;
  builder.Button(20);
  struct Case {
    ScriptedUser user;
    const char* problem;
  };
  Case cases[] = {
      {ScriptedUser(Steps{}), "the script ended while a window was open"},
      {ScriptedUser(Steps{[](Desk& desk) { desk.Text(99); }}),
       "step 1: no control 99 in the window on top"},
  };
  for (Case& one : cases) {
    machine->desk().Attach(&one.user);
    // Even a dialog that refuses to close is gone, and so are the boxes it opens on its way.
    struct Stubborn {
      static INT_PTR CALLBACK Proc(HWND window, UINT message, WPARAM, LPARAM) {
        if (message == WM_CLOSE) MessageBoxW(window, u"Never", u"", MB_OK);
        return TRUE;
      }
    };
    EXPECT_EQ(DialogBoxIndirectParamW(nullptr, builder.Template(), nullptr, Stubborn::Proc, 0),
              IDCANCEL);
    EXPECT_EQ(one.user.Problem(), one.problem);
    EXPECT_TRUE(machine->desk().Windows().empty());
    EXPECT_EQ(machine->desk().History().back().text, u"Never");
    machine->desk().ClearShown();
  }
}

TEST_F(WindowTest, AnEndedDialogIsEndedAndItsHandlesAreStale) {
  DialogBuilder builder;
  builder.Edit(10);
  HWND edit = nullptr;
  init = [&] {
    edit = Item(10);
    SetWindowLongPtrW(dialog, DWLP_USER, 5);
    EXPECT_EQ(GetWindowLongPtrW(dialog, DWLP_USER), 5);
    EndDialog(dialog, 42);
  };
  EXPECT_EQ(Run(builder, {}), 42);
  EXPECT_FALSE(IsWindow(dialog));
  EXPECT_FALSE(SetWindowTextW(edit, u"x"));
  EXPECT_EQ(SendMessageW(edit, EM_LIMITTEXT, 3, 0), 0);
  EXPECT_EQ(GetLastError(), ERROR_INVALID_WINDOW_HANDLE);
  EXPECT_FALSE(PostMessageW(edit, WM_APP, 0, 0));
  EXPECT_FALSE(EndDialog(dialog, 1));
  EXPECT_FALSE(DestroyWindow(dialog));
  RECT rect = {};
  EXPECT_FALSE(GetClientRect(edit, &rect));
  EXPECT_EQ(GetWindowLongPtrW(dialog, DWLP_USER), 0);
}

TEST_F(WindowTest, ADialogWithoutAllItsWindowsIsNone) {
  DialogBuilder builder;
  builder.Edit(10).Button(20).Edit(11);
  for (int n = 1; n <= 4; ++n) {
    machine->faults.FailNth(platform::Fault::kWindow, n);
    EXPECT_EQ(Run(builder, {}), -1) << n;
    EXPECT_THAT(Take(), ElementsAre());
  }
  machine->faults.FailNth(platform::Fault::kWindow, 1);
  EXPECT_EQ(MessageBoxW(nullptr, u"", u"", MB_OK), 0);
  machine->faults.Clear();
  DialogBuilder unknown;
  unknown.Add(u"NoSuchClass", 10);
  EXPECT_EQ(Run(unknown, {}), -1);
}

}  // namespace
}  // namespace test
