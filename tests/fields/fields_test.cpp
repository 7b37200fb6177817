// Measured values, numeric fields, the help box, option tables and locked controls.
#include <iomanip>
#include <sstream>

#include "operation/operation_options.h"
#include "paper/fields/controls.h"
#include "paper/fields/help_text.h"
#include "paper/fields/measured_value.h"
#include "paper/fields/numeric_field.h"
#include "platform/machine/text.h"
#include "resources/resource.h"
#include "tests/support/open_sheet.h"

namespace kestrel {
namespace {

using namespace support;

constexpr int kLeast = -32768, kMost = 32767;
constexpr int mm = kMillimetre, in = kInch;

TEST(MeasuredValue, ConvertsFormatsAndParsesAsTheTableSays) {
  for (const std::string& row : GoldenRows("measures.txt")) {
    std::istringstream words(row);
    std::string what, equals, expected, quoted;
    int a = 0, b, c, d, answer = -1;
    WCHAR text[kMeasureTextLength];
    std::u16string written;
    const auto typed = [&] { return platform::ToUtf16(quoted); };
    words >> what;
    if (what != "whole") words >> a;
    if (what == "convert" && words >> b >> c >> d) answer = ConvertMeasure(a, b, c, d);
    if (what == "limit" && words >> b >> c) answer = MeasureTextLimit(a, b, c);
    if (what == "write" && words >> b) written.assign(text, FormatMeasure(text, a, b));
    if (what == "read" && words >> std::quoted(quoted)) answer = ParseMeasure(typed().c_str(), a);
    if (what == "typed" && words >> std::quoted(quoted))
      answer = a == kPlain ? IsPlainTyping(typed().c_str()) : IsMeasureTyping(typed().c_str(), a);
    if (what == "whole" && words >> std::quoted(quoted)) {
      answer = -1000;
      const bool isWhole = ParseWholeNumber(typed().c_str(), &answer);
      EXPECT_EQ(isWhole, answer != -1000) << row;
    }
    words >> equals >> expected;
    EXPECT_EQ(what == "write" ? platform::ToUtf8(written) : std::to_string(answer), expected)
        << row;
  }
  EXPECT_EQ(ParseMeasure(nullptr, 1), 0);
  for (const int unit : {kMillimetre, kInch, kDot, kPlain}) {
    for (int value = kLeast; value <= kMost; ++value) {
      WCHAR text[kMeasureTextLength];
      FormatMeasure(text, value, unit);
      ASSERT_EQ(ParseMeasure(text, DecimalsOf(unit)), value) << "unit " << unit;
    }
  }
}

// Each test uses the window of the registration dialog.
using NumericFields = SheetTest;

constexpr int kWidth = IDC_PAPER_REGISTER_WIDTH, kWidthSpin = IDC_PAPER_REGISTER_WIDTH_SPIN;
constexpr int kName = IDC_PAPER_REGISTER_NAME;
constexpr NumericField kFields[] = {{kWidth, kWidthSpin, 27, 550, kDot}};

// A limit other than 0 does not become 0; without a density dots are not converted.
TEST_F(NumericFields, UnitChangeConvertsRangeAndValue) {
  const auto look = [](Desk& desk) {
    const FieldDialog dialog = {desk.Top(), kFields};
    // The dialog parses each new text as millimetres and sets the position.
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

    // A control outside the fields is ignored.
    SetDlgItemTextW(desk.Top(), kName, TEXT("12"));
    EXPECT_EQ(ReadField({desk.Top(), {}}, kName, kPlain), 0);
    EXPECT_EQ(ReadField(dialog, kName, kPlain), 12);
    EXPECT_EQ(CheckFieldRange(dialog, kName, kPlain), kInside);
    InitField(dialog, kName, 0, 5, 3, kPlain, true);
    ReformatField(dialog, kName, mm);
    ChangeFieldUnit(dialog, kName, kDot, in, 203);
    EXPECT_FALSE(StepField(dialog, kName, 1, mm));
    EXPECT_FALSE(OnMeasureTyped(dialog, kName, mm));
    EXPECT_TRUE(OnPlainTyped(dialog, kName).isRejected);
    EXPECT_EQ(desk.Text(kName), u"12");
  };
  Cancel(kPaperTab, {Click(IDC_PAPER_REGISTER), look, Click(IDCANCEL)});
}

TEST_F(NumericFields, HelpShowsRangeAndLockDisablesInputs) {
  constexpr int kGap = IDS_HELP_PAPER_REGISTER_GAP;
  static constexpr HelpRow kRows[] = {
      {1, IDS_HELP_PAPER_PEEL_OFFSET, kHelpDotRange, -40, 99, -60, 149},
      {2, kGap, kHelpDotRangeUnits, 27, 550, 40, 826},
      Ranged(3, kGap, kHelpTenthsRange, 0, 80),
      Ranged(4, IDS_HELP_PAPER_REGISTER_PRINTABLE_LEFT, kHelpZero, 0, 0),
      Plain(5, 0),
      Plain(6, 1),  // no such text
      Plain(0, 0),
      Plain(8, kGap)};  // after the row that ends the table
  const auto look = [](Desk& desk) {
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

    // Without permission the user can only close the dialog.
    LockControls(desk.Top(), IDD_PAPER_REGISTER, false);
    int open = 0;
    for (const auto& at : std::vector(desk.Windows().back().controls))
      open += at.tabStop && at.visible && at.enabled;
    EXPECT_EQ(open, 2);  // OK and Cancel
  };
  Cancel(kPaperTab, {Click(IDC_PAPER_REGISTER), look, Click(IDCANCEL)});
}

// The tests of the operation page cover valid values.
TEST(OptionTables, UnknownValueSelectsFirstEntry) {
  EXPECT_EQ(OptionIndex(SpeedOptions(), kOptionEnd), 0);
  for (const int outside : {-1, 3, 99}) EXPECT_EQ(OptionValue(SpeedOptions(), outside), 1);
}

}  // namespace
}  // namespace kestrel
