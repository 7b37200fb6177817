// Units, arrows and reference papers in the dialogs that register and edit papers.
#include "tests/paper/paper_walk.h"

namespace kestrel {
namespace {

constexpr char16_t kFreeEdit[] = u"フリーサイズ用紙編集";
constexpr char16_t kFree[] = u"フリーサイズ";
constexpr char16_t kStandard[] = u"Standard Label 58 x 68 mm";

using ReferenceWalk = PaperWalk;

TEST_F(ReferenceWalk, ChangingTheUnitAndBackShowsTheSameMillimetres) {
  struct {
    std::u16string mm, inch;
  } const cases[] = {
      {u"58.0", u"2.283"}, {u"10.0", u"0.394"}, {u"12.3", u"0.484"}, {u"15.5", u"0.610"},
      {u"20.1", u"0.791"}, {u"25.4", u"1.000"}, {u"30.0", u"1.181"}, {u"33.3", u"1.311"},
      {u"40.0", u"1.575"}, {u"45.7", u"1.799"}, {u"50.8", u"2.000"}, {u"57.9", u"2.280"},
  };
  Click(IDC_PAPER_REGISTER);
  Sees(IDC_PAPER_REGISTER_WIDTH, u"58.0");
  Sees(IDC_PAPER_REGISTER_LENGTH, u"68.0");
  for (const auto& c : cases) {
    Type(IDC_PAPER_REGISTER_WIDTH, c.mm);
    Click(IDC_PAPER_REGISTER_INCH);
    Sees(IDC_HELP_TEXT, u"作成する用紙の単位をインチ（inch）に設定します。");
    Sees(IDC_PAPER_REGISTER_WIDTH, c.inch);
    Sees(IDC_PAPER_REGISTER_LENGTH, u"2.677");
    Then([](Desk& desk) {
      EXPECT_EQ(desk.Control(IDC_PAPER_REGISTER_WIDTH).textLimit, 5);
      EXPECT_EQ(desk.Control(IDC_PAPER_REGISTER_WIDTH_SPIN).maximum, 2283);
    });
    Click(IDC_PAPER_REGISTER_MM);
    Sees(IDC_PAPER_REGISTER_WIDTH, c.mm);
    Sees(IDC_PAPER_REGISTER_LENGTH, u"68.0");
  }
  Click(IDCANCEL);
  RunToCancel();
}

TEST_F(ReferenceWalk, ArrowsAndLeavingWriteTheFieldInFull) {
  Click(IDC_PAPER_REGISTER);
  Spin(IDC_PAPER_REGISTER_WIDTH_SPIN, -3);
  Sees(IDC_PAPER_REGISTER_WIDTH, u"57.7");
  Type(IDC_PAPER_REGISTER_WIDTH, u"5.5.");  // the second point is taken back
  Sees(IDC_PAPER_REGISTER_WIDTH, u"10.0");  // the up-down went no lower
  Type(IDC_PAPER_REGISTER_WIDTH, u"45");
  Sees(IDC_PAPER_REGISTER_WIDTH, u"45");
  Focus(IDC_PAPER_REGISTER_LENGTH);
  Sees(IDC_PAPER_REGISTER_WIDTH, u"45.0");
  Type(IDC_PAPER_REGISTER_LENGTH, u"70.25");
  Spin(IDC_PAPER_REGISTER_LENGTH_SPIN, 1);
  Sees(IDC_PAPER_REGISTER_LENGTH, u"70.3");
  Spin(IDC_PAPER_REGISTER_GAP_SPIN, 100);
  Sees(IDC_PAPER_REGISTER_GAP, u"8.0");
  Click(IDCANCEL);
  RunToCancel();
}

TEST_F(ReferenceWalk, TheDataReferenceSwitchCopiesTheSelectedPaperWithoutItsName) {
  DriverSettingsBlock block = Fresh();
  Register(block, 1);
  block.Printer.Papers[1].GapSize = 44;
  block.Printer.Papers[1].PaperKind = 255;
  block.Record.Private.FreePaper.LabelHeight = 999;
  Keep(block);
  Pick(IDC_PAPER_LIST, 1);
  Click(IDC_PAPER_REFERENCE);
  Click(IDC_PAPER_REGISTER);
  Sees(IDC_PAPER_REGISTER_NAME, u"");
  Sees(IDC_PAPER_REGISTER_WIDTH, u"20.1");
  Sees(IDC_PAPER_REGISTER_GAP, u"4.4");
  SeesSelected(IDC_PAPER_REGISTER_GRADE, 3);
  SeesEnabled(IDC_PAPER_REGISTER_THICKNESS, false);
  SeesSelected(IDC_PAPER_REGISTER_THICKNESS, 2);
  Pick(IDC_PAPER_REGISTER_GRADE, 0);
  SeesEnabled(IDC_PAPER_REGISTER_THICKNESS, true);
  Pick(IDC_PAPER_REGISTER_GRADE, 3);
  FillPaper(u"Copy");
  Click(IDOK);
  Pick(IDC_PAPER_LIST, 3);
  Click(IDC_PAPER_REGISTER);
  Sees(IDC_PAPER_REGISTER_LENGTH, u"99.9");
  Click(IDCANCEL);
  Click(IDC_PAPER_REFERENCE);
  Click(IDC_PAPER_REGISTER);
  Sees(IDC_PAPER_REGISTER_LENGTH, u"68.0");
  Click(IDCANCEL);
  RunToOk();
  const PaperInfo copy = Stored().Papers[2];
  EXPECT_EQ(copy.GapSize, 44);
  EXPECT_EQ(copy.PaperKind, 255);
  EXPECT_EQ(copy.Thickness, 3);
}

TEST_F(ReferenceWalk, TheFreeSizeTakesAReferencePaperInItsUnit) {
  DriverSettingsBlock block = Fresh();
  Register(block, 1);
  PaperInfo& inch = block.Printer.Papers[1];
  inch.Unit = kInch;
  inch.LabelWidth = 1500;
  inch.LabelHeight = 2500;
  inch.GapSize = 100;
  inch.EyeMarkSize = 111;
  inch.Thickness = 1;
  Keep(block);
  for (const bool fromList : {true, false}) {
    if (fromList) Pick(IDC_PAPER_LIST, 2);
    Click(fromList ? IDC_PAPER_EDIT : IDC_PAPER_FREE_EDIT);
    SeesTitle(kFreeEdit);
    Sees(IDC_PAPER_REGISTER_NAME, kFree);
    SeesEnabled(IDC_PAPER_REGISTER_NAME, false);
    Then([](Desk& desk) { EXPECT_TRUE(desk.Control(IDC_PAPER_REGISTER_REFERENCE).visible); });
    if (fromList) Click(IDCANCEL);
  }
  Click(IDC_PAPER_REGISTER_REFERENCE);
  SeesTitle(u"参照用紙選択　");
  SeesList(IDC_PAPER_REFERENCE_LIST, {kStandard, u"P1"});
  SeesSelected(IDC_PAPER_REFERENCE_LIST, 0);
  Pick(IDC_PAPER_REFERENCE_LIST, 1);
  Click(IDOK);
  Sees(IDC_PAPER_REGISTER_NAME, kFree);
  Sees(IDC_PAPER_REGISTER_WIDTH, u"1.500");
  Sees(IDC_PAPER_REGISTER_LENGTH, u"2.500");
  Sees(IDC_PAPER_REGISTER_GAP, u"0.100");
  SeesSelected(IDC_PAPER_REGISTER_THICKNESS, 0);
  Then([](Desk& desk) {
    EXPECT_TRUE(desk.Control(IDC_PAPER_REGISTER_INCH).checked);
    EXPECT_FALSE(desk.Control(IDC_PAPER_REGISTER_MM).checked);
    EXPECT_EQ(desk.Control(IDC_PAPER_REGISTER_WIDTH_SPIN).maximum, 2283);
  });
  Click(IDOK);
  SeesList(IDC_PAPER_LIST, {kStandard, u"P1", kFree});
  const SheetAnswer answer = RunToOk();
  const PaperInfo& free = answer.record.Private.FreePaper;
  EXPECT_EQ(std::u16string(free.PaperName), u"P1");
  EXPECT_EQ(free.Unit, kInch);
  EXPECT_EQ(free.LabelWidth, 1500);
  EXPECT_EQ(free.EyeMarkSize, 111);
  EXPECT_EQ(answer.record.Private.PaperID, 256);
  EXPECT_EQ(answer.record.Public.dmPaperLength, 635);
  EXPECT_EQ(Stored().PaperNum, 2);
}

TEST_F(ReferenceWalk, PapersInDotsAndOfUnknownUnitsAreEditedInMillimetres) {
  DriverSettingsBlock block = Fresh();
  Register(block, 2);
  block.Printer.Papers[1].Unit = kDot;
  block.Printer.Papers[1].LabelWidth = 320;
  block.Printer.Papers[2].Unit = 77;
  block.Printer.Papers[2].LabelWidth = 320;
  Keep(block);
  const std::u16string shown[] = {u"40.0", u"32.0"};
  for (int i = 0; i < 2; ++i) {
    Pick(IDC_PAPER_LIST, i + 1);
    Click(IDC_PAPER_EDIT);
    Sees(IDC_PAPER_REGISTER_WIDTH, shown[i]);
    Then([](Desk& desk) { EXPECT_TRUE(desk.Control(IDC_PAPER_REGISTER_MM).checked); });
    Click(IDCANCEL);
  }
  RunToOk();
  EXPECT_EQ(Stored().Papers[1].Unit, kDot);
}

}  // namespace
}  // namespace kestrel
