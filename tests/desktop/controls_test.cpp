// Edits, lists, buttons and up-downs: what a person's hand and what a message changes, and who
// hears of it.
#include <limits>

#include "tests/desktop/window_fixture.h"

namespace support {
namespace {

TEST_F(WindowTest, LimitsHoldFingersAndPastesButNotSetText) {
  const WindowTest::Heard once = {{10, EN_UPDATE}, {10, EN_CHANGE}};
  Run({Edit(10), Edit(11, ES_READONLY | WS_TABSTOP)},
      {[&](Desk&) { Take(), Send(10, EM_LIMITTEXT, 3); }, Type(10, u"a"), Told(once),
       Type(10, u"bcd"), ExpectText(10, u"abc"), Paste(10, u"w\r\nx\nyz"), ExpectText(10, u"wxy"),
       [&](Desk& desk) {
         Take();
         SetDlgItemTextW(window, 10, u"12345");
         EXPECT_EQ(Take(), once);
         desk.Type(10, u"6");
         EXPECT_EQ(desk.Text(10), u"12345") << "over the limit: nothing more goes in";
         EXPECT_THAT(Take(), IsEmpty());
         desk.Key(VK_BACK);
         EXPECT_EQ(desk.Text(10), u"1234");
         Send(10, EM_LIMITTEXT, 0);
         EXPECT_EQ(desk.Control(10).textLimit, 0x7FFFFFFE);
         EXPECT_FALSE(desk.Type(11, u"x") || desk.EditTo(11, u"x"));
         // A text is cut and terminated.
         WCHAR text[8] = u"#######";
         EXPECT_EQ(GetDlgItemTextW(window, 10, text, 4), 3u);
         EXPECT_EQ(std::u16string(text, 5), std::u16string(u"123\0#", 5));
         EXPECT_EQ(GetDlgItemTextW(window, 10, text, 0), 0u);
         EXPECT_EQ(GetDlgItemTextW(window, 99, text, 8), 0u);
         EXPECT_EQ(text[0], 0);
       },
       Close()});
}

TEST_F(WindowTest, AChoiceNotifiesAndAMessageDoesNot) {
  const auto text = [](const WCHAR* of) { return reinterpret_cast<LPARAM>(of); };
  const WindowTest::Heard picked = {{12, CBN_SETFOCUS},
                                    {12, CBN_DROPDOWN},
                                    {12, CBN_SELENDOK},
                                    {12, CBN_CLOSEUP},
                                    {12, CBN_SELCHANGE}};
  Run({Button(IDOK), Part(u"combobox", 12, u"", WS_TABSTOP, 0, 0, 50, 90),
       Part(u"listbox", 13, u"", LBS_NOTIFY | WS_TABSTOP, 0, 0, 50, 90)},
      {[&](Desk& desk) {
         for (const WCHAR* one : {u"one", u"two", u"three"}) {
           Send(12, CB_ADDSTRING, 0, text(one));
           Send(13, LB_INSERTSTRING, 0, text(one));
         }
         Take();
         EXPECT_EQ(Send(12, CB_GETCURSEL), CB_ERR);
         EXPECT_EQ(Send(12, CB_SETCURSEL, 1), 1);
         EXPECT_EQ(Send(12, CB_SETCURSEL, 3), CB_ERR);
         EXPECT_EQ(desk.Text(12), u"");
         Send(12, CB_SETCURSEL, 0);
         EXPECT_EQ(Send(12, CB_INSERTSTRING, 9, text(u"far")), CB_ERR);
         EXPECT_EQ(Send(12, CB_INSERTSTRING, 0, text(u"none")), 0);
         EXPECT_EQ(Send(12, CB_GETCURSEL), 1) << "the selection moves along";
         Send(13, LB_SETCURSEL, 2);
         EXPECT_THAT(Take(), IsEmpty());
         EXPECT_EQ(desk.Control(12).rect.bottom, 20) << "as high as it is closed";
       },
       ExpectText(12, u"one"), ExpectItems(13, {u"three", u"two", u"one"}), Select(12, 3),
       Told(picked), Select(12, u"three"),
       Told({{12, CBN_DROPDOWN}, {12, CBN_SELENDOK}, {12, CBN_CLOSEUP}}),
       [](Desk& desk) { EXPECT_FALSE(desk.Select(12, u"four") || desk.Select(12, -1)); },
       Key(VK_UP), ExpectText(12, u"two"), [&](Desk&) { Take(); }, Select(13, 0),
       Told({{12, CBN_KILLFOCUS}, {13, LBN_SETFOCUS}, {13, LBN_SELCHANGE}}),
       [&](Desk& desk) {
         Send(12, CB_RESETCONTENT);
         EXPECT_THAT(desk.Control(12).items, IsEmpty());
         EXPECT_EQ(Send(12, CB_GETCURSEL), CB_ERR);
       },
       Close()});
}

class UpDownTest : public WindowTest {
 protected:
  static constexpr DWORD kNumber =
      UDS_SETBUDDYINT | UDS_NOTHOUSANDS | UDS_ALIGNRIGHT | UDS_ARROWKEYS;
  std::vector<platform::ControlRequest> Parts(DWORD style = kNumber) {
    return {Edit(10), Part(u"msctls_updown32", 11, u"", style, 0, 0, 9, 12), Edit(12)};
  }
  void Attach(int low, int high, int position) {
    Send(11, UDM_SETBUDDY, reinterpret_cast<WPARAM>(Item(10)));
    Send(11, UDM_SETRANGE32, static_cast<WPARAM>(low), high);
    Send(11, UDM_SETPOS32, 0, position);
  }
};

TEST_F(UpDownTest, ThePositionIsTheBuddysNumberWhenItIsOneInRange) {
  const struct {
    DWORD style;
    int low, high;
    const char16_t* text;  // of the buddy before it is asked
    int position;          // 5 where it is no good
    BOOL error;
  } kCases[] = {
      {kNumber, 0, 100, u"42", 42, FALSE},    {kNumber, 0, 100, u" +7", 7, FALSE},
      {kNumber, 0, 100, u"100", 100, FALSE},  {kNumber, 0, 100, u"101", 5, TRUE},
      {kNumber, 0, 100, u"", 5, TRUE},        {kNumber, 0, 100, u"-", 5, TRUE},
      {kNumber, 0, 100, u"4a", 5, TRUE},      {kNumber, 0, 100, u"99999999999999999999", 5, TRUE},
      {kNumber, -50, 50, u"-50", -50, FALSE}, {kNumber, 100, 0, u"60", 60, FALSE},
      {0, 0, 100, u"42", 5, FALSE},
  };
  BOOL error = FALSE;
  for (const auto& one : kCases) {
    Run(Parts(one.style), {[&](Desk&) {
                             Attach(one.low, one.high, 5);
                             SetDlgItemTextW(window, 10, one.text);
                             EXPECT_EQ(Send(11, UDM_GETPOS32, 0, reinterpret_cast<LPARAM>(&error)),
                                       one.position);
                             EXPECT_EQ(error, one.error) << one.position;
                           },
                           Close()});
  }
  Run(Parts(),
      {[&](Desk&) { Send(11, UDM_GETPOS32, 0, reinterpret_cast<LPARAM>(&error)); }, Close()});
  EXPECT_TRUE(error) << "no buddy";
}

TEST_F(UpDownTest, PositionsAreClampedAndWrittenOnlyWhenTheTextDiffers) {
  Run(Parts(),
      {[&](Desk& desk) {
         Attach(-800, 800, 1234);
         EXPECT_EQ(desk.Text(10), u"800");
         Take();
         EXPECT_EQ(Send(11, UDM_SETPOS32, 0, -3), 800);
         Send(11, UDM_SETPOS32, 0, -3);
         EXPECT_EQ(Take(), (Heard{{10, EN_UPDATE}, {10, EN_CHANGE}}));
         SetDlgItemTextW(window, 10, u"5x");
         Send(11, UDM_SETPOS32, 0, static_cast<LPARAM>(Send(11, UDM_GETPOS32)));
         EXPECT_EQ(desk.Text(10), u"-3") << "the same position over a spoilt text restores it";
         int low = 0, high = 0;
         Send(11, UDM_GETRANGE32, reinterpret_cast<WPARAM>(&low), reinterpret_cast<LPARAM>(&high));
         EXPECT_EQ(std::pair(low, high), std::pair(-800, 800));
         for (int i = 0; i < 2; ++i) {  // aligned it takes the buddy's edge once only
           Attach(0, 9, 1);
           EXPECT_EQ(desk.Control(10).rect.right, 54);
           EXPECT_EQ(desk.Control(11).rect.left, 54);
           EXPECT_EQ(desk.Control(11).rect.right, 70);
         }
       },
       Close()});
}

TEST_F(UpDownTest, AStepAsksFirstThenMovesThenScrolls) {
  int refuse = 0, replaced = 0;
  on = [&](UINT message, WPARAM, LPARAM lParam) -> INT_PTR {
    if (message != WM_NOTIFY) return 0;
    if (replaced != 0) reinterpret_cast<NMUPDOWN*>(lParam)->iDelta = replaced;
    SetWindowLongPtrW(window, DWLP_MSGRESULT, refuse);
    return TRUE;
  };
  Run(Parts(), {[&](Desk&) { Attach(0, 10, 9); },
                Focus(12),
                [&](Desk&) {
                  SetDlgItemTextW(window, 10, u"8");
                  Take();
                },
                Spin(11, 1),
                Told({{12, EN_KILLFOCUS},
                      {10, EN_SETFOCUS},
                      {8, UDN_DELTAPOS},
                      {10, EN_UPDATE},
                      {10, EN_CHANGE},
                      {9, WM_VSCROLL},
                      {9, WM_VSCROLL}}),
                Spin(11, 2),
                ExpectText(10, u"10"),
                [&](Desk&) { Take(), refuse = 1; },
                Spin(11, -1),
                Told({{10, UDN_DELTAPOS}, {10, WM_VSCROLL}}),
                ExpectText(10, u"10"),
                [&](Desk&) { refuse = 0, replaced = -5; },
                Spin(11, -1),
                ExpectText(10, u"5"),
                [&](Desk&) { replaced = 0; },
                Key(VK_UP),
                ExpectText(10, u"6"),
                Spin(11, std::numeric_limits<int>::max()),
                ExpectText(10, u"10"),
                Spin(11, std::numeric_limits<int>::min()),
                ExpectText(10, u"0"),
                [&](Desk&) { Send(11, UDM_SETRANGE32, 10, 0); },
                Spin(11, -1),
                ExpectText(10, u"1"),
                [&](Desk& desk) {
                  EnableWindow(Item(10), FALSE);
                  EXPECT_FALSE(desk.Spin(11, 1));
                },
                Close()});
}

}  // namespace
}  // namespace support
