// Edits, lists and buttons: what a person's hand and what a message changes, and who hears of it.
#include "desktop/window_fixture.h"

namespace test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST_F(WindowTest, LimitsHoldFingersAndPastesButNotSetText) {
  DialogBuilder builder;
  builder.Edit(10).Edit(11, ES_NUMBER).Edit(12, ES_READONLY);
  Run(builder, {[&](Desk& desk) {
                  Send(10, EM_LIMITTEXT, 3);
                  Take();
                  desk.Type(10, u"ab");
                  EXPECT_THAT(Take(), ElementsAre("10 EN_UPDATE", "10 EN_CHANGE", "10 EN_UPDATE",
                                                  "10 EN_CHANGE"));
                  desk.Type(10, u"cd");
                  EXPECT_EQ(desk.Text(10), u"abc");
                  EXPECT_THAT(Take(), ElementsAre("10 EN_UPDATE", "10 EN_CHANGE", "10 EN_MAXTEXT"));
                  // A paste is one change, cut to what fits.
                  desk.Paste(10, u"wxyz");
                  EXPECT_EQ(desk.Text(10), u"wxy");
                  EXPECT_THAT(Take(), ElementsAre("10 EN_MAXTEXT", "10 EN_UPDATE", "10 EN_CHANGE"));
                  SetDlgItemTextW(dialog, 10, u"12345");
                  EXPECT_EQ(desk.Text(10), u"12345");
                  EXPECT_THAT(Take(), ElementsAre("10 EN_UPDATE", "10 EN_CHANGE"));
                  // Over the limit already: nothing more goes in, but something comes out.
                  desk.Type(10, u"6");
                  EXPECT_EQ(desk.Text(10), u"12345");
                  Take();
                  desk.Key(VK_BACK);
                  EXPECT_EQ(desk.Text(10), u"1234");
                  Send(10, EM_LIMITTEXT, 0);
                  EXPECT_EQ(Send(10, EM_GETLIMITTEXT), 0x7FFFFFFE);
                },
                [&](Desk& desk) {
                  desk.Replace(11, u"1a-2");
                  EXPECT_EQ(desk.Text(11), u"12");
                  desk.Paste(11, u"1\r\n2");
                  EXPECT_EQ(desk.Text(11), u"12");
                  EXPECT_FALSE(desk.Type(12, u"x"));
                  EXPECT_FALSE(desk.EditTo(12, u"x"));
                  EXPECT_TRUE(desk.Control(12).readOnly);
                  desk.Close();
                }});
}

TEST_F(WindowTest, SelectionDecidesWhatTypingReplaces) {
  DialogBuilder builder;
  builder.Edit(10).Edit(11);
  struct Case {
    WPARAM from;
    LPARAM to;
    const char16_t* typed;
    const char16_t* result;
  };
  constexpr Case kCases[] = {{0, -1, u"x", u"x"},    {1, 3, u"x", u"axd"},
                             {4, 4, u"x", u"abcdx"}, {9, 12, u"x", u"abcdx"},
                             {3, 1, u"", u"ad"},     {static_cast<WPARAM>(-1), 0, u"x", u"abxcd"}};
  Run(builder, {[&](Desk& desk) {
        for (const Case& one : kCases) {
          SetDlgItemTextW(dialog, 11, u"abcd");
          Send(11, EM_SETSEL, 2, 2);
          Send(11, EM_SETSEL, one.from, one.to);
          Send(11, EM_REPLACESEL, 0, reinterpret_cast<LPARAM>(one.typed));
          EXPECT_EQ(desk.Text(11), one.result);
        }
        // A text that is set puts the caret before it; the Tab key selects all of it.
        desk.Focus(10);
        desk.Tab();
        DWORD from = 9;
        DWORD to = 9;
        Send(11, EM_GETSEL, reinterpret_cast<WPARAM>(&from), reinterpret_cast<LPARAM>(&to));
        EXPECT_EQ(from, 0u);
        EXPECT_EQ(to, 5u);
        SetDlgItemTextW(dialog, 11, u"z");
        EXPECT_EQ(Send(11, EM_GETSEL), 0);
        // Replacing by nothing is one change, and none when nothing was there.
        Take();
        desk.Replace(11, u"");
        EXPECT_THAT(Take(), ElementsAre("11 EN_UPDATE", "11 EN_CHANGE"));
        desk.Replace(11, u"");
        EXPECT_THAT(Take(), IsEmpty());
        desk.Close();
      }});
}

TEST_F(WindowTest, ATextIsCutAndTerminated) {
  DialogBuilder builder;
  builder.Edit(10);
  Run(builder, {[&](Desk& desk) {
        SetDlgItemTextW(dialog, 10, u"abcdef");
        WCHAR text[8] = u"#######";
        EXPECT_EQ(GetDlgItemTextW(dialog, 10, text, 4), 3u);
        EXPECT_EQ(std::u16string(text, 5), std::u16string(u"abc\0#", 5));
        EXPECT_EQ(GetDlgItemTextW(dialog, 10, text, 1), 0u);
        EXPECT_EQ(text[0], 0);
        text[0] = u'#';
        EXPECT_EQ(GetDlgItemTextW(dialog, 10, text, 0), 0u);
        EXPECT_EQ(text[0], u'#');
        EXPECT_EQ(GetDlgItemTextW(dialog, 99, text, 8), 0u);
        EXPECT_EQ(text[0], 0);
        SetDlgItemInt(dialog, 10, static_cast<UINT>(-12), TRUE);
        EXPECT_EQ(desk.Text(10), u"-12");
        BOOL good = FALSE;
        EXPECT_EQ(static_cast<INT>(GetDlgItemInt(dialog, 10, &good, TRUE)), -12);
        EXPECT_TRUE(good);
        GetDlgItemInt(dialog, 10, &good, FALSE);
        EXPECT_FALSE(good);
        desk.Close();
      }});
}

TEST_F(WindowTest, AChoiceNotifiesAndAMessageDoesNot) {
  DialogBuilder builder;
  builder.Add(u"combobox", 12, CBS_DROPDOWNLIST | WS_TABSTOP, u"", {0, 0, 50, 90});
  builder.Add(u"listbox", 13, LBS_NOTIFY | WS_TABSTOP).Button(20, BS_AUTOCHECKBOX);
  Run(builder,
      {[&](Desk& desk) {
         for (const WCHAR* text : {u"one", u"two", u"three"}) {
           Send(12, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
           Send(13, LB_INSERTSTRING, 0, reinterpret_cast<LPARAM>(text));
         }
         Take();
         EXPECT_EQ(Send(12, CB_GETCURSEL), CB_ERR);
         EXPECT_EQ(Send(12, CB_SETCURSEL, 1), 1);
         EXPECT_EQ(Send(12, CB_SETCURSEL, 3), CB_ERR);
         EXPECT_EQ(Send(12, CB_GETCURSEL), CB_ERR);
         Send(12, CB_SETCURSEL, 1);
         Send(13, LB_SETCURSEL, 2);
         Send(20, BM_SETCHECK, BST_CHECKED);
         EXPECT_THAT(Take(), IsEmpty());
         EXPECT_EQ(desk.Text(12), u"two");
         EXPECT_EQ(desk.Control(13).items, (std::vector<std::u16string>{u"three", u"two", u"one"}));
         EXPECT_EQ(desk.Control(12).rect.bottom - desk.Control(12).rect.top, 20);

         EXPECT_TRUE(desk.Select(12, 2));
         EXPECT_THAT(Take(), ElementsAre("12 CBN_DROPDOWN", "12 CBN_SELENDOK", "12 CBN_CLOSEUP",
                                         "12 CBN_SELCHANGE"));
         EXPECT_TRUE(desk.Select(12, u"three"));
         EXPECT_THAT(Take(), ElementsAre("12 CBN_DROPDOWN", "12 CBN_SELENDOK", "12 CBN_CLOSEUP"));
         EXPECT_FALSE(desk.Select(12, u"four"));
         EXPECT_FALSE(desk.Select(12, -1));
         Take();
         EXPECT_TRUE(desk.Select(13, 0));
         EXPECT_THAT(Take(),
                     ElementsAre("12 CBN_KILLFOCUS", "13 LBN_SETFOCUS", "13 LBN_SELCHANGE"));
         desk.Click(20);
         EXPECT_FALSE(desk.Control(20).checked);
         Take();
         Send(20, BM_CLICK);
         EXPECT_THAT(Take(), ElementsAre("20 BN_CLICKED"));
         EXPECT_EQ(IsDlgButtonChecked(dialog, 20), BST_CHECKED);
       },
       [&](Desk& desk) {
         WCHAR text[16] = u"kept";
         EXPECT_EQ(Send(12, CB_GETLBTEXT, 3, reinterpret_cast<LPARAM>(text)), CB_ERR);
         EXPECT_EQ(std::u16string(text), u"kept");
         EXPECT_EQ(Send(12, CB_GETLBTEXT, 0, reinterpret_cast<LPARAM>(text)), 3);
         EXPECT_EQ(std::u16string(text), u"one");
         EXPECT_EQ(Send(12, CB_SETITEMDATA, 1, 77), 0);
         EXPECT_EQ(Send(12, CB_SETITEMDATA, 3, 77), CB_ERR);
         // A removed entry before the selection moves it, the selected one takes it away.
         EXPECT_EQ(Send(12, CB_DELETESTRING, 0), 2);
         EXPECT_EQ(Send(12, CB_GETCURSEL), 1);
         EXPECT_EQ(Send(12, CB_GETITEMDATA, 0), 77);
         EXPECT_EQ(Send(12, CB_DELETESTRING, 1), 1);
         EXPECT_EQ(Send(12, CB_GETCURSEL), CB_ERR);
         EXPECT_EQ(Send(12, CB_INSERTSTRING, 5, reinterpret_cast<LPARAM>(u"far")), CB_ERR);
         EXPECT_EQ(Send(12, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                        reinterpret_cast<LPARAM>(u"TWO")),
                   0);
         EXPECT_EQ(Send(12, CB_RESETCONTENT), 0);
         EXPECT_EQ(Send(12, CB_GETCOUNT), 0);
         desk.Close();
       }});
}

TEST_F(WindowTest, RadioGroupsEndAtTheNextGroup) {
  DialogBuilder builder;
  builder.Button(20, BS_AUTORADIOBUTTON | WS_GROUP).Button(21, BS_AUTORADIOBUTTON);
  builder.Edit(10).Button(22, BS_AUTORADIOBUTTON);
  builder.Button(30, BS_AUTORADIOBUTTON | WS_GROUP).Button(31, BS_AUTORADIOBUTTON);
  builder.Button(40, BS_RADIOBUTTON).Button(50, BS_GROUPBOX | WS_GROUP);
  const auto checked = [&] {
    std::vector<int> ids;
    for (int id : {20, 21, 22, 30, 31, 40}) {
      if (IsDlgButtonChecked(dialog, id) != 0) ids.push_back(id);
    }
    return ids;
  };
  Run(builder, {[&](Desk& desk) {
        desk.Click(20);
        desk.Click(31);
        EXPECT_THAT(checked(), ElementsAre(20, 31));
        desk.Click(22);
        EXPECT_THAT(checked(), ElementsAre(22, 31));
        desk.Click(30);
        EXPECT_THAT(checked(), ElementsAre(22, 30));
        desk.Click(40);  // checks nothing by itself
        EXPECT_THAT(checked(), ElementsAre(22, 30));
        CheckRadioButton(dialog, 20, 31, 21);
        EXPECT_THAT(checked(), ElementsAre(21));
        Send(22, BM_SETCHECK, BST_CHECKED);  // a message unchecks no neighbour
        EXPECT_THAT(checked(), ElementsAre(21, 22));
        EXPECT_FALSE(desk.Click(50));
        EXPECT_FALSE(desk.Click(10));
        desk.Close();
      }});
}

}  // namespace
}  // namespace test
