// The checks of a paper before it is stored, and the limits they use. What the dialog lets be typed
// is walked through there; here are the corners that it does not reach.
#include "paper/paper_checks.h"

#include "paper/paper_limits.h"
#include "paper/paper_options.h"
#include "tests/paper/paper_fixture.h"

namespace kestrel {
namespace {

using PaperName = PaperTest;

TEST_F(PaperName, IsRefusedInTheOrderOfTheRules) {
  DriverSettingsBlock block = With(2);
  CopyText(block.Printer.Papers[2].PaperName, u"\x2460?");
  const auto times = [](size_t n, char16_t unit) { return std::u16string(n, unit); };
  const struct {
    std::u16string name;
    int edited;
    UINT message;
  } cases[] = {
      {u"", -1, IDS_PAPER_NAME_MISSING},
      {u" \u3000 ", -1, IDS_PAPER_NAME_MISSING},
      {kFree, -1, IDS_PAPER_NAME_TAKEN},
      {kFree, 0, IDS_PAPER_NAME_TAKEN},
      {u" フリーサイズ", -1, 0},
      {u"P1", -1, IDS_PAPER_NAME_TAKEN},
      {u"P1", 1, 0},
      {u"P1", 2, IDS_PAPER_NAME_TAKEN},
      {u"p1", -1, 0},
      {u"P1 ", -1, 0},
      {u"P", -1, 0},
      {u"a?b", -1, 0},
      {u"\x2460?", -1, IDS_PAPER_NAME_TAKEN},
      {u"\u00e9tiquette", -1, IDS_BAD_CHARACTER},
      {u"a\xd83d", -1, IDS_BAD_CHARACTER},
      {times(31, u'棚') + u"a", -1, 0},
      {times(32, u'棚'), -1, IDS_NAME_TOO_LONG},
      {times(31, u'棚') + u"ab", -1, IDS_NAME_TOO_LONG},
      {times(63, u'ｱ'), -1, 0},
      {times(31, u'棚') + u"a棚", -1, IDS_NAME_TOO_LONG},
      {times(63, u'棚'), -1, IDS_NAME_TOO_LONG},
      {times(31, u'棚') + u"\u00e9" + times(31, u'棚'), -1, IDS_BAD_CHARACTER},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(CheckPaperName(block, c.name.c_str(), c.edited).message, c.message)
        << testing::PrintToString(c.name) << " for " << c.edited;
  }
  // Registered papers only, and no further than the table; a name without a terminator is its own.
  block.Printer.PaperNum = 1;
  EXPECT_TRUE(CheckPaperName(block, u"P1", -1).Passed());
  block.Printer.PaperNum = 32767;
  EXPECT_EQ(CheckPaperName(block, u"P1", -1).message, IDS_PAPER_NAME_TAKEN);
  for (WCHAR& unit : block.Printer.Papers[0].PaperName) unit = u'x';
  EXPECT_TRUE(CheckPaperName(block, times(63, u'x').c_str(), -1).Passed());
}

TEST(PaperLimits, FollowDensityAndUnit) {
  const PaperLimits mm = BuildPaperLimits(203);
  const int16_t tenths[] = {100, 580, 100, 1630, 0,   80,  0,   124,
                            0,   440, 0,   1630, 284, 480, 160, 1600};
  EXPECT_EQ(memcmp(&mm, tenths, sizeof tenths), 0);
  EXPECT_EQ(BuildPaperLimits(305).eyeMark.maximum, 82);
  EXPECT_EQ(BuildPaperLimits(305, kInch).eyeMark.maximum, 323);

  PaperLimits inch = BuildPaperLimits(203, kInch);
  const int16_t thousandths[] = {394, 2283, 394, 6417, 0,    315,  0,   488,
                                 0,   1732, 0,   6417, 1118, 1890, 630, 6299};
  EXPECT_EQ(memcmp(&inch, thousandths, sizeof thousandths), 0);
  ConvertPaperLimits(inch, kInch, kMillimetre);
  EXPECT_EQ(memcmp(&inch, tenths, sizeof tenths), 0);
}

// Each wrong size hides those behind it; none is cut to 16 bits before.
TEST(PaperSizes, AreCheckedInOrderAndWithinTheirLimits) {
  const struct {
    int unit;
    PaperSizes sizes;
    UINT message;
    int bound;
  } cases[] = {{kMillimetre, {100, 100, 0, 0}, 0, 0},
               {kMillimetre, {580, 1630, 124, 80}, 0, 0},
               {kMillimetre, {100, 100, -1, 0}, IDS_EYE_MARK_BELOW_MM, 0},
               {kMillimetre, {100, 100, 125, 0}, IDS_EYE_MARK_ABOVE_MM, 124},
               {kMillimetre, {100, 100, 0, -1}, IDS_GAP_BELOW_MM, 0},
               {kInch, {2283, 6417, 488, 315}, 0, 0},
               {kInch, {394, 394, -1, 0}, IDS_EYE_MARK_BELOW_INCH, 0},
               {kInch, {394, 394, 489, 0}, IDS_EYE_MARK_ABOVE_INCH, 488},
               {kInch, {394, 394, 0, -1}, IDS_GAP_BELOW_INCH, 0},
               {kMillimetre, {0, 0, 999, 999}, IDS_WIDTH_BELOW_MM, 100},
               {kMillimetre, {100, 0, 999, 999}, IDS_LENGTH_BELOW_MM, 100},
               {kMillimetre, {100, 100, 999, 999}, IDS_EYE_MARK_ABOVE_MM, 124},
               {kMillimetre, {70000, 100, 0, 0}, IDS_WIDTH_ABOVE_MM, 580}};
  for (const auto& c : cases) {
    const PaperVerdict verdict = CheckPaperSizes(c.sizes, BuildPaperLimits(203, c.unit), c.unit);
    EXPECT_EQ(verdict.message, c.message);
    EXPECT_EQ(verdict.bound, c.bound) << c.message;
  }
}

TEST(PrintableArea, IsCentredAsWideAsTheHeadPrintsAndWithinTheLabel) {
  const struct {
    uint16_t unit;
    int16_t width, printableWidth, left;
  } cases[] = {
      {kMillimetre, 580, 480, 50}, {kMillimetre, 481, 480, 0}, {kMillimetre, 400, 400, 0},
      {kInch, 2283, 1890, 196},    {kInch, 1890, 1890, 0},     {kInch, 400, 400, 0},
  };
  for (const auto& c : cases) {
    PaperInfo paper = NewPaper();
    paper.Unit = c.unit;
    paper.LabelWidth = c.width;
    paper.LabelHeight = 777;
    paper.PrintableTop = 5;
    DerivePrintableArea(paper);
    EXPECT_EQ(paper.PrintableWidth, c.printableWidth);
    EXPECT_EQ(paper.PrintableLeft, c.left) << c.width;
    EXPECT_EQ(paper.PrintableTop, 0);
    EXPECT_EQ(paper.PrintableHeight, 777);
    EXPECT_TRUE(CheckPrintableArea(paper).Passed());
  }
  PaperInfo paper = NewPaper();
  paper.PrintableLeft = paper.PrintableTop = 1;  // 1 + 580 on 580
  EXPECT_EQ(CheckPrintableArea(paper).message, IDS_PRINTABLE_WIDTH_WRONG);
  paper.PrintableLeft = 0;
  EXPECT_EQ(CheckPrintableArea(paper).message, IDS_PRINTABLE_HEIGHT_WRONG);
  paper.PrintableLeft = paper.PrintableWidth = 32767;  // no 16-bit sum
  EXPECT_EQ(CheckPrintableArea(paper).message, IDS_PRINTABLE_WIDTH_WRONG);
}

TEST(PaperOptions, EndWhereTheirCountSays) {
  for (const OptionTable* table : {&PaperGradeOptions(), &PaperDarknessOptions()}) {
    EXPECT_EQ(table->entries[table->count].value, kOptionEnd);
  }
}

}  // namespace
}  // namespace kestrel
