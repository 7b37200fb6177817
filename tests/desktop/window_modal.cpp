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
    const DLGPROC stubborn = [](HWND window, UINT message, WPARAM, LPARAM) -> INT_PTR {
      if (message == WM_CLOSE) MessageBoxW(window, u"Never", u"", MB_OK);
      return TRUE;
    };
    EXPECT_EQ(DialogBoxIndirectParamW(nullptr, builder.Template(), nullptr, stubborn, 0), IDCANCEL);
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
