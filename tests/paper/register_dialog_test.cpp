// The dialog that registers and edits papers, opened from the paper page.
#include "paper/fields/option_table.h"
#include "tests/paper/paper_fixture.h"

namespace kestrel {
namespace {

constexpr char16_t kNew[] = u"用紙登録";
constexpr char16_t kEdit[] = u"用紙編集";
constexpr char16_t kEditFree[] = u"フリーサイズ用紙編集";

using RegisterDialog = PaperTest;

Step ExpectShownSizes(std::u16string width, std::u16string length, std::u16string gap) {
  return [=](Desk& desk) {
    EXPECT_EQ(desk.Text(kWidth), width);
    EXPECT_EQ(desk.Text(kLength), length);
    EXPECT_EQ(desk.Text(kGap), gap);
  };
}

TEST_F(RegisterDialog, StoresTwentiethPaperAndRejectsAnother) {
  StoreDefaults(With(18));
  const SettingsRecord left =
      Ok(kPaperTab,
         {Click(kRegister), ExpectTitle(kNew), ExpectShownSizes(u"58.0", u"68.0", u"3.0"),
          Replace(kName, u"棚札"), Replace(kLength, u"30.5"), Replace(kGap, u"2.5"),
          Select(kGrade, 2), Select(kDarkness, 4), Click(IDOK), ExpectSelected(kList, 0),
          ExpectChanged(true), Click(kRegister),
          CloseError(u"用紙登録数が既定値を超えます。\n"
                     u"用紙の削除を行ってから、新しい用紙の登録を行って下さい。",
                     kPage),
          Select(kList, 19)})
          .record;
  EXPECT_EQ(left.Private.PaperID, 276);
  EXPECT_EQ(left.Public.dmPaperLength, 305);
  const PaperInfo stored = Stored(19);
  EXPECT_EQ(stored.PaperName, std::u16string(u"棚札"));
  EXPECT_EQ(stored.PaperKind, 2);
  EXPECT_EQ(stored.Thickness, 5);
  ExpectSizes(stored, 580, 305, 25, kMillimetre);
  EXPECT_EQ(stored.EyeMarkSize, 30);
  EXPECT_EQ(stored.PrintableLeft, 50);
  EXPECT_EQ(stored.PrintableWidth, 480);
  EXPECT_EQ(stored.UserDef, 1);
}

TEST_F(RegisterDialog, CancelChangesNothing) {
  const DriverSettingsBlock block = With(2);
  StoreDefaults(block);
  Steps steps;
  for (const Step& cancel : {Click(IDCANCEL), Close()}) {
    // Closing the list of reference papers chooses none, although one is selected.
    const Steps reference = {Click(kReference), Select(kReferenceList, 1), cancel,
                             ExpectText(kWidth, u"50.0")};
    steps += {Click(kRegister), Replace(kName, u"New"), Replace(kWidth, u"40.0"), cancel};
    steps += {Select(kList, 1), Click(IDC_PAPER_EDIT), Replace(kName, u"Renamed"), cancel};
    steps += {Click(kFreeEdit), Replace(kWidth, u"50.0"), reference, cancel};
  }
  const SettingsRecord left = Ok(kPaperTab, {steps, Select(kList, 0)}).record;
  EXPECT_EQ(BytesOf(left.Private), BytesOf(block.Record.Private));
  EXPECT_EQ(BytesOf(StoredPrinterPart(machine())), BytesOf(block.Printer));
}

TEST_F(RegisterDialog, EditedPaperKeepsItsSlotAndMayKeepItsName) {
  DriverSettingsBlock block = With(2);
  std::fill_n(block.Printer.Papers[1].PaperName, kPaperNameLength, u'x');  // without a terminator
  StoreDefaults(block);
  const std::u16string taken =
      u"既に同一の用紙名が登録されています。\n別の用紙名に変更して下さい。";
  const Steps opened = {ExpectTitle(kEdit), ExpectText(kName, std::u16string(63, u'x')),
                        ExpectHidden(kReference), ExpectEnabled({kReference}, false)};
  const Steps rejected = {Paste(kName, u"P2"),      Focus(kWidth),      Click(IDOK),
                          CloseError(taken, kEdit), ExpectFocus(kName), ExpectText(kName, u"P2")};
  const Steps rejectedNew = {Click(kRegister), Paste(kName, kStandard), Click(IDOK),
                             CloseError(taken, kNew), Click(IDCANCEL)};
  Ok(kPaperTab, {Select(kList, 1), Click(IDC_PAPER_EDIT), opened, rejected, Paste(kName, u"p2"),
                 Click(IDOK), Click(IDC_PAPER_EDIT), Click(IDOK), rejectedNew});
  EXPECT_EQ(Stored(1).PaperName, std::u16string(u"p2"));
  ExpectSizes(Stored(1), 201, 680, 30, kMillimetre);
  EXPECT_EQ(Stored(1).PaperName[kPaperNameLength - 1], 0) << "cleared to its end";
}

TEST_F(RegisterDialog, RejectedInputKeepsShownSizes) {
  const auto rejected = [](int field, std::u16string message) {
    Steps steps;
    for (const int button : {IDOK, IDC_PAPER_REGISTER_WHOLE_LABEL}) {
      steps += {Click(button), CloseError(message + u"にして下さい。", kNew), ExpectFocus(field)};
    }
    return steps;
  };
  Cancel(kPaperTab,
         {Click(kRegister), Replace(kName, u"N"), Replace(kWidth, u"9.9"),
          Replace(kLength, u"163.1"), rejected(kWidth, u"ラベルサイズの幅は、 10.0 ㎜ 以上"),
          Replace(kWidth, u"12.3"), rejected(kLength, u"ラベルサイズの長さは、 163.0 ㎜ 以下"),
          ExpectShownSizes(u"12.3", u"163.1", u"3.0"), Replace(kLength, u"68.0"),
          Click(kInchButton), ExpectShownSizes(u"0.484", u"2.677", u"0.118"),
          Replace(kGap, u"0.316"), rejected(kGap, u"ギャップのサイズは、 0.315 inch 以下"),
          ExpectShownSizes(u"0.484", u"2.677", u"0.316"), Click(kMmButton),
          ExpectShownSizes(u"12.3", u"68.0", u"8.0"), Click(IDCANCEL)});
}

// Each character of ".5" is rejected behind a complete number.
TEST_F(RegisterDialog, TypedAndSteppedSizesAreStoredInTheShownUnit) {
  Ok(kPaperTab,
     {Click(kRegister), Replace(kName, u"N"), Replace(kWidth, u"12.3"), Spin(kWidthSpin, -3),
      ExpectText(kWidth, u"12.0"), Type(kWidth, u".5"), ExpectText(kWidth, u"12.0"),
      Replace(kWidth, u"45"), ExpectText(kWidth, u"45"), Replace(kGap, u"1"),
      Spin(IDC_PAPER_REGISTER_GAP_SPIN, 100), Spin(IDC_PAPER_REGISTER_LENGTH_SPIN, 3),
      ExpectShownSizes(u"45.0", u"68.3", u"8.0"), Click(kInchButton),
      ExpectRange(kWidthSpin, 394, 2283, 1772),
      ExpectRange(IDC_PAPER_REGISTER_LENGTH_SPIN, 394, 6417, 2689), Spin(kWidthSpin, 2), Enter()});
  ExpectSizes(Stored(1), 1774, 2689, 315, kInch);
  EXPECT_EQ(Stored(1).EyeMarkSize, 118);
}

// The dialog edits millimetres and inches only.
TEST_F(RegisterDialog, PaperInDotsIsEditedInMillimetres) {
  DriverSettingsBlock block = With(1);
  block.Printer.Papers[1].LabelWidth = 320;
  block.Printer.Papers[1].Unit = kDot;
  StoreDefaults(block);
  Ok(kPaperTab, {Select(kList, 1), Click(IDC_PAPER_EDIT), ExpectChecked({kMmButton}),
                 ExpectShownSizes(u"40.0", u"85.1", u"3.8"), Click(IDOK)});
  ExpectSizes(Stored(1), 400, 851, 38, kMillimetre);
}

TEST_F(RegisterDialog, DataReferenceCopiesSelectedPaperWithoutItsName) {
  DriverSettingsBlock block = With(1);
  block.Printer.Papers[0].PaperKind = kFollowPrinter;
  block.Printer.Papers[0].GapSize = 44;
  block.Printer.Papers[0].EyeMarkSize = 55;
  block.Record.Private.FreePaper.LabelHeight = 999;
  StoreDefaults(block);
  Ok(kPaperTab,
     {Select(kList, 0), Click(IDC_PAPER_REFERENCE), Click(kRegister), ExpectText(kName, u""),
      ExpectShownSizes(u"58.0", u"68.0", u"4.4"), Replace(kName, u"Copy"), Click(IDOK),
      Select(kList, 3), Click(kRegister), ExpectShownSizes(u"58.0", u"99.9", u"3.0"),
      Click(IDCANCEL), Click(IDC_PAPER_REFERENCE), Click(kRegister),
      ExpectShownSizes(u"58.0", u"68.0", u"3.0"), Click(IDCANCEL)});
  EXPECT_EQ(Stored(2).PaperName, std::u16string(u"Copy"));
  EXPECT_EQ(Stored(2).PaperKind, kFollowPrinter);
  EXPECT_EQ(Stored(2).EyeMarkSize, 55);
}

TEST_F(RegisterDialog, FreeSizeCopiesReferencePaperInItsUnit) {
  DriverSettingsBlock block = With(1);
  PaperInfo& inch = block.Printer.Papers[1] = Paper(u"P1", 1500, 1500);
  inch.PaperKind = kFollowPrinter;
  inch.Thickness = 1;
  inch.Unit = kInch;
  block.Record.Private.FreePaper = Paper(u"An older name than this", 321);
  StoreDefaults(block);
  const Steps opened = {ExpectTitle(kEditFree), ExpectEnabled({kReference}),
                        ExpectText(kName, kFree), ExpectEnabled({kName}, false)};
  const SettingsRecord edited =
      Ok(kPaperTab, {Select(kList, 2), Click(IDC_PAPER_EDIT), opened,
                     ExpectShownSizes(u"32.1", u"68.0", u"3.0"), Replace(kWidth, u"32.2"),
                     Click(IDOK), ExpectLabelWidth(kPicture, 57)})
          .record;
  EXPECT_EQ(BytesOf(edited.Private.FreePaper), BytesOf(Paper(kFree, 322)));
  const Steps copyFirst = {Click(kReference), ExpectTitle(u"参照用紙選択　"),
                           ExpectItems(kReferenceList, {kStandard, u"P1"}), Click(IDOK),
                           ExpectShownSizes(u"58.0", u"68.0", u"3.0")};
  const Steps copySecond = {Click(kReference), Select(kReferenceList, 1), Click(IDOK),
                            ExpectShownSizes(u"1.500", u"1.500", u"0.030")};
  const Steps expectCopy = {ExpectChecked({kInchButton}), ExpectText(kDarkness, u"濃度1 薄い"),
                            ExpectEnabled({kDarkness}, false),
                            ExpectRange(kWidthSpin, 394, 2283, 1500)};
  const SettingsRecord copied =
      Ok(kPaperTab, {Click(kFreeEdit), opened, Click(IDC_PAPER_REGISTER_WHOLE_LABEL), copyFirst,
                     copySecond, expectCopy, ExpectLabelWidth(kDialogPicture, 138),
                     Click(IDOK),  // a square as wide as the box
                     ExpectItems(kList, {kStandard, u"P1", kFree})})
          .record;
  inch.UserDef = 0;
  EXPECT_EQ(BytesOf(copied.Private.FreePaper), BytesOf(inch));
  EXPECT_EQ(copied.Public.dmPaperLength, 381);
}

}  // namespace
}  // namespace kestrel
