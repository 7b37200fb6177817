// Focus and keys: who hears of it first, where Tab goes, what Enter, Esc and access keys press.
#include "desktop/window_fixture.h"

namespace test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST_F(WindowTest, TheLosingControlHearsFirst) {
  DialogBuilder builder;
  builder.Edit(10).Edit(11).Add(u"combobox", 12, CBS_DROPDOWNLIST | WS_TABSTOP);
  builder.Button(13, BS_NOTIFY).Button(14).Add(u"listbox", 15, LBS_NOTIFY | WS_TABSTOP);
  builder.Add(u"listbox", 16, WS_TABSTOP).Button(IDOK);
  init = [&] { EXPECT_EQ(GetFocus(), nullptr); };
  // While the loser is told, the gainer is already what GetFocus answers.
  on = [&](UINT message, WPARAM wParam, LPARAM) {
    if (message == WM_COMMAND && wParam == MAKEWPARAM(10, EN_KILLFOCUS)) {
      EXPECT_EQ(GetFocus(), Item(11));
    }
    return INT_PTR{0};
  };
  Run(builder, {
                   [&](Desk&) { EXPECT_THAT(Take(), ElementsAre("INIT", "10 EN_SETFOCUS")); },
                   [&](Desk& desk) {
                     EXPECT_TRUE(desk.Focus(11));
                     EXPECT_THAT(Take(), ElementsAre("10 EN_KILLFOCUS", "11 EN_SETFOCUS"));
                     EXPECT_TRUE(desk.Focus(11));
                     EXPECT_THAT(Take(), IsEmpty());
                     desk.Focus(12);
                     EXPECT_THAT(Take(), ElementsAre("11 EN_KILLFOCUS", "12 CBN_SETFOCUS"));
                     desk.Focus(13);
                     EXPECT_THAT(Take(), ElementsAre("12 CBN_KILLFOCUS", "13 BN_SETFOCUS"));
                     desk.Focus(14);
                     EXPECT_THAT(Take(), ElementsAre("13 BN_KILLFOCUS"));
                     desk.Focus(15);
                     EXPECT_THAT(Take(), ElementsAre("15 LBN_SETFOCUS"));
                     desk.Focus(16);
                     EXPECT_THAT(Take(), ElementsAre("15 LBN_KILLFOCUS"));
                   },
                   [&](Desk& desk) {
                     // A button that is clicked takes the focus before it notifies.
                     desk.Focus(11);
                     Take();
                     desk.Click(IDOK);
                     EXPECT_THAT(Take(), ElementsAre("11 EN_KILLFOCUS", "1 BN_CLICKED"));
                   },
               });
}

TEST_F(WindowTest, AHandlerThatMovesTheFocusOnWins) {
  DialogBuilder builder;
  builder.Edit(10).Edit(11).Edit(12);
  on = [&](UINT message, WPARAM wParam, LPARAM) {
    if (message == WM_COMMAND && wParam == MAKEWPARAM(10, EN_KILLFOCUS)) SetFocus(Item(12));
    return INT_PTR{0};
  };
  Run(builder, {[&](Desk& desk) {
        Take();
        EXPECT_FALSE(desk.Focus(11));
        EXPECT_EQ(desk.FocusedId(), 12);
        EXPECT_THAT(Take(), ElementsAre("10 EN_KILLFOCUS", "11 EN_KILLFOCUS", "12 EN_SETFOCUS"));
        desk.Close();
      }});
}

TEST_F(WindowTest, TheFirstFocusIsTheDialogsChoice) {
  DialogBuilder builder;
  builder.Add(u"static", 9, 0, u"Label").Edit(10, WS_DISABLED).Edit(11).Edit(12);
  on = [&](UINT message, WPARAM wParam, LPARAM) {
    if (message != WM_INITDIALOG) return INT_PTR{0};
    EXPECT_EQ(reinterpret_cast<HWND>(wParam), Item(11));
    return INT_PTR{0};
  };
  Run(builder, {[&](Desk& desk) {
        EXPECT_EQ(desk.FocusedId(), 11);
        desk.Close();
      }});
  // A procedure that sets the focus itself and answers FALSE keeps it.
  struct Own {
    static INT_PTR CALLBACK Proc(HWND window, UINT message, WPARAM wParam, LPARAM) {
      if (message == WM_INITDIALOG) SetFocus(GetDlgItem(window, 12));
      if (message == WM_COMMAND && LOWORD(wParam) == IDCANCEL) EndDialog(window, 7);
      return FALSE;
    }
  };
  ScriptedUser user({[](Desk& desk) {
    EXPECT_EQ(desk.FocusedId(), 12);
    desk.Escape();
  }});
  machine->desk().Attach(&user);
  EXPECT_EQ(DialogBoxIndirectParamW(nullptr, builder.Template(), nullptr, Own::Proc, 0), 7);
}

TEST_F(WindowTest, TabPassesWhatCannotBeUsedAndEntersAGroupAtItsCheckedButton) {
  DialogBuilder builder;
  builder.Edit(10).Edit(11, WS_DISABLED).Edit(12, WS_VISIBLE).Add(u"edit", 13);
  builder.Button(20, BS_AUTORADIOBUTTON | WS_GROUP).Add(u"button", 21, BS_AUTORADIOBUTTON);
  builder.Button(30, BS_PUSHBUTTON | WS_GROUP);
  init = [&] { CheckRadioButton(dialog, 20, 21, 21); };
  Run(builder, {[&](Desk& desk) {
        std::vector<int> order;
        for (int i = 0; i < 4; ++i) {
          desk.Tab();
          order.push_back(desk.FocusedId());
        }
        EXPECT_THAT(order, ElementsAre(21, 30, 10, 21));
        desk.Tab(true);
        EXPECT_EQ(desk.FocusedId(), 10);
        // Arrow keys move and check inside the group.
        desk.Focus(21);
        desk.Key(VK_UP);
        EXPECT_TRUE(desk.Control(20).checked);
        EXPECT_FALSE(desk.Control(21).checked);
        EXPECT_EQ(desk.FocusedId(), 20);
        desk.Close();
      }});
}

TEST_F(WindowTest, EnterPressesTheFocusedButtonElseTheDefaultOne) {
  DialogBuilder builder;
  builder.Edit(10).Button(20).Button(21, BS_DEFPUSHBUTTON).Button(IDCANCEL);
  Run(builder, {[&](Desk& desk) {
                  Take();
                  EXPECT_TRUE(desk.Control(21).defaultButton);
                  desk.Enter();
                  EXPECT_THAT(Take(), ElementsAre("21 BN_CLICKED"));
                  desk.Focus(20);
                  EXPECT_TRUE(desk.Control(20).defaultButton);
                  EXPECT_FALSE(desk.Control(21).defaultButton);
                  Take();
                  desk.Enter();
                  EXPECT_THAT(Take(), ElementsAre("20 BN_CLICKED"));
                  desk.Focus(10);
                  EnableWindow(Item(21), FALSE);
                  Take();
                  EXPECT_FALSE(desk.Enter());
                  EXPECT_THAT(Take(), IsEmpty());
                  SendMessageW(dialog, DM_SETDEFID, 20, 0);
                  desk.Enter();
                  EXPECT_THAT(Take(), ElementsAre("20 BN_CLICKED"));
                  EnableWindow(Item(IDCANCEL), FALSE);
                  EXPECT_FALSE(desk.Escape());
                  desk.Close();  // goes through the cancel button, which is disabled
                  EnableWindow(Item(IDCANCEL), TRUE);
                },
                [&](Desk& desk) {
                  Take();
                  desk.Escape();
                  EXPECT_THAT(Take(), ElementsAre("2 BN_CLICKED", "10 EN_KILLFOCUS"));
                }});
}

TEST_F(WindowTest, OnlyTheDialogsOwnWayMovesTheDefaultButtonAlong) {
  DialogBuilder builder;
  builder.Edit(10).Button(20).Button(21, BS_DEFPUSHBUTTON);
  Run(builder, {[&](Desk& desk) {
        SetFocus(Item(20));
        EXPECT_TRUE(desk.Control(21).defaultButton) << "a bare SetFocus leaves it";
        Take();
        desk.Enter();
        EXPECT_THAT(Take(), ElementsAre("21 BN_CLICKED"));
        SendMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Item(20)), TRUE);
        EXPECT_TRUE(desk.Control(20).defaultButton);
        SendMessageW(dialog, WM_NEXTDLGCTL, TRUE, FALSE);
        EXPECT_EQ(desk.FocusedId(), 10);
        EXPECT_TRUE(desk.Control(21).defaultButton);
        desk.Close();
      }});
}

TEST_F(WindowTest, WithoutADefaultButtonEnterIsOk) {
  DialogBuilder builder;
  builder.Edit(10);
  EXPECT_EQ(Run(builder, {[](Desk& desk) { desk.Enter(); }}), IDOK);
}

TEST_F(WindowTest, AccessKeysPressButtonsAndFollowLabels) {
  DialogBuilder builder;
  builder.Edit(10).Add(u"static", 9, 0, u"幅(&W):").Edit(11);
  builder.Button(20, BS_PUSHBUTTON, u"A && &b").Button(21, BS_AUTOCHECKBOX, u"&Check");
  builder.Add(u"static", 8, SS_NOPREFIX, u"&Quoted").Edit(12);
  builder.Button(22, BS_PUSHBUTTON | WS_DISABLED, u"&Dead");
  Run(builder, {[&](Desk& desk) {
        EXPECT_TRUE(desk.AccessKey(u'w'));
        EXPECT_EQ(desk.FocusedId(), 11);
        Take();
        EXPECT_TRUE(desk.AccessKey(u'B'));
        EXPECT_THAT(Take(), ElementsAre("11 EN_KILLFOCUS", "20 BN_CLICKED"));
        EXPECT_TRUE(desk.AccessKey(u'c'));
        EXPECT_TRUE(desk.Control(21).checked);
        EXPECT_FALSE(desk.AccessKey(u'q'));
        EXPECT_FALSE(desk.AccessKey(u'd'));
        desk.Close();
      }});
}

TEST_F(WindowTest, ADisabledOrHiddenControlLosesAndRefusesTheFocus) {
  DialogBuilder builder;
  builder.Edit(10).Edit(11).Button(20);
  Run(builder, {[&](Desk& desk) {
        Take();
        EXPECT_EQ(EnableWindow(Item(10), FALSE), FALSE);
        EXPECT_EQ(EnableWindow(Item(10), FALSE), TRUE);
        // The focus stays on what is disabled, and the keyboard is dead until a mouse moves it.
        EXPECT_EQ(desk.FocusedId(), 10);
        EXPECT_THAT(Take(), IsEmpty());
        EXPECT_FALSE(desk.Tab());
        EXPECT_FALSE(desk.Enter());
        EXPECT_FALSE(desk.Escape());
        EXPECT_EQ(SetFocus(Item(10)), nullptr);
        EXPECT_FALSE(desk.Focus(10));
        desk.Focus(11);
        ShowWindow(Item(11), SW_HIDE);
        EXPECT_NE(desk.FocusedId(), 11);
        EXPECT_FALSE(desk.Focus(11));
        EXPECT_FALSE(desk.Type(11, u"x"));
        EXPECT_FALSE(desk.Focus(99));
        // Shrunk to nothing, a control is out of reach as well.
        MoveWindow(Item(20), 5, 5, 0, 0, TRUE);
        EXPECT_FALSE(desk.Click(20));
        desk.Close();
      }});
}

}  // namespace
}  // namespace test
