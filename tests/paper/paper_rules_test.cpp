// The table of papers and the checks before a paper is stored or deleted.
#include "paper/paper_checks.h"
#include "paper/paper_limits.h"
#include "tests/paper/paper_fixture.h"

namespace kestrel {
namespace {

using PaperRules = PaperTest;

TEST_F(PaperRules, UnknownPaperIdFallsBackToFreeSize) {
  DriverSettingsBlock block = DefaultBlock();
  for (const int id : {258, 255, 0, -32768}) EXPECT_EQ(PaperEntryOfId(block, id), -1) << id;
  EXPECT_EQ(PaperEntryOfId(block, kFreePaperId), 1);
  for (const int entry : {1, 20, 32767, -1}) {
    EXPECT_EQ(PaperEntryId(block, entry), kFreePaperId);
    EXPECT_EQ(&PaperOfEntry(block, entry), &block.Record.Private.FreePaper);
  }
}

// Returns the names in all slots of the table, without the empty ones.
std::vector<std::u16string> Names(const DriverSettingsBlock& block) {
  std::vector<std::u16string> names;
  for (const PaperInfo& paper : block.Printer.Papers)
    if (paper.PaperName[0] != 0) names.emplace_back(paper.PaperName);
  return names;
}

TEST_F(PaperRules, TableHoldsTwentyPapersWithoutAGap) {
  DriverSettingsBlock block = With(19);
  EXPECT_FALSE(AppendPaper(block, Paper(u"X")));
  EXPECT_EQ(Names(block).back(), u"P19");
  EXPECT_TRUE(DeletePaper(block, 1));
  EXPECT_EQ(Names(block).size(), 19u);
  EXPECT_EQ(Names(block)[1], u"P2");
  for (const int entry : {-1, 19, 20}) EXPECT_FALSE(DeletePaper(block, entry)) << entry;
  EXPECT_EQ(block.Printer.PaperNum, 19);
  EXPECT_EQ(block.Printer.HeadDensity, 203) << "the field after the last slot";
}

TEST_F(PaperRules, DeletionIsRejectedForFixedFreeSizeAndLastPaper) {
  DriverSettingsBlock block = With(3);
  block.Printer.Papers[4].UserDef = 1;  // an unused slot
  for (const int entry : {0, -1, 4}) {
    EXPECT_EQ(CheckPaperDeletion(block, entry).message, IDS_PAPER_FIXED) << entry;
  }
  EXPECT_TRUE(CheckPaperDeletion(block, 3).Passed());
  block.Printer.Papers[0].UserDef = 1;
  EXPECT_TRUE(CheckPaperDeletion(block, 0).Passed());
  block.Printer.PaperNum = 1;
  EXPECT_FALSE(CheckPaperDeletion(block, 0).Passed());
}

// An inch has 25.4 mm, and 305 dots.
TEST_F(PaperRules, ConversionChangesMeasuredFieldsOnly) {
  PaperInfo paper = StandardPaper();
  paper.Yoshi = 1;
  ConvertPaper(paper, kInch, 305);
  ExpectSizes(paper, 2283, 2677, 118, kInch);
  EXPECT_EQ(paper.PrintableLeft, 197);
  EXPECT_EQ(paper.PrintableWidth, 1890);
  EXPECT_EQ(paper.PrintableHeight, 2559);
  ConvertPaper(paper, kDot, 305);
  ExpectSizes(paper, 696, 816, 36, kDot);
  EXPECT_EQ(paper.EyeMarkSize, 36);
  EXPECT_EQ(paper.Yoshi, 1);
}

TEST_F(PaperRules, InvalidNameFailsTheFirstRuleItBreaks) {
  DriverSettingsBlock block = With(2);
  CopyText(block.Printer.Papers[2].PaperName, u"\x2460?");
  const std::u16string full(31, u'棚');  // 62 bytes in code page 932, of which 63 are allowed
  const struct {
    UINT message;  // 0: the names pass
    int edited;    // slot of the paper that is renamed; -1: a new paper
    std::vector<std::u16string> names;
  } rows[] = {{IDS_PAPER_NAME_MISSING, -1, {u"", u" \u3000 "}},
              {IDS_PAPER_NAME_TAKEN, -1, {kFree, kStandard, u"P1", u"\x2460?"}},
              {IDS_PAPER_NAME_TAKEN, 0, {u"P1"}},
              {IDS_PAPER_NAME_TAKEN, 2, {u"P1"}},
              {0, 1, {u"P1"}},
              {0, -1, {u"p1", u"P1 ", u"P", u"a?b", full + u"a", std::u16string(63, u'ｱ')}},
              {IDS_BAD_CHARACTER, -1, {u"\u00e9tiquette", u"a\xd83d", full + u"\u00e9" + full}},
              {IDS_NAME_TOO_LONG, -1, {full + u"棚", full + u"ab", full + u"a棚", full + full}}};
  for (const auto& row : rows) {
    for (const std::u16string& name : row.names) {
      EXPECT_EQ(CheckPaperName(block, name.c_str(), row.edited).message, row.message)
          << testing::PrintToString(name) << " for slot " << row.edited;
    }
  }
  // Stored values may exceed the table, and a stored name may have no terminator.
  block.Printer.PaperNum = 32767;
  EXPECT_EQ(CheckPaperName(block, u"P1", -1).message, UINT{IDS_PAPER_NAME_TAKEN});
  std::fill_n(block.Printer.Papers[0].PaperName, kPaperNameLength, u'x');
  EXPECT_TRUE(CheckPaperName(block, std::u16string(63, u'x').c_str(), -1).Passed());
}

// In the order of the checks. The dialog's tests cover inches.
TEST_F(PaperRules, FirstSizeOutsideItsLimitsFails) {
  constexpr struct {
    int PaperSizes::*size;
    int minimum, maximum;  // tenths of a millimetre
    UINT below, above;     // messages
  } kRows[] = {
      {&PaperSizes::width, 100, 580, IDS_WIDTH_BELOW_MM, IDS_WIDTH_ABOVE_MM},
      {&PaperSizes::length, 100, 1630, IDS_LENGTH_BELOW_MM, IDS_LENGTH_ABOVE_MM},
      {&PaperSizes::eyeMark, 0, 124, IDS_EYE_MARK_BELOW_MM, IDS_EYE_MARK_ABOVE_MM},  // 99 dots
      {&PaperSizes::gap, 0, 80, IDS_GAP_BELOW_MM, IDS_GAP_ABOVE_MM},
  };
  const PaperLimits limits = BuildPaperLimits(203);
  PaperSizes sizes = {65836, 65836, 65836, 65836};  // as 16 bits a valid width
  const auto message = [&] { return CheckPaperSizes(sizes, limits, kMillimetre).message; };
  for (const auto& row : kRows) {
    EXPECT_EQ(message(), row.above);
    sizes.*row.size = row.maximum + 1;
    EXPECT_EQ(message(), row.above);
    sizes.*row.size = row.minimum - 1;
    EXPECT_EQ(message(), row.below);
    EXPECT_EQ(CheckPaperSizes(sizes, limits, kMillimetre).bound, row.minimum);
    sizes.*row.size = row.minimum;
    EXPECT_NE(message(), row.below);
    sizes.*row.size = row.maximum;
  }
  EXPECT_EQ(message(), 0u);
}

TEST(PrintableArea, IsCentredAndAtMostAsWideAsTheHead) {
  constexpr struct {
    uint16_t unit;
    int16_t width, printableLeft, printableWidth;
  } kRows[] = {{kMillimetre, 400, 0, 400}, {kMillimetre, 580, 50, 480}, {kInch, 2283, 196, 1890}};
  PaperInfo paper = NewPaper();
  paper.PrintableTop = 5;
  for (const auto& row : kRows) {
    paper.Unit = row.unit;
    paper.LabelWidth = row.width;
    DerivePrintableArea(paper);
    EXPECT_EQ(paper.PrintableLeft, row.printableLeft);
    EXPECT_EQ(paper.PrintableWidth, row.printableWidth);
    EXPECT_EQ(paper.PrintableTop, 0);
    EXPECT_EQ(paper.PrintableHeight, paper.LabelHeight);
    EXPECT_TRUE(CheckPrintableArea(paper).Passed());
  }
  ++paper.PrintableTop;
  EXPECT_EQ(CheckPrintableArea(paper).message, IDS_PRINTABLE_HEIGHT_WRONG);
  paper.PrintableLeft = 394;  // 394 + 1890 on 2283
  EXPECT_EQ(CheckPrintableArea(paper).message, IDS_PRINTABLE_WIDTH_WRONG);
  paper.PrintableLeft = paper.PrintableWidth = 32767;  // the sum exceeds 16 bits
  EXPECT_EQ(CheckPrintableArea(paper).message, IDS_PRINTABLE_WIDTH_WRONG);
}

}  // namespace
}  // namespace kestrel
