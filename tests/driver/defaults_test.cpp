// Factory defaults, public fields and the paper table, at the offsets of the stored formats.
#include <gtest/gtest.h>

#include <string>

#include "driver/default_settings.h"
#include "driver/text.h"
#include "paper/paper_table.h"
#include "tests/support/settings.h"
#include "tests/support/test_machine.h"

namespace kestrel {
namespace {

using support::At;
using support::DefaultBlock;

std::u16string TextAt(const void* block, size_t offset, size_t units) {
  std::u16string text;
  for (size_t i = 0; i < units && At<char16_t>(block, offset + 2 * i) != 0; ++i)
    text += At<char16_t>(block, offset + 2 * i);
  return text;
}

class Defaults : public testing::Test {
 protected:
  std::unique_ptr<platform::Machine> machine_ = platform::Machine::Create();
};

TEST_F(Defaults, LieAtTheirOffsets) {
  auto block = DriverSettingsBlock{};
  std::memset(static_cast<void*>(&block), 0xFF, sizeof block);
  FillDefaultSettings(block, nullptr, u"倉庫 1F,LPT1:");
  EXPECT_EQ(TextAt(&block, 0, 32), u"倉庫 1F");
  struct Word {
    size_t offset;
    int value;
  };
  const Word words[] = {
      {64, 0x0401}, {66, 0x0E01}, {68, 220},    {70, 232},    {72, 0x270F}, {74, 0},   {76, 1},
      {78, 257},    {80, 680},    {82, 580},    {84, 100},    {86, 1},      {88, 256}, {90, 203},
      {92, 1},      {94, 1},      {96, 203},    {98, 1},      {100, 0},     {166, 0},  {220, 257},
      {350, 0},     {352, 3},     {354, 580},   {356, 680},   {358, 30},    {360, 30}, {362, 0},
      {364, 50},    {366, 0},     {368, 480},   {370, 650},   {372, 0},     {380, 0},  {382, 1},
      {384, 0},     {386, 0},     {388, 1},     {390, 0},     {392, 0},     {394, 0},  {396, 0},
      {398, 1},     {400, 0},     {402, 1},     {404, 0},     {406, 2},     {408, 1},  {410, 24},
      {412, 0},     {414, 0},     {416, 10000}, {418, 10000}, {420, 10000}, {422, 0},  {424, 10000},
      {426, 0},     {428, 0},     {430, 0},     {432, 0},     {434, 0},     {436, 1},  {438, 0},
      {440, 0},     {446, 0},     {448, 0},     {450, 0},     {452, 1},     {582, 0},  {584, 3},
      {586, 580},   {612, 0},     {614, 0},     {3652, 0},    {3654, 203},  {3656, 0}, {3658, 2},
      {3662, 7},    {3666, 0},    {3670, 6810}, {3674, 3050}, {3678, 0},    {3788, 0}, {3790, 0},
  };
  for (const Word& word : words)
    EXPECT_EQ(At<uint16_t>(&block, word.offset), word.value) << "offset " << word.offset;
  EXPECT_EQ(At<int32_t>(&block, 3670 + 3 * 12 + 8), 65534);
  EXPECT_EQ(At<int32_t>(&block, 3786), 248);
  EXPECT_EQ(TextAt(&block, 102, 32), u"Standard Label 58 x 68 mm");
  EXPECT_EQ(TextAt(&block, 222, 64), u"フリーサイズ");
  EXPECT_EQ(TextAt(&block, 454, 64), u"Standard Label 58 x 68 mm");
}

TEST_F(Defaults, PublicFieldsFollowThePrivateOnes) {
  auto block = DefaultBlock();
  PrivateDevMode& settings = block.Record.Private;
  const auto refill = [&](const char16_t* name = nullptr) {
    FillPublicFields(block, nullptr, name);
  };

  refill(std::u16string(40, u'n').c_str());
  EXPECT_EQ(TextAt(&block, 0, 32), std::u16string(31, u'n'));
  refill(u"\\\\server\\Label,LPT1:");
  EXPECT_EQ(TextAt(&block, 0, 32), u"\\\\server\\Label") << "only the port goes";
  refill();
  EXPECT_EQ(block.Record.Public.dmDeviceName[0], 0);

  block.Printer.Papers[0].Unit = kInch;
  block.Printer.Papers[0].LabelWidth = 2283;
  block.Printer.Papers[0].LabelHeight = 1000;
  std::fill_n(block.Printer.Papers[0].PaperName, kPaperNameLength, u'p');
  refill();
  EXPECT_EQ(block.Record.Public.dmPaperWidth, 580);
  EXPECT_EQ(block.Record.Public.dmPaperLength, 254);
  EXPECT_EQ(TextAt(&block, 102, 32), std::u16string(31, u'p'));
  block.Printer.Papers[0].Unit = kDot;
  refill();
  EXPECT_EQ(block.Record.Public.dmPaperWidth, 2283) << "dots are taken as stored";

  settings.FreePaper.LabelWidth = 333;
  CopyText(settings.FreePaper.PaperName, u"other");
  for (const int id : {256, 258, 0, -1}) {
    settings.PaperID = static_cast<int16_t>(id);
    refill();
    EXPECT_EQ(block.Record.Public.dmPaperSize, id);
    EXPECT_EQ(block.Record.Public.dmPaperWidth, 333);
    EXPECT_EQ(TextAt(&block, 102, 32), u"フリーサイズ");
  }

  settings.Orient = 2;
  settings.Copies = 500;
  for (const auto& [density, quality] : {std::pair{305, 305}, {203, 203}, {300, 203}, {0, 203}}) {
    block.Printer.HeadDensity = static_cast<uint16_t>(density);
    refill();
    EXPECT_EQ(block.Record.Public.dmPrintQuality, quality);
    EXPECT_EQ(block.Record.Public.dmYResolution, quality);
  }
  EXPECT_EQ(block.Record.Public.dmOrientation, 2);
  EXPECT_EQ(block.Record.Public.dmCopies, 500);
}

class PaperTable : public Defaults {
 protected:
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
  DriverSettingsBlock block_ = DefaultBlock();
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
