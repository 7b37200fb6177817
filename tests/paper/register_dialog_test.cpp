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
  return {ExpectText(IDC_PAPER_REGISTER_WIDTH, width),
          ExpectText(IDC_PAPER_REGISTER_LENGTH, length), ExpectText(IDC_PAPER_REGISTER_GAP, gap)};
}

using RegisterDialog = PaperTest;

TEST_F(RegisterDialog, StoresWhatWasTypedAndWhatFollowsFromIt) {
  const SheetAnswer answer =
      Ok(kPaperTab,
         {Click(IDC_PAPER_REGISTER), ExpectTitle(kNew), ExpectSizes(u"58.0", u"68.0", u"3.0"),
          ExpectText(IDC_PAPER_REGISTER_NAME, u""), Fill(u"棚札", u"58.0", u"30.5", u"2.5"),
          Select(IDC_PAPER_REGISTER_GRADE, 2), Select(IDC_PAPER_REGISTER_THICKNESS, 4), Click(IDOK),
          ExpectItems(IDC_PAPER_LIST, {kStandard, u"棚札", kFree}),
          ExpectSelected(IDC_PAPER_LIST, 0), ExpectChanged(true), Select(IDC_PAPER_LIST, 1)});
  EXPECT_EQ(answer.record.Private.PaperID, 258);
  EXPECT_EQ(answer.record.Public.dmPaperSize, 258);
  EXPECT_EQ(answer.record.Public.dmPaperWidth, 580);
  EXPECT_EQ(answer.record.Public.dmPaperLength, 305);
  EXPECT_EQ(std::u16string(answer.record.Public.dmFormName), u"棚札");

  PaperInfo expected = {};
  CopyText(expected.PaperName, u"棚札");
  expected.PaperKind = 2;
  expected.Thickness = 5;
  expected.LabelWidth = 580;
  expected.LabelHeight = expected.PrintableHeight = 305;
  expected.GapSize = 25;
  expected.EyeMarkSize = 30;
  expected.PrintableLeft = 50;
  expected.PrintableWidth = 480;
  expected.UserDef = 1;
  const PaperInfo stored = Stored().Papers[1];
  EXPECT_EQ(memcmp(&stored, &expected, sizeof stored), 0);
}

TEST_F(RegisterDialog, TwentyPapersFit) {
  Keep(With(18));
  Ok(kPaperTab,
     {Click(IDC_PAPER_REGISTER), Fill(u"Last", u"40.0"), Click(IDOK), Click(IDC_PAPER_REGISTER),
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
    steps += {Click(IDC_PAPER_REGISTER), Fill(u"New", u"40.0"), refuse, ExpectTitle(kPage),
              ExpectText(IDC_HELP_TEXT,
                         u"ここにマウスカーソルのある 入力項目についての説明が表示されます。"),
              Select(IDC_PAPER_LIST, 1), Click(IDC_PAPER_EDIT), Fill(u"Renamed", u"50.0"), refuse,
              Click(IDC_PAPER_FREE_EDIT), Fill(u"", u"50.0"), Click(IDC_PAPER_REGISTER_REFERENCE),
              // The choice of a paper: closing it chooses none, whatever is selected.
              Select(IDC_PAPER_REFERENCE_LIST, 1), refuse,
              ExpectText(IDC_PAPER_REGISTER_WIDTH, u"50.0"), refuse, Delete(u"P1", IDCANCEL),
              ExpectItems(IDC_PAPER_LIST, {kStandard, u"P1", u"P2", kFree})};
  }
  const SheetAnswer answer = Ok(kPaperTab, {steps, Select(IDC_PAPER_LIST, 0)});
  EXPECT_EQ(memcmp(&answer.record.Private, &block.Record.Private, sizeof(PrivateDevMode)), 0);
  PrinterSettingsPart stored = Stored();
  EXPECT_EQ(memcmp(&stored, &block.Printer, sizeof stored), 0);

  // A registration that the sheet's cancel throws away.
  EXPECT_FALSE(Cancel(kPaperTab, {Click(IDC_PAPER_REGISTER), Fill(u"New"), Click(IDOK)}).written);
  EXPECT_EQ(Stored().PaperNum, 3);
}

TEST_F(RegisterDialog, DeletingMovesIdsAndSelection) {
  Keep(With(4));
  const SheetAnswer middle =
      Ok(kPaperTab, {Click(IDC_PAPER_DELETE), Refused(kFixed, kPage),  // the driver's own
                     Select(IDC_PAPER_LIST, 5), Click(IDC_PAPER_DELETE),
                     Refused(kFixed, kPage),  // the free size
                     Select(IDC_PAPER_LIST, 2), Delete(u"P2"),
                     ExpectItems(IDC_PAPER_LIST, {kStandard, u"P1", u"P3", u"P4", kFree}),
                     ExpectSelected(IDC_PAPER_LIST, 2), ExpectChanged(true)});
  EXPECT_EQ(middle.record.Private.PaperID, 259);  // P3 now
  EXPECT_EQ(middle.record.Public.dmPaperWidth, 203);
  EXPECT_EQ(Stored().PaperNum, 4);
  EXPECT_EQ(StoredName(3), u"P4");
  const PaperInfo cleared = Stored().Papers[4];
  const PaperInfo empty = {};
  EXPECT_EQ(memcmp(&cleared, &empty, sizeof cleared), 0);

  // The id of a deleted paper does not bring its successor into the selection.
  const SheetAnswer last =
      Ok(kPaperTab, {Select(IDC_PAPER_LIST, 3), Delete(u"P4"), ExpectSelected(IDC_PAPER_LIST, 3),
                     ExpectText(IDC_PAPER_LIST, kFree), Click(IDC_PAPER_REGISTER), Fill(u"Again"),
                     Click(IDOK), ExpectSelected(IDC_PAPER_LIST, 4)});
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
  const std::u16string refusals[][2] = {
      {u"　 ", u"用紙名を入力してください。"},
      {u"P2", kTaken},
      {u"😀", u"不正な文字が使用されています。"},
      {std::u16string(32, u'棚'), u"文字数が多すぎます。"},
  };
  Steps steps = {ExpectItems(IDC_PAPER_LIST, {kStandard, cut, u"P2", kFree}),
                 Select(IDC_PAPER_LIST, 1),
                 Click(IDC_PAPER_EDIT),
                 ExpectTitle(kEdit),
                 ExpectText(IDC_PAPER_REGISTER_NAME, cut),
                 [](Desk& desk) {
                   EXPECT_EQ(desk.Control(IDC_PAPER_REGISTER_NAME).textLimit, 63);
                   EXPECT_FALSE(desk.Control(IDC_PAPER_REGISTER_REFERENCE).visible);
                 }};
  for (const auto& [name, message] : refusals) {
    steps += {Paste(IDC_PAPER_REGISTER_NAME, name),
              Focus(IDC_PAPER_REGISTER_WIDTH),
              Click(IDOK),
              Refused(message, kEdit),
              ExpectFocus(IDC_PAPER_REGISTER_NAME),
              ExpectText(IDC_PAPER_REGISTER_NAME, name)};
  }
  Ok(kPaperTab, {steps, Paste(IDC_PAPER_REGISTER_NAME, u"p2"), Click(IDOK),
                 ExpectItems(IDC_PAPER_LIST, {kStandard, u"p2", u"P2", kFree}),
                 Click(IDC_PAPER_EDIT), Click(IDOK),  // its own name passes
                 ExpectTitle(kPage)});
  EXPECT_EQ(Stored().PaperNum, 3);
  EXPECT_EQ(Stored().Papers[1].LabelWidth, 201);
  EXPECT_EQ(StoredName(1), u"p2");
}

TEST_F(RegisterDialog, SizesAreRefusedOnBothSidesInBothUnits) {
  const struct {
    bool inch;
    std::u16string width, length, gap, message;
    int focus;
  } cases[] = {
      {false, u"9.9", u"30.0", u"3.0", u"ラベルサイズの幅は、 10.0 ㎜ 以上にして下さい。",
       IDC_PAPER_REGISTER_WIDTH},
      {false, u"70.0", u"30.0", u"3.0", u"ラベルサイズの幅は、 58.0 ㎜ 以下にして下さい。",
       IDC_PAPER_REGISTER_WIDTH},
      {false, u"10.0", u"9.9", u"3.0", u"ラベルサイズの長さは、 10.0 ㎜ 以上にして下さい。",
       IDC_PAPER_REGISTER_LENGTH},
      {false, u"58.0", u"163.1", u"3.0", u"ラベルサイズの長さは、 163.0 ㎜ 以下にして下さい。",
       IDC_PAPER_REGISTER_LENGTH},
      {false, u"58.0", u"163.0", u"8.1", u"ギャップのサイズは、 8.0 ㎜ 以下にして下さい。",
       IDC_PAPER_REGISTER_GAP},
      {true, u"0.393", u"1.000", u"0.1", u"ラベルサイズの幅は、 0.394 inch 以上にして下さい。",
       IDC_PAPER_REGISTER_WIDTH},
      {true, u"2.300", u"1.000", u"0.1", u"ラベルサイズの幅は、 2.283 inch 以下にして下さい。",
       IDC_PAPER_REGISTER_WIDTH},
      {true, u"0.394", u"0.393", u"0.1", u"ラベルサイズの長さは、 0.394 inch 以上にして下さい。",
       IDC_PAPER_REGISTER_LENGTH},
      {true, u"2.283", u"6.418", u"0.1", u"ラベルサイズの長さは、 6.417 inch 以下にして下さい。",
       IDC_PAPER_REGISTER_LENGTH},
      {true, u"2.283", u"6.417", u"0.316", u"ギャップのサイズは、 0.315 inch 以下にして下さい。",
       IDC_PAPER_REGISTER_GAP},
  };
  Steps steps = {Click(IDC_PAPER_REGISTER), Fill(u"Label")};
  for (const auto& c : cases) {
    steps += {Click(c.inch ? IDC_PAPER_REGISTER_INCH : IDC_PAPER_REGISTER_MM),
              Fill(u"", c.width, c.length, c.gap)};
    for (const int button : {int{IDOK}, IDC_PAPER_REGISTER_WHOLE_LABEL}) {
      // OK is the default button again when the focus has moved to the field.
      steps += {Click(button), Refused(c.message, kNew), ExpectFocus(c.focus),
                [](Desk& desk) { EXPECT_TRUE(desk.Control(IDOK).defaultButton); }};
    }
    steps += ExpectText(c.focus, c.focus == IDC_PAPER_REGISTER_WIDTH    ? c.width
                                 : c.focus == IDC_PAPER_REGISTER_LENGTH ? c.length
                                                                        : c.gap);
  }
  Ok(kPaperTab, {steps, Fill(u"", u"2.283", u"6.417", u"0.315"), Click(IDOK)});
  const PaperInfo stored = Stored().Papers[1];
  EXPECT_EQ(stored.Unit, kInch);
  EXPECT_EQ(stored.LabelWidth, 2283);
  EXPECT_EQ(stored.PrintableWidth, 1890);
  EXPECT_EQ(stored.PrintableLeft, 196);
  EXPECT_EQ(stored.LabelHeight, 6417);
  EXPECT_EQ(stored.GapSize, 315);
  EXPECT_EQ(stored.EyeMarkSize, 118);
}

// Nothing that was typed or stepped waits for anything.
TEST_F(RegisterDialog, ArrowsLeavingAndUnitsKeepWhatTheFieldShows) {
  const std::u16string turned[][2] = {{u"58.0", u"2.283"}, {u"10.0", u"0.394"},
                                      {u"12.3", u"0.484"}, {u"25.4", u"1.000"},
                                      {u"40.0", u"1.575"}, {u"57.9", u"2.280"}};
  Steps steps = {Click(IDC_PAPER_REGISTER), Replace(IDC_PAPER_REGISTER_NAME, u"N")};
  for (const auto& [mm, inch] : turned) {
    steps += {Replace(IDC_PAPER_REGISTER_WIDTH, mm), Click(IDC_PAPER_REGISTER_INCH),
              ExpectSizes(inch, u"2.677", u"0.118"), Click(IDC_PAPER_REGISTER_MM),
              ExpectSizes(mm, u"68.0", u"3.0")};
  }
  Ok(kPaperTab,
     {steps, Spin(IDC_PAPER_REGISTER_WIDTH_SPIN, -3), ExpectText(IDC_PAPER_REGISTER_WIDTH, u"57.6"),
      Type(IDC_PAPER_REGISTER_WIDTH, u".5"),  // taken back, letter by letter
      ExpectText(IDC_PAPER_REGISTER_WIDTH, u"57.6"), Replace(IDC_PAPER_REGISTER_WIDTH, u"45"),
      ExpectText(IDC_PAPER_REGISTER_WIDTH, u"45"), Spin(IDC_PAPER_REGISTER_LENGTH_SPIN, 3),
      ExpectSizes(u"45.0", u"68.3", u"3.0"), Spin(IDC_PAPER_REGISTER_GAP_SPIN, 100),
      ExpectText(IDC_PAPER_REGISTER_GAP, u"8.0"), Click(IDC_PAPER_REGISTER_INCH),
      ExpectRange(IDC_PAPER_REGISTER_WIDTH_SPIN, 394, 2283, 1772),
      ExpectRange(IDC_PAPER_REGISTER_LENGTH_SPIN, 394, 6417, 2689),
      ExpectRange(IDC_PAPER_REGISTER_PRINTABLE_LEFT_SPIN, 0, 2283, 0),
      ExpectRange(IDC_PAPER_REGISTER_PRINTABLE_HEIGHT_SPIN, 630, 6299, 2677),
      Spin(IDC_PAPER_REGISTER_WIDTH_SPIN, 2), Enter()});
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
  constexpr int kDarkness = IDC_PAPER_REGISTER_THICKNESS;
  Ok(kPaperTab, {Select(IDC_PAPER_LIST, 1),
                 Click(IDC_PAPER_REFERENCE),
                 Click(IDC_PAPER_REGISTER),
                 ExpectText(IDC_PAPER_REGISTER_NAME, u""),
                 ExpectSizes(u"20.1", u"68.0", u"4.4"),
                 ExpectSelected(IDC_PAPER_REGISTER_GRADE, 3),
                 ExpectEnabled({kDarkness}, false),
                 ExpectSelected(kDarkness, 2),
                 Select(IDC_PAPER_REGISTER_GRADE, 0),
                 ExpectEnabled({kDarkness}),
                 Select(IDC_PAPER_REGISTER_GRADE, 3),
                 ExpectEnabled({kDarkness}, false),
                 Fill(u"Copy"),
                 Click(IDOK),
                 Select(IDC_PAPER_LIST, 3),
                 Click(IDC_PAPER_REGISTER),
                 ExpectText(IDC_PAPER_REGISTER_LENGTH, u"99.9"),
                 Click(IDCANCEL),
                 Click(IDC_PAPER_REFERENCE),
                 Click(IDC_PAPER_REGISTER),
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
  inch.Unit = kInch;
  inch.LabelWidth = 1500;
  inch.LabelHeight = 2500;
  inch.GapSize = 100;
  inch.EyeMarkSize = 111;
  inch.PaperKind = 255;
  inch.Thickness = 1;
  PaperInfo& own = block.Record.Private.FreePaper;
  CopyText(own.PaperName, u"An older name than this");
  own.LabelWidth = 321;
  own.LabelHeight = 1234;
  own.GapSize = 56;
  own.PaperKind = 1;
  Keep(block);
  const Steps opened = {ExpectTitle(u"フリーサイズ用紙編集"),
                        ExpectText(IDC_PAPER_REGISTER_NAME, kFree),
                        ExpectEnabled({IDC_PAPER_REGISTER_NAME}, false),
                        ExpectSizes(u"32.1", u"123.4", u"5.6"),
                        ExpectSelected(IDC_PAPER_REGISTER_GRADE, 1),
                        ExpectEnabled({IDC_PAPER_REGISTER_REFERENCE})};
  SheetAnswer answer =
      Ok(kPaperTab, {Select(IDC_PAPER_LIST, 2), Click(IDC_PAPER_EDIT), opened, Click(IDOK)});
  EXPECT_EQ(Stored().PaperNum, 2);
  PaperInfo expected = own;
  PutText(expected.PaperName, kFree);  // nothing of the older name is left
  expected.PrintableLeft = 0;
  expected.PrintableWidth = 321;
  expected.PrintableHeight = 1234;
  EXPECT_EQ(memcmp(&answer.record.Private.FreePaper, &expected, sizeof expected), 0);

  answer =
      Ok(kPaperTab,
         {Click(IDC_PAPER_FREE_EDIT), opened, Click(IDC_PAPER_REGISTER_WHOLE_LABEL),
          Click(IDC_PAPER_REGISTER_REFERENCE), ExpectTitle(u"参照用紙選択　"),
          ExpectItems(IDC_PAPER_REFERENCE_LIST, {kStandard, u"P1"}),
          ExpectSelected(IDC_PAPER_REFERENCE_LIST, 0), Select(IDC_PAPER_REFERENCE_LIST, 1),
          Click(IDOK), ExpectText(IDC_PAPER_REGISTER_NAME, kFree),
          ExpectSizes(u"1.500", u"2.500", u"0.100"), ExpectSelected(IDC_PAPER_REGISTER_GRADE, 3),
          ExpectSelected(IDC_PAPER_REGISTER_THICKNESS, 0),
          ExpectEnabled({IDC_PAPER_REGISTER_THICKNESS}, false),
          ExpectChecked({IDC_PAPER_REGISTER_INCH}), ExpectChecked({IDC_PAPER_REGISTER_MM}, false),
          ExpectRange(IDC_PAPER_REGISTER_WIDTH_SPIN, 394, 2283, 1500),
          // The whole-label view is that of the copy: 1.5 to 2.5 inches, 83 pixels to 138.
          [](Desk& desk) {
            const RECT label = desk.Control(IDC_PAPER_REGISTER_PICTURE).drawing.at(1).rect;
            EXPECT_EQ(label.right - label.left, 83);
          },
          Click(IDOK), ExpectItems(IDC_PAPER_LIST, {kStandard, u"P1", kFree})});
  const PaperInfo& free = answer.record.Private.FreePaper;
  EXPECT_EQ(std::u16string(free.PaperName), u"P1");
  EXPECT_EQ(free.Unit, kInch);
  EXPECT_EQ(free.LabelWidth, 1500);
  EXPECT_EQ(free.EyeMarkSize, 111);
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
  Ok(kPaperTab,
     {Select(IDC_PAPER_LIST, 1), Click(IDC_PAPER_EDIT),
      ExpectText(IDC_PAPER_REGISTER_WIDTH, u"40.0"), ExpectChecked({IDC_PAPER_REGISTER_MM}),
      Click(IDCANCEL), Select(IDC_PAPER_LIST, 2), Click(IDC_PAPER_EDIT),
      ExpectText(IDC_PAPER_REGISTER_WIDTH, u"32.0"), Click(IDOK)});
  EXPECT_EQ(Stored().Papers[1].Unit, kDot);
  EXPECT_EQ(Stored().Papers[2].Unit, kMillimetre);
}

TEST_F(RegisterDialog, EachControlShowsItsHelp) {
  const struct {
    Step use;
    std::u16string text;
  } rows[] = {
      {Focus(IDC_PAPER_REGISTER_NAME), u"登録する用紙名を入力します。"},
      {Focus(IDC_PAPER_REGISTER_GRADE),
       u"印字濃度を設定します。通常は A となります。用紙の代表的なものとして、Aの場合「一般サーマル"
       u"A」\n「テクノサーマルA」「物流サーマルA」、Bの場合「コート紙」に適しています。"},
      {Focus(IDC_PAPER_REGISTER_THICKNESS),
       u"印字濃度レベルを設定します。通常は濃度 3 となります。"},
      {Focus(IDC_PAPER_REGISTER_WIDTH),
       u"用紙幅サイズを設定します。（指定範囲10.0mmから58.0mmです。）"},
      {Focus(IDC_PAPER_REGISTER_LENGTH),
       u"用紙長さサイズを設定します。（指定範囲10.0mmから163.0mmです。）"},
      {Click(IDC_PAPER_REGISTER_INCH), u"作成する用紙の単位をインチ（inch）に設定します。"},
      {Focus(IDC_PAPER_REGISTER_GAP),
       u"ラベルとラベルの間のサイズ（ギャップサイズ）を設定します。（範囲は、0.000inchから"
       u"0.315inchです。通常は0.118inchです）"},
      {Click(IDC_PAPER_REGISTER_MM), u"作成する用紙の単位をミリメートル（mm）に設定します。"},
      {Click(IDC_PAPER_REGISTER_WHOLE_LABEL), u"ラベル全体図を表示します。"},
  };
  Steps steps = Click(IDC_PAPER_FREE_EDIT);
  steps += {Click(IDC_PAPER_REGISTER_REFERENCE), Click(IDCANCEL),
            ExpectText(IDC_HELP_TEXT, u"データ参照画面を表示します。"), Click(IDCANCEL)};
  steps += Click(IDC_PAPER_REGISTER);
  for (const auto& row : rows) steps += {row.use, ExpectText(IDC_HELP_TEXT, row.text)};
  // The keyboard goes down the left side, then to the buttons.
  steps += Focus(IDC_PAPER_REGISTER_GAP);
  for (const int next : {IDC_PAPER_REGISTER_GRADE, IDC_PAPER_REGISTER_THICKNESS,
                         IDC_PAPER_REGISTER_WHOLE_LABEL, int{IDOK}}) {
    steps += {Tab(), ExpectFocus(next)};
  }
  Cancel(kPaperTab, {steps, Click(IDCANCEL)});
}

}  // namespace
}  // namespace kestrel
