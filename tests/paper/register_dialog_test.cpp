// Registering, editing and deleting papers in the user's defaults, from the sheet to the stored
// table.
#include "tests/paper/paper_fixture.h"

namespace kestrel {
namespace {

constexpr char16_t kNew[] = u"用紙登録";
constexpr char16_t kEdit[] = u"用紙編集";
constexpr char16_t kTaken[] = u"既に同一の用紙名が登録されています。\n別の用紙名に変更して下さい。";
constexpr char16_t kFixed[] = u"この用紙は、ドライバ固定の用紙です。\n削除することは、できません。";

Steps Delete(std::u16string name, int button = IDOK) {
  return {Click(IDC_PAPER_DELETE),
          CloseMessage(name + u" を削除します。\nよろしいですか？",
                       MB_OKCANCEL | MB_ICONEXCLAMATION, u"用紙削除の確認", button)};
}
Steps ExpectSizes(std::u16string width, std::u16string length, std::u16string gap) {
  return {ExpectText(kWidth, width), ExpectText(kLength, length), ExpectText(kGap, gap)};
}

using RegisterDialog = PaperTest;

TEST_F(RegisterDialog, StoresWhatWasTypedAndWhatFollowsFromIt) {
  const SheetAnswer answer =
      Ok(kPaperTab,
         {Click(kRegister), ExpectTitle(kNew), ExpectSizes(u"58.0", u"68.0", u"3.0"),
          ExpectText(kName, u""), Fill(u"棚札", u"58.0", u"30.5", u"2.5"), Select(kGrade, 2),
          Select(kDarkness, 4), Click(IDOK), ExpectItems(kList, {kStandard, u"棚札", kFree}),
          ExpectSelected(kList, 0), ExpectChanged(true), Select(kList, 1)});
  EXPECT_EQ(answer.record.Private.PaperID, 258);
  EXPECT_EQ(answer.record.Public.dmPaperSize, 258);
  EXPECT_EQ(answer.record.Public.dmPaperWidth, 580);
  EXPECT_EQ(answer.record.Public.dmPaperLength, 305);
  EXPECT_EQ(std::u16string(answer.record.Public.dmFormName), u"棚札");

  const PaperInfo expected = {.PaperName = u"棚札",
                              .PaperKind = 2,
                              .Thickness = 5,
                              .LabelWidth = 580,
                              .LabelHeight = 305,
                              .GapSize = 25,
                              .EyeMarkSize = 30,
                              .Unit = kMillimetre,
                              .PrintableLeft = 50,
                              .PrintableTop = 0,
                              .PrintableWidth = 480,
                              .PrintableHeight = 305,
                              .Yoshi = 0,
                              .Reserved = {},
                              .UserDef = 1};
  const PaperInfo stored = Stored().Papers[1];
  EXPECT_EQ(memcmp(&stored, &expected, sizeof stored), 0);
}

TEST_F(RegisterDialog, TwentyPapersFit) {
  Keep(With(18));
  Ok(kPaperTab, {Click(kRegister), Fill(u"Last", u"40.0"), Click(IDOK), Click(kRegister),
                 Refused(u"用紙登録数が既定値を超えます。\n用紙の削除を行ってから、新しい用紙の登録"
                         u"を行って下さい。",
                         kPage),
                 ExpectTitle(kPage)});
  EXPECT_EQ(Stored().PaperNum, 20);
  EXPECT_EQ(StoredName(19), u"Last");
  EXPECT_EQ(StoredName(18), u"P18");
}

TEST_F(RegisterDialog, CancelAtEveryPointChangesNothing) {
  const DriverSettingsBlock block = With(2);
  Keep(block);
  Steps steps;
  for (const Step& refuse : {Click(IDCANCEL), Close()}) {
    steps += {Click(kRegister), Fill(u"New", u"40.0"), refuse, ExpectTitle(kPage),
              ExpectText(IDC_HELP_TEXT,
                         u"ここにマウスカーソルのある 入力項目についての説明が表示されます。"),
              Select(kList, 1), Click(kEditButton), Fill(u"Renamed", u"50.0"), refuse,
              Click(kFreeEdit), Fill(u"", u"50.0"), Click(kReference),
              // The choice of a paper: closing it chooses none, whatever is selected.
              Select(kReferenceList, 1), refuse, ExpectText(kWidth, u"50.0"), refuse,
              Delete(u"P1", IDCANCEL), ExpectItems(kList, {kStandard, u"P1", u"P2", kFree})};
  }
  const SheetAnswer answer = Ok(kPaperTab, {steps, Select(kList, 0)});
  EXPECT_EQ(memcmp(&answer.record.Private, &block.Record.Private, sizeof(PrivateDevMode)), 0);
  PrinterSettingsPart stored = Stored();
  EXPECT_EQ(memcmp(&stored, &block.Printer, sizeof stored), 0);

  // A registration that the sheet's cancel throws away.
  EXPECT_FALSE(Cancel(kPaperTab, {Click(kRegister), Fill(u"New"), Click(IDOK)}).written);
  EXPECT_EQ(Stored().PaperNum, 3);
}

TEST_F(RegisterDialog, DeletingMovesIdsAndSelection) {
  Keep(With(4));
  const SheetAnswer middle = Ok(
      kPaperTab,
      {Click(IDC_PAPER_DELETE), Refused(kFixed, kPage),                    // the driver's own
       Select(kList, 5), Click(IDC_PAPER_DELETE), Refused(kFixed, kPage),  // the free size
       Select(kList, 2), Delete(u"P2"), ExpectItems(kList, {kStandard, u"P1", u"P3", u"P4", kFree}),
       ExpectSelected(kList, 2), ExpectChanged(true)});
  EXPECT_EQ(middle.record.Private.PaperID, 259);  // P3 now
  EXPECT_EQ(middle.record.Public.dmPaperWidth, 203);
  EXPECT_EQ(Stored().PaperNum, 4);
  EXPECT_EQ(StoredName(3), u"P4");
  const PaperInfo cleared = Stored().Papers[4];
  const PaperInfo empty = {};
  EXPECT_EQ(memcmp(&cleared, &empty, sizeof cleared), 0);

  // The id of a deleted paper does not bring its successor into the selection.
  const SheetAnswer last = Ok(kPaperTab, {Select(kList, 3), Delete(u"P4"), ExpectSelected(kList, 3),
                                          ExpectText(kList, kFree), Click(kRegister),
                                          Fill(u"Again"), Click(IDOK), ExpectSelected(kList, 4)});
  EXPECT_EQ(last.record.Private.PaperID, 256);

  DriverSettingsBlock block = DefaultBlock();
  block.Printer.Papers[0].UserDef = 1;
  Keep(block);
  Ok(kPaperTab, {Click(IDC_PAPER_DELETE), Refused(kFixed, kPage)});  // the only one
}

TEST_F(RegisterDialog, RenamingKeepsTheSlotAndChecksTheName) {
  DriverSettingsBlock block = With(2);
  for (WCHAR& unit : block.Printer.Papers[1].PaperName) unit = u'x';  // without a terminator
  Keep(block);
  const std::u16string cut(63, u'x');
  const std::u16string refusals[][2] = {{u"　 ", u"用紙名を入力してください。"},
                                        {u"P2", kTaken},
                                        {u"😀", u"不正な文字が使用されています。"},
                                        {std::u16string(32, u'棚'), u"文字数が多すぎます。"}};
  Steps steps = {ExpectItems(kList, {kStandard, cut, u"P2", kFree}),
                 Select(kList, 1),
                 Click(kEditButton),
                 ExpectTitle(kEdit),
                 ExpectText(kName, cut),
                 [](Desk& desk) {
                   EXPECT_EQ(desk.Control(kName).textLimit, 63);
                   const RECT hidden = desk.Control(kReference).rect;
                   EXPECT_EQ(hidden.right - hidden.left + hidden.bottom - hidden.top, 0);
                   EXPECT_FALSE(desk.Control(kReference).enabled);
                 }};
  for (const auto& [name, message] : refusals) {
    steps += {Paste(kName, name),      Focus(kWidth),      Click(IDOK),
              Refused(message, kEdit), ExpectFocus(kName), ExpectText(kName, name)};
  }
  Ok(kPaperTab,
     {steps, Paste(kName, u"p2"), Click(IDOK), ExpectItems(kList, {kStandard, u"p2", u"P2", kFree}),
      Click(kEditButton), Click(IDOK),  // its own name passes
      ExpectTitle(kPage)});
  EXPECT_EQ(Stored().PaperNum, 3);
  EXPECT_EQ(Stored().Papers[1].LabelWidth, 201);
  EXPECT_EQ(StoredName(1), u"p2");
}

TEST_F(RegisterDialog, SizesAreRefusedOnBothSidesInBothUnits) {
  const auto text = [](std::u16string what, std::u16string bound, const WCHAR* side) {
    return what + u"は、 " + bound + u" " + side + u"にして下さい。";
  };
  const std::u16string width = u"ラベルサイズの幅", length = u"ラベルサイズの長さ";
  const std::u16string gap = u"ギャップのサイズ";
  const WCHAR *leastMm = u"㎜ 以上", *mostMm = u"㎜ 以下", *least = u"inch 以上";
  const WCHAR* most = u"inch 以下";
  const struct {
    bool inch;
    std::u16string width, length, gap, message;
    int focus;
  } cases[] = {{false, u"9.9", u"30.0", u"3.0", text(width, u"10.0", leastMm), kWidth},
               {false, u"70.0", u"30.0", u"3.0", text(width, u"58.0", mostMm), kWidth},
               {false, u"10.0", u"9.9", u"3.0", text(length, u"10.0", leastMm), kLength},
               {false, u"58.0", u"163.1", u"3.0", text(length, u"163.0", mostMm), kLength},
               {false, u"58.0", u"163.0", u"8.1", text(gap, u"8.0", mostMm), kGap},
               {true, u"0.393", u"1.000", u"0.100", text(width, u"0.394", least), kWidth},
               {true, u"2.300", u"1.000", u"0.100", text(width, u"2.283", most), kWidth},
               {true, u"0.394", u"0.393", u"0.100", text(length, u"0.394", least), kLength},
               {true, u"2.283", u"6.418", u"0.100", text(length, u"6.417", most), kLength},
               {true, u"2.283", u"6.417", u"0.316", text(gap, u"0.315", most), kGap}};
  Steps steps = {Click(kRegister), Fill(u"Label")};
  for (const auto& c : cases) {
    steps += {Click(c.inch ? kInchButton : kMmButton), Fill(u"", c.width, c.length, c.gap)};
    for (const int button : {int{IDOK}, kWholeLabel}) {
      // OK is the default button again when the focus has moved to the field.
      steps += {Click(button), Refused(c.message, kNew), ExpectFocus(c.focus),
                [](Desk& desk) { EXPECT_TRUE(desk.Control(IDOK).defaultButton); }};
    }
    steps += ExpectSizes(c.width, c.length, c.gap);  // all still as they were typed
  }
  Ok(kPaperTab, {steps, Fill(u"", u"2.283", u"6.417", u"0.315"), Click(IDOK)});
  const PaperInfo stored = Stored().Papers[1];
  const PaperInfo expected = {.PaperName = u"Label",
                              .PaperKind = 0,
                              .Thickness = 3,
                              .LabelWidth = 2283,
                              .LabelHeight = 6417,
                              .GapSize = 315,
                              .EyeMarkSize = 118,
                              .Unit = kInch,
                              .PrintableLeft = 196,
                              .PrintableTop = 0,
                              .PrintableWidth = 1890,
                              .PrintableHeight = 6417,
                              .Yoshi = 0,
                              .Reserved = {},
                              .UserDef = 1};
  EXPECT_EQ(memcmp(&stored, &expected, sizeof stored), 0);
}

// Nothing that was typed or stepped waits for anything.
TEST_F(RegisterDialog, ArrowsLeavingAndUnitsKeepWhatTheFieldShows) {
  const std::u16string turned[][2] = {{u"58.0", u"2.283"}, {u"10.0", u"0.394"},
                                      {u"12.3", u"0.484"}, {u"25.4", u"1.000"},
                                      {u"40.0", u"1.575"}, {u"57.9", u"2.280"}};
  Steps steps = {Click(kRegister), Replace(kName, u"N")};
  for (const auto& [mm, inch] : turned) {
    steps += {Replace(kWidth, mm), Click(kInchButton), ExpectSizes(inch, u"2.677", u"0.118"),
              Click(kMmButton), ExpectSizes(mm, u"68.0", u"3.0")};
  }
  Ok(kPaperTab,
     {steps, Spin(kWidthSpin, -3), ExpectText(kWidth, u"57.6"),
      Type(kWidth, u".5"),  // taken back, letter by letter
      ExpectText(kWidth, u"57.6"), Replace(kWidth, u"45"), ExpectText(kWidth, u"45"),
      Spin(kLengthSpin, 3), ExpectSizes(u"45.0", u"68.3", u"3.0"), Spin(kGapSpin, 100),
      ExpectText(kGap, u"8.0"), Click(kInchButton),
      [](Desk& desk) { EXPECT_EQ(desk.Control(kWidth).textLimit, 5); },
      ExpectRange(kWidthSpin, 394, 2283, 1772), ExpectRange(kLengthSpin, 394, 6417, 2689),
      ExpectRange(IDC_PAPER_REGISTER_PRINTABLE_LEFT_SPIN, 0, 2283, 0),
      ExpectRange(IDC_PAPER_REGISTER_PRINTABLE_HEIGHT_SPIN, 630, 6299, 2677), Spin(kWidthSpin, 2),
      Enter()});
  const PaperInfo stored = Stored().Papers[1];
  EXPECT_EQ(stored.LabelWidth, 1774);
  EXPECT_EQ(stored.LabelHeight, 2689);
  EXPECT_EQ(stored.GapSize, 315);
}

TEST_F(RegisterDialog, TheDataReferenceSwitchCopiesTheSelectedPaperWithoutItsName) {
  DriverSettingsBlock block = With(1);
  block.Printer.Papers[1].GapSize = 44;
  block.Printer.Papers[1].EyeMarkSize = 55;
  block.Printer.Papers[1].PaperKind = 255;
  block.Record.Private.FreePaper.LabelHeight = 999;
  Keep(block);
  Ok(kPaperTab, {Select(kList, 1),
                 Click(IDC_PAPER_REFERENCE),
                 Click(kRegister),
                 ExpectText(kName, u""),
                 ExpectSizes(u"20.1", u"68.0", u"4.4"),
                 ExpectSelected(kGrade, 3),
                 ExpectEnabled({kDarkness}, false),
                 ExpectSelected(kDarkness, 2),
                 Select(kGrade, 0),
                 ExpectEnabled({kDarkness}),
                 Select(kGrade, 3),
                 ExpectEnabled({kDarkness}, false),
                 Fill(u"Copy"),
                 Click(IDOK),
                 Select(kList, 3),
                 Click(kRegister),
                 ExpectText(kLength, u"99.9"),
                 Click(IDCANCEL),
                 Click(IDC_PAPER_REFERENCE),
                 Click(kRegister),
                 ExpectSizes(u"58.0", u"68.0", u"3.0"),
                 Click(IDCANCEL)});
  const PaperInfo copy = Stored().Papers[2];
  EXPECT_EQ(copy.GapSize, 44);
  EXPECT_EQ(copy.EyeMarkSize, 55);
  EXPECT_EQ(copy.PaperKind, 255);
  EXPECT_EQ(copy.Thickness, 3);
}

TEST_F(RegisterDialog, TheFreeSizeIsEditedAndTakesAReferencePaperInItsUnit) {
  DriverSettingsBlock block = With(1);
  PaperInfo& inch = block.Printer.Papers[1];
  inch = {.PaperName = u"P1",
          .PaperKind = 255,
          .Thickness = 1,
          .LabelWidth = 1500,
          .LabelHeight = 2500,
          .GapSize = 100,
          .EyeMarkSize = 111,
          .Unit = kInch,
          .PrintableLeft = 0,
          .PrintableTop = 0,
          .PrintableWidth = 1500,
          .PrintableHeight = 2500,
          .Yoshi = 0,
          .Reserved = {},
          .UserDef = 1};
  PaperInfo& own = block.Record.Private.FreePaper;
  CopyText(own.PaperName, u"An older name than this");
  own.LabelWidth = 321;
  own.LabelHeight = 1234;
  own.GapSize = 56;
  own.PaperKind = 1;
  Keep(block);
  const Steps opened = {ExpectTitle(u"フリーサイズ用紙編集"),
                        ExpectText(kName, kFree),
                        ExpectEnabled({kName}, false),
                        ExpectSizes(u"32.1", u"123.4", u"5.6"),
                        ExpectSelected(kGrade, 1),
                        ExpectEnabled({kReference})};
  SheetAnswer answer = Ok(kPaperTab, {Select(kList, 2), Click(kEditButton), opened, Click(IDOK)});
  EXPECT_EQ(Stored().PaperNum, 2);
  PaperInfo expected = own;
  PutText(expected.PaperName, kFree);  // nothing of the older name is left
  expected.PrintableLeft = 0;
  expected.PrintableWidth = 321;
  expected.PrintableHeight = 1234;
  EXPECT_EQ(memcmp(&answer.record.Private.FreePaper, &expected, sizeof expected), 0);

  answer = Ok(kPaperTab,
              {Click(kFreeEdit), opened, Click(kWholeLabel), Click(kReference),
               ExpectTitle(u"参照用紙選択　"), ExpectItems(kReferenceList, {kStandard, u"P1"}),
               ExpectSelected(kReferenceList, 0), Click(IDOK),
               ExpectSizes(u"58.0", u"68.0", u"3.0"), Click(kReference), Select(kReferenceList, 1),
               Click(IDOK), ExpectText(kName, kFree), ExpectSizes(u"1.500", u"2.500", u"0.100"),
               ExpectSelected(kGrade, 3), ExpectSelected(kDarkness, 0),
               ExpectEnabled({kDarkness}, false), ExpectChecked({kInchButton}),
               ExpectChecked({kMmButton}, false), ExpectRange(kWidthSpin, 394, 2283, 1500),
               // The whole-label view is that of the copy: 1.5 to 2.5 inches, 83 pixels to 138.
               [](Desk& desk) {
                 const RECT label = desk.Control(kDialogPicture).drawing.at(1).rect;
                 EXPECT_EQ(label.right - label.left, 83);
               },
               Click(IDOK), ExpectItems(kList, {kStandard, u"P1", kFree})});
  EXPECT_EQ(memcmp(&answer.record.Private.FreePaper, &inch, sizeof inch), 0);
  EXPECT_EQ(answer.record.Public.dmPaperLength, 635);
}

TEST_F(RegisterDialog, PapersInDotsAndOfUnknownUnitsAreEditedInMillimetres) {
  DriverSettingsBlock block = With(2);
  block.Printer.HeadDensity = 203;
  block.Printer.Papers[1].Unit = kDot;
  block.Printer.Papers[1].LabelWidth = 320;
  block.Printer.Papers[2].Unit = 77;
  block.Printer.Papers[2].LabelWidth = 320;
  Keep(block);
  Ok(kPaperTab, {Select(kList, 1), Click(kEditButton), ExpectText(kWidth, u"40.0"),
                 ExpectChecked({kMmButton}), Click(IDCANCEL), Select(kList, 2), Click(kEditButton),
                 ExpectText(kWidth, u"32.0"), Click(IDOK)});
  EXPECT_EQ(Stored().Papers[1].Unit, kDot);
  EXPECT_EQ(Stored().Papers[2].Unit, kMillimetre);
}

TEST_F(RegisterDialog, TheKeyboardGoesDownTheLeftSideAndHelpFollows) {
  const struct {
    Step use;
    std::u16string help;  // its beginning
  } rows[] = {{Focus(kName), u"登録する用紙名"},
              {Tab(), u"登録する用紙名"},  // the unit says so when it is clicked
              {Tab(), u"用紙幅サイズを設定します。（指定範囲10.0mmから58.0mmです。）"},
              {Tab(), u"用紙長さサイズを設定します。（指定範囲10.0mmから163.0mmです。）"},
              {Click(kInchButton), u"作成する用紙の単位をインチ"},
              {Focus(kGap),
               u"ラベルとラベルの間のサイズ（ギャップサイズ）を設定します。"
               u"（範囲は、0.000inchから0.315inchです。通常は0.118inchです）"},
              {Tab(), u"印字濃度を設定します。"},
              {Tab(), u"印字濃度レベルを設定します。"},
              {Click(kMmButton), u"作成する用紙の単位をミリ"},
              {Click(kWholeLabel), u"ラベル全体図"}};
  Steps steps = {Click(kFreeEdit), Click(kReference),
                 Click(IDCANCEL),  ExpectText(IDC_HELP_TEXT, u"データ参照画面を表示します。"),
                 Click(IDCANCEL),  Click(kRegister)};
  for (const auto& row : rows) {
    steps += {row.use, [row](Desk& desk) {
                EXPECT_EQ(desk.Text(IDC_HELP_TEXT).substr(0, row.help.size()), row.help);
              }};
  }
  Cancel(kPaperTab, {steps, Tab(), ExpectFocus(IDOK), Click(IDCANCEL)});
}

}  // namespace
}  // namespace kestrel
