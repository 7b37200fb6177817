// The table of papers and the checks before a paper is stored or deleted.
#include <tuple>

#include "paper/paper_checks.h"
#include "paper/paper_limits.h"
#include "tests/paper/paper_fixture.h"

namespace kestrel {
namespace {

using PaperRules = PaperTest;

TEST_F(PaperRules, UnknownPaperIdFallsBackToFreeSize) {
  DriverSettingsBlock block = DefaultBlock();
  for (const int id : {258, 255, 0, -32768}) EXPECT_EQ(PaperEntryOfId(block, id), -1) << id;
  EXPECT_EQ(PaperEntryOfId(block, 256), 1);
  WCHAR name[4] = {};
  for (const int entry : {1, 20, 32767, -1}) {
    EXPECT_EQ(PaperEntryId(block, entry), 256);
    EXPECT_EQ(&PaperOfEntry(block, entry), &block.Record.Private.FreePaper);
    PaperEntryName(block, entry, name, 4);
  }
  EXPECT_EQ(name, std::u16string(u"フリー"));
}

// Returns the names in all slots of the table, without the empty ones.
std::vector<std::u16string> Names(const DriverSettingsBlock& block) {
  std::vector<std::u16string> names;
  for (const PaperInfo& paper : block.Printer.Papers)
    if (paper.PaperName[0] != 0) names.emplace_back(paper.PaperName);
  return names;
}

TEST_F(PaperRules, DeletionMovesFollowingPapersDown) {
  DriverSettingsBlock block = With(4);
  const std::vector<std::u16string> left = {kStandard, u"P1", u"P3", u"P4"};
  EXPECT_TRUE(DeletePaper(block, 2));
  EXPECT_EQ(Names(block), left);
  for (const int entry : {-1, 4, 20}) {
    EXPECT_FALSE(DeletePaper(block, entry)) << entry;
    EXPECT_EQ(Names(block), left);
  }
  EXPECT_EQ(block.Record.Private.PaperID, 257);
}

TEST_F(PaperRules, FullTableRejectsAnotherPaper) {
  DriverSettingsBlock block = DefaultBlock();
  const PaperInfo paper = Paper(u"PX", {});
  ReplacePaper(block, 0, paper);
  ReplacePaper(block, 1, paper);
  EXPECT_EQ(block.Record.Private.FreePaper.PaperName, std::u16string(u"PX"));
  for (int count = 1; count < kPaperCapacity; ++count) EXPECT_TRUE(AppendPaper(block, paper));
  EXPECT_FALSE(AppendPaper(block, paper));
  EXPECT_EQ(Names(block), std::vector<std::u16string>(20, u"PX"));
  EXPECT_TRUE(DeletePaper(block, 0));
  EXPECT_EQ(Names(block), std::vector<std::u16string>(19, u"PX"));
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
  for (const auto& [count, passes] : {std::pair{1, false}, {2, true}, {4, true}}) {
    block.Printer.PaperNum = static_cast<int16_t>(count);
    EXPECT_EQ(CheckPaperDeletion(block, 0).Passed(), passes) << count;
  }
}

TEST_F(PaperRules, ConversionChangesMeasuredFieldsOnly) {
  PaperInfo paper = StandardPaper();
  paper.Yoshi = 1;
  const std::u16string name = kStandard;
  ConvertPaper(paper, kInch, 203);
  EXPECT_EQ(Describe(paper), name + u" 0 3 2283 2677 118 118 1 197 0 1890 2559 1 0 0 0 0");
  ConvertPaper(paper, kDot, 305);
  EXPECT_EQ(Describe(paper), name + u" 0 3 696 816 36 36 2 60 0 576 780 1 0 0 0 0");
}

TEST_F(PaperRules, InvalidNameFailsTheFirstRuleItBreaks) {
  DriverSettingsBlock block = With(2);
  CopyText(block.Printer.Papers[2].PaperName, u"\x2460?");
  const std::u16string free = kFree, full(31, u'棚');
  const std::tuple<UINT, int, std::vector<std::u16string>> cases[] = {
      {2222, -1, {u"", u" \u3000 "}},
      {2212, -1, {kFree, kStandard, u"P1", u"\x2460?"}},
      {2212, 0, {kFree, u"P1"}},
      {2212, 2, {u"P1"}},
      {0, 1, {u"P1"}},  // its own name
      {0, -1, {u" " + free, u"p1", u"P1 ", u"P", u"a?b", full + u"a", std::u16string(63, u'ｱ')}},
      {2429, -1, {u"\u00e9tiquette", u"a\xd83d", full + u"\u00e9" + full}},
      {2428, -1, {full + u"棚", full + u"ab", full + u"a棚", full + full}}};
  for (const auto& [message, edited, names] : cases) {
    for (const std::u16string& name : names) {
      EXPECT_EQ(CheckPaperName(block, name.c_str(), edited).message, message)
          << testing::PrintToString(name) << " for " << edited;
    }
  }
  // The check covers the registered papers only, at most the size of the table, and a stored name
  // without a terminator.
  block.Printer.PaperNum = 1;
  EXPECT_TRUE(CheckPaperName(block, u"P1", -1).Passed());
  block.Printer.PaperNum = 32767;
  EXPECT_EQ(CheckPaperName(block, u"P1", -1).message, 2212u);
  std::fill_n(block.Printer.Papers[0].PaperName, kPaperNameLength, u'x');
  EXPECT_TRUE(CheckPaperName(block, std::u16string(63, u'x').c_str(), -1).Passed());
}

// golden/paper_sizes.txt: for each unit the limits, then for each size a row of messages and
// limits. The sizes after the tested one are too large, so that the order of the checks shows.
TEST_F(PaperRules, FirstSizeOutsideItsLimitsFails) {
  const PaperLimits millimetres = BuildPaperLimits(203);
  for (const int unit : {kMillimetre, kInch}) {
    PaperLimits limits = BuildPaperLimits(203, unit);
    for (size_t at = 0; at < sizeof limits; at += 2) log_ += u' ' + Number(At(&limits, at));
    PaperSizes sizes = {65836, 65836, 65836, 65836};
    for (const auto& [size, limit] : {std::pair{&PaperSizes::width, limits.width},
                                      {&PaperSizes::length, limits.length},
                                      {&PaperSizes::eyeMark, limits.eyeMark},
                                      {&PaperSizes::gap, limits.gap}}) {
      log_ += u'\n';
      for (const int value :
           {65836, limit.minimum - 1, limit.maximum + 1, int{limit.minimum}, int{limit.maximum}}) {
        sizes.*size = value;
        const PaperCheckResult result = CheckPaperSizes(sizes, limits, unit);
        log_ += u' ' + Number(static_cast<int>(result.message)) + u' ' + Number(result.bound);
      }
    }
    log_ += u'\n';
    ConvertPaperLimits(limits, unit, kMillimetre);
    EXPECT_EQ(memcmp(&limits, &millimetres, sizeof limits), 0);
  }
  ExpectGolden("paper_sizes.txt");
  EXPECT_EQ(BuildPaperLimits(305).eyeMark.maximum, 82);
  EXPECT_EQ(BuildPaperLimits(305, kInch).eyeMark.maximum, 323);
}

TEST(PrintableArea, IsCentredAndAtMostAsWideAsTheHead) {
  PaperInfo paper = NewPaper();
  paper.LabelHeight = 777;
  const auto derived = [&](uint16_t unit, int16_t width) {
    paper.Unit = unit;
    paper.LabelWidth = width;
    paper.PrintableTop = 5;
    DerivePrintableArea(paper);
    EXPECT_TRUE(CheckPrintableArea(paper).Passed());
    return Describe(paper);
  };
  EXPECT_EQ(derived(kMillimetre, 580), u" 0 3 580 777 30 30 0 50 0 480 777 0 0 0 0 0");
  EXPECT_EQ(derived(kMillimetre, 481), u" 0 3 481 777 30 30 0 0 0 480 777 0 0 0 0 0");
  EXPECT_EQ(derived(kInch, 2283), u" 0 3 2283 777 30 30 1 196 0 1890 777 0 0 0 0 0");
  ++paper.PrintableTop;
  EXPECT_EQ(CheckPrintableArea(paper).message, IDS_PRINTABLE_HEIGHT_WRONG);
  paper.PrintableLeft = 394;  // 394 + 1890 on 2283
  EXPECT_EQ(CheckPrintableArea(paper).message, IDS_PRINTABLE_WIDTH_WRONG);
  paper.PrintableLeft = paper.PrintableWidth = 32767;  // the sum exceeds 16 bits
  EXPECT_EQ(CheckPrintableArea(paper).message, IDS_PRINTABLE_WIDTH_WRONG);
}

}  // namespace
}  // namespace kestrel
