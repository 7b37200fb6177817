// The table of papers: entries, ids, and what registering and deleting leave.
#include "paper/paper_table.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/settings.h"

namespace kestrel {
namespace {

class PaperTable : public testing::Test {
 protected:
  std::unique_ptr<platform::Machine> machine_ = platform::Machine::Create();
  PaperInfo Named(char16_t letter) {
    PaperInfo paper = StandardPaper();
    paper.PaperName[0] = letter;
    return paper;
  }
  std::u16string Letters() {
    std::u16string letters;
    for (const PaperInfo& paper : block_.Printer.Papers)
      letters += paper.PaperName[0] == 0 ? u'.' : paper.PaperName[0];
    return letters;
  }
  DriverSettingsBlock block_ = support::DefaultBlock();
};

TEST_F(PaperTable, FindsEntriesByIdAndIndex) {
  EXPECT_EQ(PaperEntryCount(block_), 2);
  struct Case {
    int id, entry, orFree;
  };
  for (const Case& c : {Case{257, 0, 0},
                        {256, 1, 1},
                        {258, -1, 1},
                        {255, -1, 1},
                        {0, -1, 1},
                        {-32768, -1, 1},
                        {9, -1, 1}}) {
    EXPECT_EQ(PaperEntryOfId(block_, c.id), c.entry) << c.id;
    EXPECT_EQ(PaperEntryOrFree(block_, c.id), c.orFree) << c.id;
  }
  EXPECT_EQ(PaperEntryId(block_, 0), 257);
  for (const int entry : {1, 20, 32767, -1}) {
    EXPECT_EQ(PaperEntryId(block_, entry), 256);
    EXPECT_EQ(&PaperOfEntry(block_, entry), &block_.Record.Private.FreePaper);
    WCHAR name[4];
    PaperEntryName(block_, entry, name, 4);
    EXPECT_EQ(name, std::u16string(u"フリー"));
  }
  for (const auto& [stored, count] : {std::pair{-1, 0}, {0, 0}, {20, 20}, {21, 20}, {32767, 20}}) {
    block_.Printer.PaperNum = static_cast<int16_t>(stored);
    EXPECT_EQ(PaperCount(block_), count);
    EXPECT_EQ(block_.Printer.PaperNum, stored);
  }
}

TEST_F(PaperTable, GrowsAndShrinks) {
  for (char16_t letter = u'B'; letter <= u'E'; ++letter)
    EXPECT_TRUE(AppendPaper(block_, Named(letter)));
  EXPECT_EQ(block_.Printer.Papers[4].UserDef, 1);
  EXPECT_EQ(block_.Printer.Papers[0].UserDef, 0);
  EXPECT_TRUE(DeletePaper(block_, 2));
  EXPECT_EQ(Letters(), u"SBDE................");
  EXPECT_EQ(block_.Printer.PaperNum, 4);
  EXPECT_EQ(block_.Record.Private.PaperID, 257);
  for (const int none : {-1, 4, 19, 20}) EXPECT_FALSE(DeletePaper(block_, none)) << none;

  ReplacePaper(block_, 1, Named(u'R'));
  ReplacePaper(block_, 4, Named(u'F'));
  EXPECT_EQ(block_.Record.Private.FreePaper.PaperName[0], u'F');
  while (AppendPaper(block_, Named(u'x'))) {
  }
  EXPECT_EQ(Letters(), u"SRDExxxxxxxxxxxxxxxx");
  EXPECT_TRUE(DeletePaper(block_, 0));
  EXPECT_EQ(Letters(), u"RDExxxxxxxxxxxxxxxx.");
  EXPECT_EQ(block_.Printer.HeadDensity, 203) << "behind the last slot";
}

TEST_F(PaperTable, ConvertsMeasuredFieldsOnly) {
  PaperInfo paper = StandardPaper();
  paper.Yoshi = 1;
  ConvertPaper(paper, kInch, 203);
  EXPECT_EQ(paper.LabelWidth, 2283);
  EXPECT_EQ(paper.LabelHeight, 2677);
  EXPECT_EQ(paper.GapSize, 118);
  EXPECT_EQ(paper.PrintableLeft, 197);
  EXPECT_EQ(paper.PrintableHeight, 2559);
  EXPECT_EQ(paper.Thickness, 3);
  EXPECT_EQ(paper.Yoshi, 1);
  EXPECT_EQ(paper.Unit, kInch);
  ConvertPaper(paper, kInch, 203);
  EXPECT_EQ(paper.LabelWidth, 2283);
  ConvertPaper(paper, kMillimetre, 203);
  EXPECT_EQ(paper.LabelWidth, 580);
  ConvertPaper(paper, kDot, 305);
  EXPECT_EQ(paper.GapSize, 36);
}

}  // namespace
}  // namespace kestrel
