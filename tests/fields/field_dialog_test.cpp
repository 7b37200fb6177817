// The fields in real dialogs of the driver, edited by a person.
#include "tests/fields/field_dialog.h"

#include "paper/measured_value.h"
#include "paper/option_table.h"

namespace kestrel {
namespace {

using platform::Desk;
using platform::ScriptedUser;

TEST_F(FieldDialogTest, ShowsAFieldsValueInItsRange) {
  const struct {
    int minimum, maximum, value, unit;
    std::u16string text;
    int position, limit;
  } kCases[] = {
      {100, 1630, 580, kMillimetre, u"58.0", 580, 5},
      {100, 1630, 99, kMillimetre, u"10.0", 100, 5},  // raised
      {100, 580, 600, kMillimetre, u"60.0", 580, 4},  // left as it is, for the range check
      {394, 6417, 2283, kInch, u"2.283", 2283, 5},
      {0, 80, -32768, kMillimetre, u"0.0", 0, 3},
      {0, 80, 32767, kDot, u"32767", 80, 2},
      {-300, 300, -300, kDot, u"-300", -300, 4},
  };
  for (const auto& c : kCases) {
    Open(IDD_PAPER_REGISTER,
         [&] {
           InitField(dialog, IDC_PAPER_REGISTER_WIDTH, c.minimum, c.maximum, c.value, c.unit, true);
         },
         {[&](Desk& desk) {
           EXPECT_EQ(desk.Text(IDC_PAPER_REGISTER_WIDTH), c.text);
           EXPECT_EQ(Position(IDC_PAPER_REGISTER_WIDTH_SPIN), c.position) << c.text.size();
           EXPECT_EQ(desk.Control(IDC_PAPER_REGISTER_WIDTH).textLimit, c.limit);
           const platform::ControlView spin = desk.Control(IDC_PAPER_REGISTER_WIDTH_SPIN);
           EXPECT_EQ(spin.buddy, IDC_PAPER_REGISTER_WIDTH);
           EXPECT_EQ(spin.minimum, c.minimum);
           EXPECT_EQ(spin.maximum, c.maximum);
         }});
  }
}

TEST_F(FieldDialogTest, UndoesBadTypingInMeasuredFields) {
  const struct {
    int unit;
    std::u16string typed;  // replaces a field that shows 20
    std::u16string shown;
    int position;
  } kCases[] = {
      {kMillimetre, u"5.5", u"5.5", 55},
      {kMillimetre, u"5.5.", u"5.5", 55},
      {kMillimetre, u"5.5.3", u"5.53", 55},  // typing goes on behind what was put back
      {kMillimetre, u" 7.2", u" 7.2", 72},
      {kMillimetre, u".5", u".5", 5},
      {kMillimetre, u"7 ", u"7.0", 70},
      {kMillimetre, u"-", u"2.0", 20},
      {kMillimetre, u"x", u"2.0", 20},
      {kMillimetre, u"7x", u"7.0", 70},
      {kMillimetre, u"", u"", 0},
      {kMillimetre, u"99", u"99",
       80},  // out of range: the text stays, the arrows stop at the bound
      {kInch, u"0.05", u"0.05", 50},
      {kInch, u"0..", u"0.000", 0},
      {kDot, u"55", u"55", 55},
      {kDot, u"5.", u"5", 5},
      {kDot, u"５", u"20", 20},
  };
  for (const auto& c : kCases) {
    typed = nullptr;
    Open(IDD_PAPER_REGISTER,
         [&] {
           InitField(dialog, IDC_PAPER_REGISTER_GAP, 0, 80, 20, c.unit, true);
           SendDlgItemMessageW(dialog.window, IDC_PAPER_REGISTER_GAP, EM_LIMITTEXT, 9, 0);
           typed = [&](int edit) {
             if (edit == IDC_PAPER_REGISTER_GAP) OnMeasureTyped(dialog, edit, c.unit);
           };
         },
         {[&](Desk& desk) {
           EXPECT_TRUE(desk.Replace(IDC_PAPER_REGISTER_GAP, c.typed));
           EXPECT_EQ(desk.Text(IDC_PAPER_REGISTER_GAP), c.shown) << testing::PrintToString(c.typed);
           EXPECT_EQ(Position(IDC_PAPER_REGISTER_GAP_SPIN), c.position)
               << testing::PrintToString(c.typed);
         }});
  }
}

TEST_F(FieldDialogTest, UndoesAPastedTextAtOnce) {
  const struct {
    int unit;
    std::u16string pasted, shown;
    bool good;
  } kCases[] = {
      {kMillimetre, u"4.5", u"4.5", true},   {kMillimetre, u"4.5 mm", u"2.0", false},
      {kMillimetre, u"4. 5", u"2.0", false}, {kMillimetre, u"-4", u"2.0", false},
      {kDot, u"5.5", u"20", false},          {kInch, u"  .07", u"  .07", true},
      {kInch, u"1.2.3", u"0.020", false},
  };
  for (const auto& c : kCases) {
    typed = nullptr;
    bool last = false;
    Open(IDD_PAPER_REGISTER,
         [&] {
           InitField(dialog, IDC_PAPER_REGISTER_GAP, 0, 80, 20, c.unit, true);
           SendDlgItemMessageW(dialog.window, IDC_PAPER_REGISTER_GAP, EM_LIMITTEXT, 9, 0);
         },
         {[&](Desk& desk) {
           EXPECT_TRUE(desk.Paste(IDC_PAPER_REGISTER_GAP, c.pasted));
           last = OnMeasureTyped(dialog, IDC_PAPER_REGISTER_GAP, c.unit);
           EXPECT_EQ(desk.Text(IDC_PAPER_REGISTER_GAP), c.shown);
           EXPECT_EQ(last, c.good) << testing::PrintToString(c.pasted);
         }});
  }
}

// The position set again is the up-down's own reading of the text where it can make one of it.
TEST_F(FieldDialogTest, UndoesBadTypingInPlainFields) {
  const struct {
    std::u16string pasted, shown;
    bool good;
    int position;
  } kCases[] = {
      {u"-12", u"-12", true, -12},   {u"9999", u"9999", true, 9999}, {u"1.5", u"7", false, 7},
      {u" 1", u"1", false, 1},       {u"1a", u"7", false, 7},        {u"-", u"-", true, 7},
      {u"", u"", true, 7},           {u"+3", u"3", false, 3},        {u"5-3", u"5-3", true, 7},
      {u"99999", u"99999", true, 7},  // no position of the range
  };
  for (const auto& c : kCases) {
    Open(IDD_DECO_FONT,
         [&] { InitField(dialog, IDC_DECO_FONT_INCREMENT, -9999, 9999, 7, kPlain, true); },
         {[&](Desk& desk) {
           EXPECT_EQ(desk.Text(IDC_DECO_FONT_INCREMENT), u"7");
           EXPECT_TRUE(desk.Paste(IDC_DECO_FONT_INCREMENT, c.pasted));
           EXPECT_EQ(OnPlainTyped(dialog, IDC_DECO_FONT_INCREMENT), c.good);
           EXPECT_EQ(desk.Text(IDC_DECO_FONT_INCREMENT), c.shown);
           EXPECT_EQ(Position(IDC_DECO_FONT_INCREMENT_SPIN), c.position)
               << testing::PrintToString(c.pasted);
         }});
  }
}

TEST_F(FieldDialogTest, ChecksAgainstTheRangeThatStandsNow) {
  Open(IDD_PAPER_REGISTER, [&] {
    InitField(dialog, IDC_PAPER_REGISTER_WIDTH, 100, 580, 100, kMillimetre, true);
    const struct {
      const WCHAR* text;
      RangeSide side;
    } kCases[] = {{TEXT("10.0"), kInside}, {TEXT("9.9"), kBelow},    {TEXT("58"), kInside},
                  {TEXT("58.1"), kAbove},  {TEXT("58.09"), kInside}, {TEXT(""), kBelow},
                  {TEXT("-58"), kBelow},   {TEXT("99999"), kAbove}};
    for (const auto& c : kCases) {
      SetDlgItemTextW(dialog.window, IDC_PAPER_REGISTER_WIDTH, c.text);
      EXPECT_EQ(CheckFieldRange(dialog, IDC_PAPER_REGISTER_WIDTH, kMillimetre), c.side)
          << testing::PrintToString(std::u16string(c.text));
    }
    SetSpin(dialog.window, IDC_PAPER_REGISTER_WIDTH_SPIN, IDC_PAPER_REGISTER_WIDTH, 0, 9999, 0,
            false);
    SetDlgItemTextW(dialog.window, IDC_PAPER_REGISTER_WIDTH, TEXT("99.9"));
    EXPECT_EQ(CheckFieldRange(dialog, IDC_PAPER_REGISTER_WIDTH, kMillimetre), kInside);
  });
}

TEST_F(FieldDialogTest, ShowsTheArrowsPositionWithItsDecimals) {
  Open(IDD_PAPER_REGISTER,
       [&] { InitField(dialog, IDC_PAPER_REGISTER_GAP, 0, 80, 20, kMillimetre, true); },
       {[&](Desk& desk) {
         EXPECT_TRUE(desk.Spin(IDC_PAPER_REGISTER_GAP_SPIN, 3));
         EXPECT_EQ(Position(IDC_PAPER_REGISTER_GAP_SPIN), 23);
         SpinToEdit(dialog, IDC_PAPER_REGISTER_GAP_SPIN, kMillimetre);
         EXPECT_EQ(desk.Text(IDC_PAPER_REGISTER_GAP), u"2.3");
         SetDlgItemTextW(dialog.window, IDC_PAPER_REGISTER_GAP, TEXT(" 4"));
         ReformatField(dialog, IDC_PAPER_REGISTER_GAP, kMillimetre);
         EXPECT_EQ(desk.Text(IDC_PAPER_REGISTER_GAP), u"4.0");
       }});
}

TEST_F(FieldDialogTest, ConvertsAFieldToAnotherUnit) {
  const struct {
    int dialogId, edit, spin, value, from, to, dpi;
    std::u16string text;
    int minimum, maximum;
  } kCases[] = {
      {IDD_PAPER_REGISTER, IDC_PAPER_REGISTER_WIDTH, IDC_PAPER_REGISTER_WIDTH_SPIN, 580,
       kMillimetre, kInch, 203, u"2.283", 394, 2283},
      {IDD_PAPER_REGISTER, IDC_PAPER_REGISTER_WIDTH, IDC_PAPER_REGISTER_WIDTH_SPIN, 2283, kInch,
       kMillimetre, 203, u"58.0", 100, 580},
      // The least value of the new range, not of the old one, holds the value up.
      {IDD_PAPER_REGISTER, IDC_PAPER_REGISTER_WIDTH, IDC_PAPER_REGISTER_WIDTH_SPIN, 393, kInch,
       kMillimetre, 203, u"10.0", 100, 580},
      {IDD_PAPER_REGISTER, IDC_PAPER_REGISTER_GAP, IDC_PAPER_REGISTER_GAP_SPIN, 0, kMillimetre,
       kInch, 203, u"0.000", 0, 315},
      {IDD_DECO_FONT, IDC_DECO_FONT_WIDTH, IDC_DECO_FONT_WIDTH_SPIN, 99, kDot, kMillimetre, 203,
       u"12.4", 34, 688},
      {IDD_DECO_FONT, IDC_DECO_FONT_WIDTH, IDC_DECO_FONT_WIDTH_SPIN, 99, kDot, kMillimetre, 305,
       u"8.2", 22, 458},
      {IDD_DECO_FONT, IDC_DECO_FONT_HEIGHT, IDC_DECO_FONT_HEIGHT_SPIN, 999, kDot, kInch, 305,
       u"3.275", 164, 3275},
      // A bound that would vanish stays at one step.
      {IDD_DECO_FONT, IDC_DECO_FONT_WIDTH, IDC_DECO_FONT_WIDTH_SPIN, 500, kDot, kMillimetre, 32767,
       u"0.4", 1, 4},
      // Without a density dots stay dots.
      {IDD_DECO_FONT, IDC_DECO_FONT_WIDTH, IDC_DECO_FONT_WIDTH_SPIN, 99, kDot, kMillimetre, 0,
       u"9.9", 27, 550},
  };
  for (const auto& c : kCases) {
    Open(c.dialogId, [&] {
      InitField({dialog.window, c.dialogId}, c.edit, -32768, 32767, c.value, c.from, true);
      ChangeFieldUnit(dialog, c.edit, c.from, c.to, c.dpi);
      WCHAR text[32];
      GetDlgItemTextW(dialog.window, c.edit, text, 32);
      EXPECT_EQ(text, c.text);
      int minimum, maximum;
      SpinRange(dialog.window, c.spin, &minimum, &maximum);
      EXPECT_EQ(minimum, c.minimum) << testing::PrintToString(c.text);
      EXPECT_EQ(maximum, c.maximum) << testing::PrintToString(c.text);
    });
  }
}

TEST_F(FieldDialogTest, ReportsARangeAndReturnsToTheField) {
  const struct {
    RangeSide side;
    UINT below, above;
    int unit;
    std::u16string text;
  } kCases[] = {
      {kBelow, IDS_FONT_WIDTH_BELOW, IDS_FONT_WIDTH_ABOVE, kMillimetre,
       u"フォントサイズ\n幅は 2.7 mm 以上にして下さい。"},
      {kAbove, IDS_FONT_WIDTH_BELOW, IDS_FONT_WIDTH_ABOVE, kInch,
       u"フォントサイズ\n幅は 0.550 inch 以下にして下さい。"},
      {kAbove, IDS_FONT_WIDTH_BELOW, IDS_FONT_WIDTH_ABOVE, kDot,
       u"フォントサイズ\n幅は 550 dot 以下にして下さい。"},
      {kBelow, IDS_PRINT_NUM_BELOW, IDS_PRINT_NUM_ABOVE, kPlain,
       u"連番設定\n同一発行枚数は 27 枚以上にして下さい。"},
  };
  for (const auto& c : kCases) {
    bool answer = true;
    std::u16string caption;
    Open(IDD_DECO_FONT,
         [&] {
           SetWindowTextW(dialog.window, TEXT("見出し"));
           SetFocus(GetDlgItem(dialog.window, IDC_DECO_FONT_NAME));
         },
         {[&](Desk&) {
           // The person closes the box that this call shows.
           ScriptedUser closer({support::CloseMessage(c.text, MB_ICONEXCLAMATION, u"見出し")});
           desk().Attach(&closer);
           answer = ReportRange(dialog.window, IDC_DECO_FONT_WIDTH, c.side, c.below, c.above, 27,
                                550, c.unit);
           EXPECT_EQ(closer.Problem(), "");
           EXPECT_TRUE(closer.Finished());
           EXPECT_EQ(GetFocus(), GetDlgItem(dialog.window, IDC_DECO_FONT_WIDTH));
           EXPECT_EQ(GetWindowLongPtrW(dialog.window, DWLP_MSGRESULT), TRUE);
           EndDialog(dialog.window, 0);
         }});
    EXPECT_FALSE(answer);
  }
}

TEST_F(FieldDialogTest, DoesNothingForWhatItDoesNotKnow) {
  Open(IDD_PAPER_REGISTER, [&] {
    SetDlgItemTextW(dialog.window, IDC_PAPER_REGISTER_NAME, TEXT("12"));
    const FieldDialog unknown = {dialog.window, 4711};
    EXPECT_EQ(ReadField(unknown, IDC_PAPER_REGISTER_NAME, kPlain), 0);
    EXPECT_EQ(ReadField(dialog, IDC_PAPER_REGISTER_NAME, kPlain), 12);
    EXPECT_EQ(CheckFieldRange(dialog, IDC_PAPER_REGISTER_NAME, kPlain), kInside);
    InitField(dialog, IDC_PAPER_REGISTER_NAME, 0, 5, 3, kPlain, true);
    ReformatField(dialog, IDC_PAPER_REGISTER_NAME, kMillimetre);
    SpinToEdit(dialog, IDC_PAPER_REGISTER_NAME, kMillimetre);
    ChangeFieldUnit(dialog, IDC_PAPER_REGISTER_NAME, kDot, kInch, 203);
    EXPECT_FALSE(OnMeasureTyped(dialog, IDC_PAPER_REGISTER_NAME, kMillimetre));
    EXPECT_FALSE(OnPlainTyped(dialog, IDC_PAPER_REGISTER_NAME));
    WCHAR text[32];
    GetDlgItemTextW(dialog.window, IDC_PAPER_REGISTER_NAME, text, 32);
    EXPECT_EQ(std::u16string(text), u"12");
  });
}

TEST_F(FieldDialogTest, FillsAListAndSelectsByValue) {
  const OptionEntry entries[] = {{TEXT("one"), 1, '1', {}},
                                 {TEXT("two"), 2, '2', {}},
                                 {TEXT("follow"), kFollowPrinter, ' ', {}},
                                 {TEXT(""), kOptionEnd, 0, {}}};
  const OptionTable table = {entries, 3};
  const struct {
    int value, index;
  } kCases[] = {{1, 0}, {2, 1}, {kFollowPrinter, 2}, {7, 0}, {-1, 0}, {kOptionEnd, 0}};
  Open(IDD_OPERATION, [&] {
    for (const auto& c : kCases) {
      FillOptionList(dialog.window, IDC_OPERATION_SPEED, table, c.value);
      EXPECT_EQ(SendDlgItemMessageW(dialog.window, IDC_OPERATION_SPEED, CB_GETCURSEL, 0, 0),
                c.index);
      EXPECT_EQ(SendDlgItemMessageW(dialog.window, IDC_OPERATION_SPEED, CB_GETCOUNT, 0, 0), 3);
      EXPECT_EQ(OptionIndex(table, c.value), c.index);
    }
    EndDialog(dialog.window, 0);
  });
  EXPECT_EQ(OptionValue(table, 2), kFollowPrinter);
  for (int outside : {-1, 3, 99}) EXPECT_EQ(OptionValue(table, outside), 1);
}

}  // namespace
}  // namespace kestrel
