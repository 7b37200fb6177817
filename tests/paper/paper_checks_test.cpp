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
  constexpr UINT kMissing = IDS_PAPER_NAME_MISSING, kTaken = IDS_PAPER_NAME_TAKEN;
  constexpr UINT kBad = IDS_BAD_CHARACTER, kLong = IDS_NAME_TOO_LONG;
  const auto times = [](size_t n, char16_t unit) { return std::u16string(n, unit); };
  const std::u16string free = kFree, full = times(31, u'棚');
  const struct {
    UINT message;
    int edited;
    std::vector<std::u16string> names;
  } cases[] = {
      {kMissing, -1, {u"", u" \u3000 "}},
      {kTaken, -1, {kFree, kStandard, u"P1", u"\x2460?"}},
      {kTaken, 0, {kFree, u"P1"}},
      {kTaken, 2, {u"P1"}},
      {0, 1, {u"P1"}},  // its own
      {0, -1, {u" " + free, u"p1", u"P1 ", u"P", u"a?b", full + u"a", times(63, u'ｱ')}},
      {kBad, -1, {u"\u00e9tiquette", u"a\xd83d", full + u"\u00e9" + full}},
      {kLong, -1, {full + u"棚", full + u"ab", full + u"a棚", full + full}},
  };
  for (const auto& c : cases) {
    for (const std::u16string& name : c.names) {
      EXPECT_EQ(CheckPaperName(block, name.c_str(), c.edited).message, c.message)
          << testing::PrintToString(name) << " for " << c.edited;
    }
  }
  // Registered papers only, and no further than the table; a name without a terminator is its own.
  block.Printer.PaperNum = 1;
  EXPECT_TRUE(CheckPaperName(block, u"P1", -1).Passed());
  block.Printer.PaperNum = 32767;
  EXPECT_EQ(CheckPaperName(block, u"P1", -1).message, kTaken);
  for (WCHAR& unit : block.Printer.Papers[0].PaperName) unit = u'x';
  EXPECT_TRUE(CheckPaperName(block, times(63, u'x').c_str(), -1).Passed());
}

// The dialog's walk shows the rest; here an index of no registered paper, with a stale one behind.
TEST_F(PaperName, OfNoRegisteredPaperIsNotDeleted) {
  DriverSettingsBlock block = With(3);
  block.Printer.PaperNum = 3;
  EXPECT_TRUE(CheckPaperDeletion(block, 2).Passed());
  for (int entry : {-1, 3, 4}) {
    EXPECT_EQ(CheckPaperDeletion(block, entry).message, IDS_PAPER_FIXED) << entry;
  }
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
  constexpr int mm = kMillimetre, in = kInch;
  const struct {
    int unit;
    PaperSizes sizes;
    UINT message;
    int bound;
  } cases[] = {{mm, {100, 100, 0, 0}, 0, 0},
               {mm, {580, 1630, 124, 80}, 0, 0},
               {mm, {100, 100, -1, 0}, IDS_EYE_MARK_BELOW_MM, 0},
               {mm, {100, 100, 125, 0}, IDS_EYE_MARK_ABOVE_MM, 124},
               {mm, {100, 100, 0, -1}, IDS_GAP_BELOW_MM, 0},
               {in, {2283, 6417, 488, 315}, 0, 0},
               {in, {394, 394, -1, 0}, IDS_EYE_MARK_BELOW_INCH, 0},
               {in, {394, 394, 489, 0}, IDS_EYE_MARK_ABOVE_INCH, 488},
               {in, {394, 394, 0, -1}, IDS_GAP_BELOW_INCH, 0},
               {mm, {0, 0, 999, 999}, IDS_WIDTH_BELOW_MM, 100},
               {mm, {100, 0, 999, 999}, IDS_LENGTH_BELOW_MM, 100},
               {mm, {100, 100, 999, 999}, IDS_EYE_MARK_ABOVE_MM, 124},
               {mm, {70000, 100, 0, 0}, IDS_WIDTH_ABOVE_MM, 580}};
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
