// Windows and dialogs: who hears of the focus first, where Tab goes, what Enter presses, who can be
// reached, when is painted, and how everything ends.
#include "platform/desktop/windows/dialog_template.h"
#include "platform/system/resources.h"
#include "resources/resource.h"
#include "tests/desktop/window_fixture.h"

namespace support {
namespace {

TEST_F(WindowTest, TheLosingControlHearsFirstAndAHandlerThatMovesTheFocusOnWins) {
  on = [&](UINT message, WPARAM wParam, LPARAM) {
    if (message == WM_COMMAND && wParam == MAKEWPARAM(10, EN_KILLFOCUS)) {
      EXPECT_NE(GetFocus(), Item(10)) << "the gainer has it by then";
    }
    if (message == WM_COMMAND && wParam == MAKEWPARAM(11, EN_KILLFOCUS)) SetFocus(Item(10));
    return INT_PTR{0};
  };
  Run({Edit(10), Edit(11), Part(u"combobox", 12, u"", WS_TABSTOP, 0, 0, 60, 90), Button(IDOK)},
      {Told({{10, EN_SETFOCUS}, {0, WM_PAINT}}), Focus(11), Focus(11),
       Told({{10, EN_KILLFOCUS}, {11, EN_SETFOCUS}}),
       [&](Desk& desk) {
         EXPECT_FALSE(desk.Focus(12));
         EXPECT_EQ(desk.FocusedId(), 10);
         EXPECT_THAT(Take(), ElementsAre(std::pair{11, EN_KILLFOCUS}, std::pair{12, CBN_KILLFOCUS},
                                         std::pair{10, EN_SETFOCUS}));
       },
       Click(IDOK)});
  EXPECT_EQ(Take(), (Heard{{10, EN_KILLFOCUS}, {IDOK, BN_CLICKED}}))
      << "a button takes the focus before it notifies";
}

TEST_F(WindowTest, TabPassesWhatCannotBeUsedAndEntersAGroupAtItsCheckedButton) {
  init = [&] { CheckRadioButton(window, 20, 21, 21); };
  Run({Edit(10), Edit(11, WS_DISABLED | WS_TABSTOP), Edit(12, 0),
       Button(20, BS_AUTORADIOBUTTON | WS_GROUP),
       Part(u"button", 21, u"", BS_AUTORADIOBUTTON, 0, 0, 9, 9), Button(30, WS_GROUP)},
      {Tab(), ExpectFocus(21), Tab(), ExpectFocus(30), Tab(), ExpectFocus(10), Tab(true), Tab(true),
       ExpectFocus(21), Key(VK_UP), ExpectFocus(20), ExpectChecked({20}),
       ExpectChecked({21}, false),
       [](Desk& desk) {
         EXPECT_EQ(std::pair(desk.Control(20).tabStop, desk.Control(21).tabStop),
                   std::pair(true, false));
       },
       Close()});
}

TEST_F(WindowTest, EnterPressesTheDefaultButtonWhichFollowsTheDialogsOwnMovesAlone) {
  const auto isDefault = [](int id) {
    return [=](Desk& desk) { EXPECT_TRUE(desk.Control(id).defaultButton) << id; };
  };
  Run({Edit(10), Button(20), Button(21, BS_DEFPUSHBUTTON), Button(IDCANCEL)},
      {Enter(), Focus(20), isDefault(20), Enter(), Focus(10), isDefault(21),
       [&](Desk&) { SetFocus(Item(20)); }, isDefault(21), Enter(),
       [&](Desk&) {
         SendMessageW(window, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Item(20)), TRUE);
       },
       isDefault(20), [&](Desk&) { SendMessageW(window, WM_NEXTDLGCTL, TRUE, FALSE); },
       ExpectFocus(10), isDefault(21),
       [&](Desk& desk) {
         std::vector<int> pressed;
         for (const auto& [id, code] : Take())
           if (id >= 20 && code == BN_CLICKED) pressed.push_back(id);
         EXPECT_THAT(pressed, ElementsAre(21, 20, 21));
         EnableWindow(Item(21), FALSE);
         EnableWindow(Item(IDCANCEL), FALSE);
         EXPECT_FALSE(desk.Enter());
         EXPECT_FALSE(desk.Escape());
         desk.Close();  // goes through the cancel button, which is disabled
         EnableWindow(Item(IDCANCEL), TRUE);
       },
       Escape()});
  EXPECT_EQ(Run({Edit(10)}, {Enter()}), IDOK) << "no default button: OK";
}

TEST_F(WindowTest, WhatIsDisabledKeepsTheFocusAndTheKeyboardIsDead) {
  Run({Edit(10), Edit(11), Button(20)},
      {[&](Desk& desk) {
         EXPECT_EQ(EnableWindow(Item(10), FALSE), FALSE);
         EXPECT_EQ(EnableWindow(Item(10), FALSE), TRUE);
         EXPECT_EQ(desk.FocusedId(), 10);
         EXPECT_FALSE(desk.Tab() || desk.Enter() || desk.Escape() || desk.AccessKey(u'P'));
         EXPECT_EQ(SetFocus(Item(10)), nullptr);
         EXPECT_FALSE(desk.Focus(10) || desk.Type(10, u"x") || desk.Focus(99));
         EXPECT_TRUE(desk.Focus(11));
         platform::SetVisible(Item(11), false);
         EXPECT_NE(desk.FocusedId(), 11);
         EXPECT_FALSE(desk.Focus(11));
         SetWindowPos(Item(20), nullptr, 0, 0, 0, 0, SWP_NOMOVE);
         EXPECT_FALSE(desk.Click(20)) << "shrunk to nothing";
       },
       Close()});
}

TEST_F(WindowTest, PaintingIsWhatIsLeftToDo) {
  init = [&] { PostMessageW(window, WM_DEVMODECHANGE, 0, 0); };
  on = [&](UINT message, WPARAM, LPARAM lParam) -> INT_PTR {
    if (message == WM_PAINT) PostMessageW(window, WM_DEVMODECHANGE, 0, 0);
    if (message == WM_CTLCOLORSTATIC)
      return GetDlgCtrlID(reinterpret_cast<HWND>(lParam)) == 32
                 ? reinterpret_cast<INT_PTR>(GetStockObject(BLACK_BRUSH))
                 : 0;
    if (message != WM_DRAWITEM) return 0;
    const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
    EXPECT_EQ(std::tuple(item.hwndItem, item.rcItem.right, item.CtlType),
              std::tuple(Item(30), 60, ODT_STATIC));
    return Rectangle(item.hDC, 0, 0, 9, 9);
  };
  Run({Part(u"static", 30, u"", SS_OWNERDRAW, 0, 0, 60, 18),
       Part(u"static", 31, u"", 0, 0, 0, 9, 9), Part(u"static", 32, u"", 0, 0, 0, 9, 9), Edit(11)},
      {Told({{11, EN_SETFOCUS},
             {0, WM_DEVMODECHANGE},
             {0, WM_PAINT},
             {0, WM_DEVMODECHANGE},
             {30, WM_DRAWITEM}}),
       [&](Desk& desk) {
         EXPECT_EQ(desk.Control(31).background, 0xFFFFFFFFu);
         EXPECT_EQ(desk.Control(32).background, 0u);
         EXPECT_EQ(desk.Control(30).drawing.size(), 1u);
         InvalidateRect(Item(30), nullptr, FALSE);
         desk.Type(11, u"ab");
         EXPECT_EQ(Take(),
                   (Heard{{11, EN_UPDATE}, {11, EN_CHANGE}, {11, EN_UPDATE}, {11, EN_CHANGE}}))
             << "not between two keys";
       },
       Told({{30, WM_DRAWITEM}}), Close()});
}

TEST_F(WindowTest, BelowAModalWindowNothingCanBeReached) {
  on = [&](UINT message, WPARAM wParam, LPARAM) -> INT_PTR {
    if (message != WM_COMMAND || wParam != MAKEWPARAM(20, BN_CLICKED)) return 0;
    EXPECT_EQ(MessageBoxW(Item(20), u"Sure?", u"Ask", MB_OKCANCEL | MB_DEFBUTTON2), IDCANCEL);
    EXPECT_TRUE(IsWindowEnabled(window));
    EXPECT_EQ(GetFocus(), Item(20)) << "it comes back";
    return TRUE;
  };
  Run({Edit(10), Button(20)},
      {Click(20), ExpectFocus(IDCANCEL),
       [&](Desk& desk) {
         ASSERT_EQ(desk.Windows().size(), 2u);
         EXPECT_FALSE(desk.Windows()[0].enabled);
         EXPECT_FALSE(desk.Focus(10) || desk.Has(20));
         EXPECT_EQ(SetFocus(Item(10)), nullptr);
         EXPECT_THROW(desk.Text(10), std::out_of_range);
       },
       CloseMessage(u"Sure?", MB_OKCANCEL | MB_DEFBUTTON2, u"Ask", IDCANCEL), Escape()});
  // Esc and the close box where there is a cancel button, or OK alone; else they do nothing.
  EXPECT_EQ(Follow({Escape()}, [] { return MessageBoxW(nullptr, u"", u"", MB_OK); }), IDOK);
  EXPECT_EQ(
      Follow({[](Desk& desk) { desk.Close(); }, [](Desk& desk) { desk.Escape(); }, Click(IDYES)},
             [] { return MessageBoxW(nullptr, u"", u"", MB_YESNO); }),
      IDYES);
  for (int i = 0; i < 150; ++i) MessageBoxW(nullptr, u"", u"nobody there", MB_YESNO);
  EXPECT_EQ(desk().History().size(), 100u);
}

INT_PTR CALLBACK Stubborn(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG && lParam == 3) EndDialog(dialog, 3);
  if (message == WM_INITDIALOG && lParam == 5) SetFocus(GetDlgItem(dialog, IDCANCEL));
  if (message == WM_CLOSE && lParam == 0) MessageBoxW(dialog, u"Never", u"", MB_OK);
  if (message == WM_COMMAND && LOWORD(wParam) == IDCANCEL) EndDialog(dialog, 7);
  return message == WM_CLOSE;
}

TEST_F(WindowTest, DialogsEndAsToldAndWithNobodyThereAsCancelled) {
  const auto show = [&](LPARAM param, HWND owner = nullptr, int id = IDD_PAPER_REFERENCE) {
    return DialogBoxParamW(module_, MAKEINTRESOURCEW(id), owner, Stubborn, param);
  };
  EXPECT_EQ(show(3), 3) << "ended while it opened";
  EXPECT_EQ(Follow({ExpectFocus(IDCANCEL), Escape()}, [&] { return show(5); }), 7)
      << "the focus that the procedure chose stays";
  platform::ScriptedUser throwing({[](Desk& desk) { desk.Text(99); }});
  desk().Attach(&throwing);
  EXPECT_EQ(show(1), IDCANCEL) << "even one that will not close, and the boxes it opens";
  desk().Attach(nullptr);
  EXPECT_EQ(throwing.Problem(), "step 1: no control 99 in the window on top");
  EXPECT_EQ(desk().History().back().text, u"Never");
  EXPECT_EQ(show(1, reinterpret_cast<HWND>(0x1234)), 0) << "an owner that is no window";
  EXPECT_EQ(show(1, nullptr, 9999), -1);
  for (int n = 1; n <= 4; ++n) {
    machine().faults.FailNth(platform::Fault::kWindow, n);
    EXPECT_EQ(show(1), -1) << n;
  }
  EXPECT_TRUE(desk().Windows().empty());
}

TEST_F(WindowTest, AShortTemplateIsRefusedAtEveryLength) {
  const auto bytes =
      platform::FindResourceBytes(module_, platform::kResourceDialog, IDD_PAPER_REGISTER);
  for (size_t size = 0; size <= bytes.size(); ++size) {
    // A copy of exactly that size, so that the sanitizer sees a read past it.
    const std::vector<std::byte> cut(bytes.begin(), bytes.begin() + static_cast<ptrdiff_t>(size));
    platform::DialogTemplate dialog;
    EXPECT_EQ(platform::ParseDialogTemplate(cut.data(), cut.size(), dialog), size == bytes.size());
  }
}

TEST_F(WindowTest, ABroadcastReachesEveryWindowAndAStaleHandleNone) {
  Run({Edit(10)}, {Told({{10, EN_SETFOCUS}, {0, WM_PAINT}}),
                   [&](Desk&) {
                     SendMessageTimeoutW(HWND_BROADCAST, WM_DEVMODECHANGE, 0,
                                         reinterpret_cast<LPARAM>(u"Printer"), SMTO_ABORTIFHUNG,
                                         300, nullptr);
                   },
                   Told({{0, WM_DEVMODECHANGE}}), Close()});
  ASSERT_EQ(machine().Broadcasts().size(), 1u);
  EXPECT_EQ(machine().Broadcasts()[0].text, u"Printer");
  RECT rect;
  EXPECT_FALSE(SetWindowTextW(window, u"x") || GetClientRect(window, &rect) ||
               EndDialog(window, 1) || PostMessageW(window, WM_CLOSE, 0, 0));
  EXPECT_EQ(GetLastError(), ERROR_INVALID_WINDOW_HANDLE);
}

}  // namespace
}  // namespace support
