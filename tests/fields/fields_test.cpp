// The dialogs' toolkit: measured values, fields in a dialog of the driver, help box, options,
// locks.
#include "operation/operation_options.h"
#include "paper/fields/controls.h"
#include "paper/fields/help_text.h"
#include "paper/fields/measured_value.h"
#include "paper/fields/numeric_field.h"
#include "resources/resource.h"
#include "tests/support/open_sheet.h"

namespace kestrel {
namespace {

using namespace support;

constexpr int kLeast = -32768, kMost = 32767;
constexpr int mm = kMillimetre, in = kInch;

TEST(MeasuredValue, ConvertsWithHalfTheDivisorAdded) {
  constexpr int kCases[][5] = {
      {580, mm, in, 203, 2283},     {2283, in, mm, 203, 580},        {99, kDot, mm, 203, 124},
      {99, kDot, mm, 305, 82},      {99, kDot, in, 203, 488},        {30, mm, kDot, 203, 24},
      {1000, in, kDot, 305, 305},   {1, kDot, in, 203, 5},           {-580, mm, in, 203, -2282},
      {kMost, mm, in, 203, 129004}, {kLeast, kDot, mm, 203, -40999}, {77, kPlain, in, 203, 77},
      {77, kDot, kPlain, 203, 77},  {77, -1, kDot, 203, 77},         {77, kDot, mm, 0, 77},
  };
  for (const auto& [value, from, to, dpi, expected] : kCases) {
    EXPECT_EQ(ConvertMeasure(value, from, to, dpi), expected)
        << value << " from " << from << " to " << to << " at " << dpi;
  }
}

std::u16string Formatted(int unit, std::initializer_list<int> values) {
  std::u16string all;
  for (const int value : values) {
    WCHAR text[kMeasureTextLength];
    std::fill_n(text, kMeasureTextLength, u'#');
    const int length = FormatMeasure(text, value, unit);
    EXPECT_EQ(std::u16string(text).size(), static_cast<size_t>(length));
    all += text + std::u16string(u"|");
  }
  return all;
}

std::vector<int> Parsed(int decimals, std::initializer_list<const WCHAR*> texts) {
  std::vector<int> values;
  for (const WCHAR* text : texts) values.push_back(ParseMeasure(text, decimals));
  return values;
}

TEST(MeasuredValue, IsWrittenWithTheDecimalsOfItsUnitAndReadUpToWhatIsNoNumber) {
  EXPECT_EQ(Formatted(mm, {580, 5, -5}), u"58.0|0.5|-0.5|");
  EXPECT_EQ(Formatted(in, {40, kLeast, INT32_MIN}), u"0.040|-32.768|-2147483.648|");
  EXPECT_EQ(Formatted(kDot, {0, -999}), u"0|-999|");
  using Values = std::vector<int>;
  EXPECT_EQ(Parsed(0, {u" -3", u"\t 7", u"1.9", u"--5", u"-+5", u"32768", u"１２", u"12ab"}),
            (Values{-3, 7, 1, 5, -5, 32768, 0, 12}));
  EXPECT_EQ(Parsed(1, {u"58", u"58.25", u"", nullptr, u"+7", u".5", u"-.5", u"+-1.5", u"--1.5"}),
            (Values{580, 582, 0, 0, 70, 5, -5, 0, 5}));
  EXPECT_EQ(Parsed(3, {u"2.5", u"1.23456", u"-0.5", u"5.", u"4294967296", u"2147484", u"-2147484"}),
            (Values{2500, 1234, -500, 5000, INT32_MAX, INT32_MAX, INT32_MIN}));
  EXPECT_EQ(Parsed(5, {u"1", u"1.99999999"}), (Values{100000, 199999}));
  EXPECT_EQ(Parsed(6, {u"1.5"}), Values{0});
  for (const int unit : {kMillimetre, kInch, kDot, kPlain}) {
    for (int value = kLeast; value <= kMost; ++value) {
      WCHAR text[kMeasureTextLength];
      FormatMeasure(text, value, unit);
      ASSERT_EQ(ParseMeasure(text, DecimalsOf(unit)), value) << "unit " << unit;
    }
  }
}

TEST(MeasuredValue, LimitsTheTextByItsWidestBound) {
  constexpr int kCases[][4] = {
      {100, 1630, mm, 5}, {0, 9, mm, 3},     {-5, 5, mm, 4},   {0, 315, in, 5},
      {0, 12345, in, 6},  {0, 9, kPlain, 1}, {0, 10, kDot, 2}, {-9999, 5, kPlain, 5},
  };
  for (const auto& [minimum, maximum, unit, expected] : kCases) {
    EXPECT_EQ(MeasureTextLimit(minimum, maximum, unit), expected) << minimum << ".." << maximum;
  }
}

TEST(Typing, TakesBlanksInFrontAndOnePoint) {
  for (const auto* good : {u"5.5", u" 7.", u".5", u"", u"99"})
    EXPECT_TRUE(IsMeasureTyping(good, mm));
  for (const auto* bad : {u"5.5.", u"4. 5", u"4 ", u"-4", u"4x"})
    EXPECT_FALSE(IsMeasureTyping(bad, in));
  EXPECT_TRUE(IsMeasureTyping(u"  .07", in) && IsMeasureTyping(u" 55", kDot));
  EXPECT_FALSE(IsMeasureTyping(u"5.5", kDot));
  for (const auto* good : {u"-12", u"9", u"0", u"-", u"5-3", u""}) EXPECT_TRUE(IsPlainTyping(good));
  for (const auto* bad : {u"1.5", u"1a", u" 1", u"/", u":"}) EXPECT_FALSE(IsPlainTyping(bad));
}

// Inside the registration dialog.
class Fields : public SheetTest {
 protected:
  void Try(Step work) {
    Cancel(kPaperTab, {Click(IDC_PAPER_REGISTER), std::move(work), Click(IDCANCEL)});
  }
};

constexpr int kWidth = IDC_PAPER_REGISTER_WIDTH, kWidthSpin = IDC_PAPER_REGISTER_WIDTH_SPIN;
constexpr int kName = IDC_PAPER_REGISTER_NAME;
constexpr NumericField kFields[] = {{kWidth, kWidthSpin, 27, 550, kDot}};

// A bound that would vanish stays at one step; without a density dots stay dots.
TEST_F(Fields, AreRaisedToTheirMinimumAndConvertedToAnotherUnit) {
  Try([](Desk& desk) {
    const FieldDialog dialog = {desk.Top(), kFields};
    // Where the dialog itself reads the text the position is that of millimetres.
    const auto expect = [&](const std::u16string& text, int minimum, int maximum, int position) {
      EXPECT_EQ(desk.Text(kWidth), text);
      ExpectRange(kWidthSpin, minimum, maximum, position)(desk);
    };
    InitField(dialog, kWidth, 100, 1630, 99, mm, true);
    expect(u"10.0", 100, 1630, 100);
    InitField(dialog, kWidth, 100, 580, 581, mm, true);
    expect(u"58.1", 100, 580, 580);
    EXPECT_EQ(CheckFieldRange(dialog, kWidth, mm), kAbove);
    const auto converted = [&](int value, int from, int to, int dpi) {
      InitField(dialog, kWidth, kLeast, kMost, value, from, true);
      ChangeFieldUnit(dialog, kWidth, from, to, dpi);
      return desk.Text(kWidth);
    };
    expect(converted(99, kDot, in, 305), 89, 1803, 89);
    expect(converted(124, mm, kDot, 203), 27, 550, 550);
    expect(converted(500, kDot, mm, 32767), 1, 4, 4);
    expect(converted(99, kDot, mm, 0), 27, 550, 99);

    // Nothing is done with a control that they do not know.
    SetDlgItemTextW(desk.Top(), kName, TEXT("12"));
    EXPECT_EQ(ReadField({desk.Top(), {}}, kName, kPlain), 0);
    EXPECT_EQ(ReadField(dialog, kName, kPlain), 12);
    EXPECT_EQ(CheckFieldRange(dialog, kName, kPlain), kInside);
    InitField(dialog, kName, 0, 5, 3, kPlain, true);
    ReformatField(dialog, kName, mm);
    ChangeFieldUnit(dialog, kName, kDot, in, 203);
    EXPECT_FALSE(StepField(dialog, kName, 1, mm));
    EXPECT_FALSE(OnMeasureTyped(dialog, kName, mm));
    EXPECT_FALSE(OnPlainTyped(dialog, kName));
    EXPECT_EQ(desk.Text(kName), u"12");
  });
}

TEST_F(Fields, AreDescribedWithTheirRange) {
  constexpr int kGap = IDS_HELP_PAPER_REGISTER_GAP;
  static constexpr HelpRow kRows[] = {
      {1, IDS_HELP_PAPER_PEEL_OFFSET, kHelpDotRange, -40, 99, -60, 149},
      {2, kGap, kHelpDotRangeUnits, 27, 550, 40, 826},
      Ranged(3, kGap, kHelpTenthsRange, 0, 80),
      Ranged(4, IDS_HELP_PAPER_REGISTER_PRINTABLE_LEFT, kHelpZero, 0, 0),
      Plain(5, 0),
      Plain(6, 1),  // no such text
      Plain(0, 0),
      Plain(8, kGap)};  // behind the row that ends the table
  Try([](Desk& desk) {
    const auto expect = [&](int control, int unit, int dpi, std::u16string_view part) {
      SetDlgItemTextW(desk.Top(), IDC_HELP_TEXT, TEXT("before"));
      ShowHelp(desk.Top(), kRows, control, IDC_HELP_TEXT, unit, dpi);
      EXPECT_NE(desk.Text(IDC_HELP_TEXT).find(part), part.npos) << control;
    };
    expect(1, kPlain, 305, u"（範囲は、-60ﾄﾞｯﾄから149ﾄﾞｯﾄです。）");
    expect(2, mm, 203, u"（範囲は、3.4mmから68.8mmです。通常は3.0mmです）");
    expect(2, kDot, 0, u"（範囲は、40dotから826dotです。");
    expect(3, in, 203, u"（範囲は、0.000inchから0.315inchです。通常は0.118inchです）");
    expect(4, in, 203, u"（通常は 0.000inch です。）");
    for (const int none : {5, 7, 8}) expect(none, mm, 203, u"before");
    ShowHelp(desk.Top(), kRows, 6, IDC_HELP_TEXT, kPlain, 203);
    EXPECT_EQ(desk.Text(IDC_HELP_TEXT), u"");
  });
}

TEST_F(Fields, AreAllLockedInTheRegistrationDialogWithoutPermission) {
  Try([](Desk& desk) {
    LockControls(desk.Top(), IDD_PAPER_REGISTER, false);
    const platform::WindowView view = desk.Windows().back();
    int open = 0;
    for (const auto& at : view.controls) open += at.tabStop && at.visible && at.enabled;
    EXPECT_EQ(open, 2);  // OK and Cancel
  });
}

// The operation page's own walk shows the rest.
TEST(OptionTables, AnswerTheFirstEntryForWhatTheyLack) {
  EXPECT_EQ(OptionIndex(SpeedOptions(), kOptionEnd), 0);
  for (const int outside : {-1, 3, 99}) EXPECT_EQ(OptionValue(SpeedOptions(), outside), 1);
}

}  // namespace
}  // namespace kestrel
