// Numeric fields and the help box.
#include "paper/fields/help_text.h"
#include "paper/fields/numeric_field.h"
#include "resources/resource.h"
#include "tests/support/open_sheet.h"

namespace kestrel {
namespace {

using namespace support;

constexpr int kWidth = IDC_PAPER_REGISTER_WIDTH, kWidthSpin = IDC_PAPER_REGISTER_WIDTH_SPIN,
              kName = IDC_PAPER_REGISTER_NAME;
constexpr NumericField kFields[] = {{kWidth, kWidthSpin, 27, 550, kDot}};

// Uses the window of the registration dialog.
class NumericFields : public SheetTest {
 protected:
  void InDialog(const Step& step) {
    Cancel(kPaperTab, {Click(IDC_PAPER_REGISTER), step, Click(IDCANCEL)});
  }
};

TEST_F(NumericFields, ValueBelowMinimumIsRaisedAndAboveMaximumShown) {
  InDialog([](Desk& desk) {
    const FieldDialog dialog = {desk.Top(), kFields};
    InitField(dialog, kWidth, 100, 580, 99, kMillimetre, true);
    EXPECT_EQ(desk.Text(kWidth), u"10.0");
    InitField(dialog, kWidth, 100, 580, 581, kMillimetre, true);
    EXPECT_EQ(desk.Text(kWidth), u"58.1");
    EXPECT_EQ(CheckFieldRange(dialog, kWidth, kMillimetre), kAbove);
  });
}

// The dialog reads each new text as millimetres and sets the position of the up-down.
TEST_F(NumericFields, UnitChangeConvertsRangeAndValue) {
  InDialog([](Desk& desk) {
    const auto convert = [&desk](int value, int from, int to, int dpi) {
      const FieldDialog dialog = {desk.Top(), kFields};
      InitField(dialog, kWidth, -32768, 32767, value, from, true);
      ChangeFieldUnit(dialog, kWidth, from, to, dpi);
    };
    convert(99, kDot, kInch, 305);
    EXPECT_EQ(desk.Text(kWidth), u"0.325");
    ExpectRange(kWidthSpin, 89, 1803, 89)(desk);
    convert(124, kMillimetre, kDot, 203);
    EXPECT_EQ(desk.Text(kWidth), u"99");
    ExpectRange(kWidthSpin, 27, 550, 550)(desk);
    // A limit other than 0 does not become 0.
    convert(500, kDot, kMillimetre, 32767);
    ExpectRange(kWidthSpin, 1, 4, 4)(desk);
  });
}

TEST_F(NumericFields, EditOutsideTheFieldsIsIgnored) {
  InDialog([](Desk& desk) {
    const FieldDialog dialog = {desk.Top(), kFields};
    SetDlgItemTextW(desk.Top(), kName, TEXT("12"));
    EXPECT_EQ(ReadField({desk.Top(), {}}, kName, kPlain), 0) << "a dialog without fields";
    EXPECT_EQ(ReadField(dialog, kName, kPlain), 12);
    InitField(dialog, kName, 0, 5, 3, kPlain, true);
    ChangeFieldUnit(dialog, kName, kDot, kInch, 203);
    EXPECT_FALSE(StepField(dialog, kName, 1, kMillimetre));
    EXPECT_FALSE(OnMeasureTyped(dialog, kName, kMillimetre));
    EXPECT_TRUE(OnPlainTyped(dialog, kName).isRejected);
    EXPECT_EQ(desk.Text(kName), u"12");
  });
}

TEST_F(NumericFields, HelpShowsRangeInTheUnit) {
  constexpr int kGap = IDS_HELP_PAPER_REGISTER_GAP;
  static constexpr HelpRow kRows[] = {
      // control, text, kind, range for 203 dpi, range for other densities
      {1, IDS_HELP_PAPER_PEEL_OFFSET, kHelpDotRange, -40, 99, -60, 149},
      {2, kGap, kHelpDotRangeUnits, 27, 550, 40, 826},
      Ranged(3, kGap, kHelpTenthsRange, 0, 80),
      Ranged(4, IDS_HELP_PAPER_REGISTER_PRINTABLE_LEFT, kHelpZero, 0, 0),
      Plain(0, 0),  // ends the table
      Plain(5, kGap)};
  InDialog([](Desk& desk) {
    const auto expectHelp = [&desk](int control, int unit, int dpi, std::u16string_view part) {
      SetDlgItemTextW(desk.Top(), IDC_HELP_TEXT, TEXT("before"));
      ShowHelp(desk.Top(), kRows, control, IDC_HELP_TEXT, unit, dpi);
      EXPECT_NE(desk.Text(IDC_HELP_TEXT).find(part), part.npos) << control;
    };
    expectHelp(1, kPlain, 305, u"（範囲は、-60ﾄﾞｯﾄから149ﾄﾞｯﾄです。）");
    expectHelp(2, kMillimetre, 203, u"（範囲は、3.4mmから68.8mmです。通常は3.0mmです）");
    expectHelp(3, kInch, 203, u"（範囲は、0.000inchから0.315inchです。通常は0.118inchです）");
    expectHelp(4, kInch, 203, u"（通常は 0.000inch です。）");
    expectHelp(5, kPlain, 203, u"before");
  });
}

}  // namespace
}  // namespace kestrel
