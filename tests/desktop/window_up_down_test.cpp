// Up-downs: ranges, positions, the buddy's text, and the dialog's say before each step.
#include "desktop/window_fixture.h"

namespace test {
namespace {

using ::testing::ElementsAre;

constexpr DWORD kNumber = UDS_SETBUDDYINT | UDS_NOTHOUSANDS | UDS_ALIGNRIGHT | UDS_ARROWKEYS;

struct PositionCase {
  DWORD style;
  int low, high, start;
  const char16_t* text;  // of the buddy before it is asked
  int position;          // that UDM_GETPOS32 answers
  bool error;
};

class UpDownTest : public WindowTest {
 protected:
  void Attach(int low, int high, int position) {
    Send(11, UDM_SETBUDDY, reinterpret_cast<WPARAM>(Item(10)));
    Send(11, UDM_SETRANGE32, static_cast<WPARAM>(low), high);
    Send(11, UDM_SETPOS32, 0, position);
  }
  static DialogBuilder Builder(DWORD style) {
    DialogBuilder builder;
    builder.Edit(10).Add(UPDOWN_CLASSW, 11, style).Edit(12);
    return builder;
  }
};

TEST_F(UpDownTest, ThePositionIsTheBuddysNumberWhenItIsOneInRange) {
  constexpr PositionCase kCases[] = {
      {kNumber, 0, 100, 5, u"42", 42, false},
      {kNumber, 0, 100, 5, u" +7", 7, false},
      {kNumber, 0, 100, 5, u"100", 100, false},
      {kNumber, 0, 100, 5, u"101", 5, true},
      {kNumber, 0, 100, 5, u"", 5, true},
      {kNumber, 0, 100, 5, u"-", 5, true},
      {kNumber, 0, 100, 5, u"4a", 5, true},
      {kNumber, 0, 100, 5, u"99999999999999999999", 5, true},
      {kNumber, -50, 50, 5, u"-50", -50, false},
      {kNumber, 100, 0, 5, u"60", 60, false},
      {UDS_SETBUDDYINT, 0, 9999, 5, u"1,234", 1234, false},
      {0, 0, 100, 5, u"42", 5, false},
  };
  for (const PositionCase& one : kCases) {
    DialogBuilder builder = Builder(one.style);
    Run(builder, {[&](Desk& desk) {
          Attach(one.low, one.high, one.start);
          SetDlgItemTextW(dialog, 10, one.text);
          BOOL error = FALSE;
          EXPECT_EQ(Send(11, UDM_GETPOS32, 0, reinterpret_cast<LPARAM>(&error)), one.position);
          EXPECT_EQ(error != FALSE, one.error);
          const auto answer = static_cast<DWORD>(Send(11, UDM_GETPOS));
          EXPECT_EQ(static_cast<SHORT>(LOWORD(answer)), one.position);
          EXPECT_EQ(HIWORD(answer) != 0, one.error);
          desk.Close();
        }});
  }
}

TEST_F(UpDownTest, PositionsAreClampedAndWrittenOnlyWhenTheTextDiffers) {
  DialogBuilder builder = Builder(kNumber);
  Run(builder, {[&](Desk& desk) {
        Attach(-800, 800, 1234);
        EXPECT_EQ(desk.Text(10), u"800");
        Take();
        EXPECT_EQ(Send(11, UDM_SETPOS, 0, MAKELPARAM(static_cast<WORD>(-3), 0)), 800);
        EXPECT_EQ(desk.Text(10), u"-3");
        EXPECT_THAT(Take(), ElementsAre("10 EN_UPDATE", "10 EN_CHANGE"));
        Send(11, UDM_SETPOS32, 0, -3);
        EXPECT_THAT(Take(), ::testing::IsEmpty());
        // The same position over a spoilt text restores it.
        SetDlgItemTextW(dialog, 10, u"5x");
        Send(11, UDM_SETPOS32, 0, static_cast<LPARAM>(Send(11, UDM_GETPOS32)));
        EXPECT_EQ(desk.Text(10), u"-3");
        Send(11, UDM_SETRANGE, 0, MAKELPARAM(99, static_cast<WORD>(-40)));
        int low = 0;
        int high = 0;
        Send(11, UDM_GETRANGE32, reinterpret_cast<WPARAM>(&low), reinterpret_cast<LPARAM>(&high));
        EXPECT_EQ(low, -40);
        EXPECT_EQ(high, 99);
        EXPECT_EQ(Send(11, UDM_GETRANGE), MAKELONG(99, static_cast<WORD>(-40)));
        desk.Close();
      }});
  DialogBuilder plain = Builder(UDS_SETBUDDYINT);
  Run(plain, {[&](Desk& desk) {
        Attach(-9999999, 9999999, -1234567);
        EXPECT_EQ(desk.Text(10), u"-1,234,567");
        Send(11, UDM_SETPOS32, 0, 999);
        EXPECT_EQ(desk.Text(10), u"999");
        desk.Close();
      }});
}

TEST_F(UpDownTest, AStepAsksFirstThenMovesThenScrolls) {
  DialogBuilder builder = Builder(kNumber);
  int refuse = 0;
  int replaced = 0;
  on = [&](UINT message, WPARAM, LPARAM lParam) -> INT_PTR {
    if (message != WM_NOTIFY) return 0;
    if (replaced != 0) reinterpret_cast<NMUPDOWN*>(lParam)->iDelta = replaced;
    SetWindowLongPtrW(dialog, DWLP_MSGRESULT, refuse);
    return TRUE;
  };
  Run(builder, {[&](Desk& desk) {
        Attach(0, 10, 9);
        desk.Focus(12);
        SetDlgItemTextW(dialog, 10, u"8");
        Take();
        EXPECT_TRUE(desk.Spin(11, 1));
        EXPECT_EQ(desk.FocusedId(), 10);
        EXPECT_THAT(Take(),
                    ElementsAre("12 EN_KILLFOCUS", "10 EN_SETFOCUS", "DELTA 8 1", "10 EN_UPDATE",
                                "10 EN_CHANGE", "SCROLL 4 9", "SCROLL 8 9"));
        desk.Spin(11, 2);
        EXPECT_EQ(desk.Text(10), u"10");
        Take();
        refuse = 1;
        desk.Spin(11, -1);
        EXPECT_EQ(desk.Text(10), u"10");
        EXPECT_THAT(Take(), ElementsAre("DELTA 10 -1", "SCROLL 8 10"));
        refuse = 0;
        replaced = -5;
        desk.Spin(11, -1);
        EXPECT_EQ(desk.Text(10), u"5");
        replaced = 0;
        desk.Key(VK_UP);
        EXPECT_EQ(desk.Text(10), u"6");
        Send(11, UDM_SETRANGE32, 10, 0);  // upside down: up is towards the second bound
        desk.Spin(11, 1);
        EXPECT_EQ(desk.Text(10), u"5");
        EnableWindow(Item(10), FALSE);
        EXPECT_FALSE(desk.Spin(11, 1));
        desk.Close();
      }});
}

TEST_F(UpDownTest, WrapsWhenAskedTo) {
  DialogBuilder builder = Builder(kNumber | UDS_WRAP);
  Run(builder, {[&](Desk& desk) {
        Attach(0, 3, 3);
        desk.Spin(11, 1);
        EXPECT_EQ(desk.Text(10), u"0");
        desk.Spin(11, -1);
        EXPECT_EQ(desk.Text(10), u"3");
        desk.Close();
      }});
}

TEST_F(UpDownTest, AlignedItTakesTheBuddysEdgeOnceOnly) {
  DialogBuilder builder = Builder(kNumber | UDS_AUTOBUDDY);
  Run(builder, {[&](Desk& desk) {
        // 10..50 dialog units across are 15..75 pixels.
        const auto place = [&](int id) { return desk.Control(id).rect; };
        EXPECT_EQ(desk.Control(11).buddy, 10);
        for (int i = 0; i < 2; ++i) {
          EXPECT_EQ(place(10).left, 15);
          EXPECT_EQ(place(10).right, 59);
          EXPECT_EQ(place(11).left, 59);
          EXPECT_EQ(place(11).right, 75);
          Send(11, UDM_SETBUDDY, reinterpret_cast<WPARAM>(Item(10)));
        }
        Send(11, UDM_SETBUDDY, reinterpret_cast<WPARAM>(Item(12)));
        EXPECT_EQ(place(10).right, 75);
        EXPECT_EQ(place(12).right, 59);
        desk.Close();
      }});
}

}  // namespace
}  // namespace test
