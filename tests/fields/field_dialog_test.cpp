// The fields in real dialogs of the driver, edited by a person.
#include "tests/fields/field_dialog.h"

#include "paper/fields/measured_value.h"
#include "paper/fields/option_table.h"

namespace kestrel {
namespace {

using platform::Desk;

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
    std::u16string text;  // replaces a field that shows 20
    std::u16string shown;
    int position;
    bool pasted = false;  // at once, not letter by letter
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
      {kMillimetre, u"4.5", u"4.5", 45, true},
      {kMillimetre, u"4.5 mm", u"2.0", 20, true},
      {kMillimetre, u"4. 5", u"2.0", 20, true},
      {kMillimetre, u"-4", u"2.0", 20, true},
      {kDot, u"5.5", u"20", 20, true},
      {kInch, u"  .07", u"  .07", 70, true},
      {kInch, u"1.2.3", u"0.020", 20, true},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(testing::PrintToString(c.text));
    typed = nullptr;
    bool good = false;
    Open(IDD_PAPER_REGISTER,
         [&] {
           InitField(dialog, IDC_PAPER_REGISTER_GAP, 0, 80, 20, c.unit, true);
           SendDlgItemMessageW(dialog.window, IDC_PAPER_REGISTER_GAP, EM_LIMITTEXT, 9, 0);
           typed = [&](int edit) {
             if (edit == IDC_PAPER_REGISTER_GAP) good = OnMeasureTyped(dialog, edit, c.unit);
           };
         },
         {[&](Desk& desk) {
           EXPECT_TRUE(c.pasted ? desk.Paste(IDC_PAPER_REGISTER_GAP, c.text)
                                : desk.Replace(IDC_PAPER_REGISTER_GAP, c.text));
           EXPECT_EQ(desk.Text(IDC_PAPER_REGISTER_GAP), c.shown);
           EXPECT_EQ(Position(IDC_PAPER_REGISTER_GAP_SPIN), c.position);
           EXPECT_TRUE(!c.pasted || good == (c.shown == c.text));
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
      InitField(dialog, c.edit, -32768, 32767, c.value, c.from, true);
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

TEST_F(FieldDialogTest, DoesNothingForWhatItDoesNotKnow) {
  Open(IDD_PAPER_REGISTER, [&] {
    SetDlgItemTextW(dialog.window, IDC_PAPER_REGISTER_NAME, TEXT("12"));
    const FieldDialog unknown = {dialog.window, {}};
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

// The operation page's own walk shows the rest.
TEST(OptionTables, AnswerTheFirstEntryForWhatTheyLack) {
  const OptionEntry entries[] = {{TEXT("one"), 1, '1', {}},
                                 {TEXT("follow"), kFollowPrinter, ' ', {}},
                                 {TEXT(""), kOptionEnd, 0, {}}};
  const OptionTable table = {entries, 2};
  for (int unknown : {7, -1, int{kOptionEnd}}) EXPECT_EQ(OptionIndex(table, unknown), 0);
  for (int outside : {-1, 2, 99}) EXPECT_EQ(OptionValue(table, outside), 1);
  EXPECT_EQ(OptionValue(table, 1), kFollowPrinter);
}

}  // namespace
}  // namespace kestrel
