// The table of papers, and what a paper must pass before it is stored or deleted.
#include <tuple>

#include "paper/paper_checks.h"
#include "paper/paper_limits.h"
#include "tests/paper/paper_fixture.h"

namespace kestrel {
namespace {

using PaperRules = PaperTest;

TEST_F(PaperRules, WhatNamesNoRegisteredPaperMeansTheFreeSize) {
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

TEST_F(PaperRules, TheTableGrowsAndShrinks) {
  DriverSettingsBlock block = With(4);
  std::u16string told;
  const auto tell = [&](bool done) {  // and the second letter of each name
    told += done ? u" +" : u" -";
    for (const PaperInfo& paper : block.Printer.Papers)
      if (paper.PaperName[1] != 0) told += paper.PaperName[1];
  };
  for (const int slot : {2, -1, 4, 20}) tell(DeletePaper(block, slot));
  EXPECT_EQ(block.Record.Private.PaperID, 257);
  // Nor is it to be offered, though a stale one lies behind; the only one stays.
  block.Printer.Papers[4].UserDef = block.Printer.Papers[0].UserDef = 1;
  for (const int slot : {3, -1, 4})
    tell(CheckPaperDeletion(block, slot).message != IDS_PAPER_FIXED);
  for (const auto count : std::to_array<int16_t>({1, 2, 4})) {
    block.Printer.PaperNum = count;
    tell(CheckPaperDeletion(block, 0).Passed());
  }
  const PaperInfo paper = Paper(u"PX", {});
  ReplacePaper(block, 1, paper);
  ReplacePaper(block, 4, paper);
  EXPECT_EQ(block.Record.Private.FreePaper.PaperName, std::u16string(u"PX"));
  while (AppendPaper(block, paper)) {
  }
  tell(DeletePaper(block, 0));
  EXPECT_EQ(told,
            u" +t134 -t134 -t134 -t134 +t134 -t134 -t134 -t134 +t134 +t134 +X34XXXXXXXXXXXXXXXX");
  EXPECT_EQ(block.Printer.HeadDensity, 203) << "behind the last slot";
}

TEST_F(PaperRules, ConversionKeepsWhatIsNotMeasured) {
  PaperInfo paper = StandardPaper();
  paper.Yoshi = 1;
  const std::u16string name = kStandard;
  ConvertPaper(paper, kInch, 203);
  EXPECT_EQ(Told(paper), name + u" 0 3 2283 2677 118 118 1 197 0 1890 2559 1 0 0 0 0");
  ConvertPaper(paper, kDot, 305);
  EXPECT_EQ(Told(paper), name + u" 0 3 696 816 36 36 2 60 0 576 780 1 0 0 0 0");
}

TEST_F(PaperRules, NamesAreRefusedInTheOrderOfTheRules) {
  DriverSettingsBlock block = With(2);
  CopyText(block.Printer.Papers[2].PaperName, u"\x2460?");
  const std::u16string free = kFree, full(31, u'棚');
  const std::tuple<UINT, int, std::vector<std::u16string>> cases[] = {
      {2222, -1, {u"", u" \u3000 "}},
      {2212, -1, {kFree, kStandard, u"P1", u"\x2460?"}},
      {2212, 0, {kFree, u"P1"}},
      {2212, 2, {u"P1"}},
      {0, 1, {u"P1"}},  // its own
      {0, -1, {u" " + free, u"p1", u"P1 ", u"P", u"a?b", full + u"a", std::u16string(63, u'ｱ')}},
      {2429, -1, {u"\u00e9tiquette", u"a\xd83d", full + u"\u00e9" + full}},
      {2428, -1, {full + u"棚", full + u"ab", full + u"a棚", full + full}}};
  for (const auto& [message, edited, names] : cases) {
    for (const std::u16string& name : names) {
      EXPECT_EQ(CheckPaperName(block, name.c_str(), edited).message, message)
          << testing::PrintToString(name) << " for " << edited;
    }
  }
  // Registered papers only, and no further than the table; a name without a terminator is its own.
  block.Printer.PaperNum = 1;
  EXPECT_TRUE(CheckPaperName(block, u"P1", -1).Passed());
  block.Printer.PaperNum = 32767;
  EXPECT_EQ(CheckPaperName(block, u"P1", -1).message, 2212u);
  std::fill_n(block.Printer.Papers[0].PaperName, kPaperNameLength, u'x');
  EXPECT_TRUE(CheckPaperName(block, std::u16string(63, u'x').c_str(), -1).Passed());
}

// golden/paper_sizes.txt: by unit the limits, by size messages and bounds, those behind too large.
TEST_F(PaperRules, SizesAreCheckedInOrderAndWithinTheirLimits) {
  const PaperLimits millimetres = BuildPaperLimits(203);
  for (const int unit : {kMillimetre, kInch}) {
    PaperLimits limits = BuildPaperLimits(203, unit);
    for (size_t at = 0; at < sizeof limits; at += 2) told_ += u' ' + Number(At(&limits, at));
    PaperSizes sizes = {65836, 65836, 65836, 65836};
    for (const auto& [size, limit] : {std::pair{&PaperSizes::width, limits.width},
                                      {&PaperSizes::length, limits.length},
                                      {&PaperSizes::eyeMark, limits.eyeMark},
                                      {&PaperSizes::gap, limits.gap}}) {
      told_ += u'\n';
      for (const int value :
           {65836, limit.minimum - 1, limit.maximum + 1, int{limit.minimum}, int{limit.maximum}}) {
        sizes.*size = value;
        const PaperCheckResult result = CheckPaperSizes(sizes, limits, unit);
        told_ += u' ' + Number(static_cast<int>(result.message)) + u' ' + Number(result.bound);
      }
    }
    told_ += u'\n';
    ConvertPaperLimits(limits, unit, kMillimetre);
    EXPECT_EQ(memcmp(&limits, &millimetres, sizeof limits), 0);
  }
  ExpectGolden("paper_sizes.txt");
  EXPECT_EQ(BuildPaperLimits(305).eyeMark.maximum, 82);
  EXPECT_EQ(BuildPaperLimits(305, kInch).eyeMark.maximum, 323);
}

TEST(PrintableArea, IsCentredAsWideAsTheHeadPrintsAndWithinTheLabel) {
  PaperInfo paper = NewPaper();
  paper.LabelHeight = 777;
  const auto derived = [&](uint16_t unit, int16_t width) {
    paper.Unit = unit;
    paper.LabelWidth = width;
    paper.PrintableTop = 5;
    DerivePrintableArea(paper);
    EXPECT_TRUE(CheckPrintableArea(paper).Passed());
    return Told(paper);
  };
  EXPECT_EQ(derived(kMillimetre, 580), u" 0 3 580 777 30 30 0 50 0 480 777 0 0 0 0 0");
  EXPECT_EQ(derived(kMillimetre, 481), u" 0 3 481 777 30 30 0 0 0 480 777 0 0 0 0 0");
  EXPECT_EQ(derived(kInch, 2283), u" 0 3 2283 777 30 30 1 196 0 1890 777 0 0 0 0 0");
  ++paper.PrintableTop;
  EXPECT_EQ(CheckPrintableArea(paper).message, IDS_PRINTABLE_HEIGHT_WRONG);
  paper.PrintableLeft = 394;  // 394 + 1890 on 2283
  EXPECT_EQ(CheckPrintableArea(paper).message, IDS_PRINTABLE_WIDTH_WRONG);
  paper.PrintableLeft = paper.PrintableWidth = 32767;  // no 16-bit sum
  EXPECT_EQ(CheckPrintableArea(paper).message, IDS_PRINTABLE_WIDTH_WRONG);
}

}  // namespace
}  // namespace kestrel
