// Registering, editing and deleting papers in the user's defaults, from the sheet to the stored
// table.
#include "tests/paper/paper_walk.h"

namespace kestrel {
namespace {

constexpr char16_t kNew[] = u"用紙登録";
constexpr char16_t kEdit[] = u"用紙編集";
constexpr char16_t kPage[] = u"用紙";
constexpr char16_t kFree[] = u"フリーサイズ";
constexpr char16_t kStandard[] = u"Standard Label 58 x 68 mm";
constexpr char16_t kTaken[] = u"既に同一の用紙名が登録されています。\n別の用紙名に変更して下さい。";
constexpr char16_t kFixed[] = u"この用紙は、ドライバ固定の用紙です。\n削除することは、できません。";

using RegisterWalk = PaperWalk;

TEST_F(RegisterWalk, NineteenPapersFitAndTheNextIsRefused) {
  for (int i = 1; i <= 19; ++i) {
    FillNewPaper(u"P" + Digits(i), u"40.0");
    Click(IDOK);
  }
  SeesSelected(IDC_PAPER_LIST, 0);  // PaperID's entry stays
  Click(IDC_PAPER_REGISTER);
  Answers(
      kPage,
      u"用紙登録数が既定値を超えます。\n用紙の削除を行ってから、新しい用紙の登録を行って下さい。");
  SeesTitle(kPage);
  const SheetAnswer answer = RunToOk();
  EXPECT_EQ(answer.record.Private.PaperID, 257);
  const PrinterSettingsPart stored = Stored();
  EXPECT_EQ(stored.PaperNum, 20);
  EXPECT_EQ(StoredName(0), kStandard);
  EXPECT_EQ(StoredName(19), u"P19");
  EXPECT_EQ(stored.Papers[19].UserDef, 1);
  EXPECT_EQ(stored.Papers[19].LabelWidth, 400);
}

TEST_F(RegisterWalk, StoresWhatWasTypedAndWhatFollowsFromIt) {
  FillNewPaper(u"棚札", u"58.0", u"30.5", u"2.5");
  Pick(IDC_PAPER_REGISTER_GRADE, 2);
  Pick(IDC_PAPER_REGISTER_THICKNESS, 4);
  Click(IDOK);
  SeesList(IDC_PAPER_LIST, {kStandard, u"棚札", kFree});
  Pick(IDC_PAPER_LIST, 1);
  const SheetAnswer answer = RunToOk();
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
  expected.LabelHeight = 305;
  expected.GapSize = 25;
  expected.EyeMarkSize = 30;
  expected.PrintableLeft = 50;
  expected.PrintableWidth = 480;
  expected.PrintableHeight = 305;
  expected.UserDef = 1;
  const PaperInfo stored = Stored().Papers[1];
  EXPECT_EQ(memcmp(&stored, &expected, sizeof stored), 0);

  // The next session finds it.
  SeesList(IDC_PAPER_LIST, {kStandard, u"棚札", kFree});
  SeesSelected(IDC_PAPER_LIST, 1);
  RunToCancel();
}

TEST_F(RegisterWalk, CancelAtEveryPointChangesNothing) {
  DriverSettingsBlock block = Fresh();
  Register(block, 2);
  Keep(block);
  const auto refuse = [this](int button) {
    Then([button](Desk& desk) {
      if (button == IDCANCEL) {
        Must(desk.Click(button), "cancel");
      } else {
        Must(desk.Close(), "close");
      }
    });
  };
  for (const int end : {IDCANCEL, 0}) {
    FillNewPaper(u"New", u"40.0");
    refuse(end);
    SeesTitle(kPage);
    Pick(IDC_PAPER_LIST, 1);
    Click(IDC_PAPER_EDIT);
    FillPaper(u"Renamed", u"50.0");
    refuse(end);
    Click(IDC_PAPER_FREE_EDIT);
    FillPaper(u"", u"50.0");
    Click(IDC_PAPER_REGISTER_REFERENCE);
    refuse(end);  // the choice of a paper
    Sees(IDC_PAPER_REGISTER_WIDTH, u"50.0");
    refuse(end);
    Click(IDC_PAPER_DELETE);
    Answers(u"用紙削除の確認", u"P1 を削除します。\nよろしいですか？",
            MB_OKCANCEL | MB_ICONEXCLAMATION, IDCANCEL);
    SeesList(IDC_PAPER_LIST, {kStandard, u"P1", u"P2", kFree});
  }
  Pick(IDC_PAPER_LIST, 0);
  const SheetAnswer answer = RunToOk();
  EXPECT_EQ(memcmp(&answer.record.Private, &block.Record.Private, sizeof(PrivateDevMode)), 0);
  const PrinterSettingsPart stored = Stored();
  EXPECT_EQ(memcmp(&stored, &block.Printer, sizeof stored), 0);

  // A registration that the sheet's cancel throws away.
  FillNewPaper(u"New");
  Click(IDOK);
  SeesList(IDC_PAPER_LIST, {kStandard, u"P1", u"P2", u"New", kFree});
  EXPECT_FALSE(RunToCancel().written);
  EXPECT_EQ(Stored().PaperNum, 3);
}

TEST_F(RegisterWalk, DeletingMovesIdsAndSelection) {
  DriverSettingsBlock block = Fresh();
  Register(block, 4);
  Keep(block);
  const auto deletes = [this](std::u16string name) {
    Click(IDC_PAPER_DELETE);
    Answers(u"用紙削除の確認", name + u" を削除します。\nよろしいですか？",
            MB_OKCANCEL | MB_ICONEXCLAMATION, IDOK);
  };
  Click(IDC_PAPER_DELETE);  // the driver's own
  Answers(kPage, kFixed);
  Pick(IDC_PAPER_LIST, 5);  // the free size
  Click(IDC_PAPER_DELETE);
  Answers(kPage, kFixed);
  Pick(IDC_PAPER_LIST, 2);
  deletes(u"P2");
  SeesList(IDC_PAPER_LIST, {kStandard, u"P1", u"P3", u"P4", kFree});
  SeesSelected(IDC_PAPER_LIST, 2);
  const SheetAnswer middle = RunToOk();
  EXPECT_EQ(middle.record.Private.PaperID, 259);  // P3 now
  EXPECT_EQ(middle.record.Public.dmPaperWidth, 203);
  EXPECT_EQ(Stored().PaperNum, 4);
  EXPECT_EQ(StoredName(2), u"P3");
  EXPECT_EQ(StoredName(4), u"");

  Pick(IDC_PAPER_LIST, 3);
  deletes(u"P4");
  SeesSelected(IDC_PAPER_LIST, 3);
  Then([](Desk& desk) { EXPECT_EQ(desk.Control(IDC_PAPER_LIST).text, kFree); });
  // The id of the deleted paper does not bring its successor into the selection.
  FillNewPaper(u"Again");
  Click(IDOK);
  SeesList(IDC_PAPER_LIST, {kStandard, u"P1", u"P3", u"Again", kFree});
  SeesSelected(IDC_PAPER_LIST, 4);
  EXPECT_EQ(RunToOk().record.Private.PaperID, 256);

  block = Fresh();
  block.Printer.Papers[0].UserDef = 1;
  Keep(block);
  Click(IDC_PAPER_DELETE);  // the only one
  Answers(kPage, kFixed);
  RunToOk();
  EXPECT_EQ(Stored().PaperNum, 1);
}

TEST_F(RegisterWalk, RenamingKeepsTheSlotAndChecksTheName) {
  DriverSettingsBlock block = Fresh();
  Register(block, 2);
  Keep(block);
  Pick(IDC_PAPER_LIST, 1);
  Click(IDC_PAPER_EDIT);
  SeesTitle(kEdit);
  Sees(IDC_PAPER_REGISTER_NAME, u"P1");
  Then([](Desk& desk) {
    EXPECT_FALSE(desk.Control(IDC_PAPER_REGISTER_REFERENCE).visible);
    EXPECT_EQ(desk.Control(IDC_PAPER_REGISTER_NAME).textLimit, 63);
  });
  struct {
    std::u16string name, message;
  } const refusals[] = {
      {u"　 ", u"用紙名を入力してください。"},
      {u"P2", kTaken},
      {u"😀", u"不正な文字が使用されています。"},
      {std::u16string(32, u'棚'), u"文字数が多すぎます。"},
  };
  for (const auto& refusal : refusals) {
    Paste(IDC_PAPER_REGISTER_NAME, refusal.name);
    Focus(IDC_PAPER_REGISTER_WIDTH);
    Click(IDOK);
    Answers(kEdit, refusal.message);
    SeesFocus(IDC_PAPER_REGISTER_NAME);
    Sees(IDC_PAPER_REGISTER_NAME, refusal.name);
  }
  Paste(IDC_PAPER_REGISTER_NAME, u"p2");
  Click(IDOK);
  SeesList(IDC_PAPER_LIST, {kStandard, u"p2", u"P2", kFree});
  Click(IDC_PAPER_EDIT);
  Click(IDOK);  // its own name passes
  SeesTitle(kPage);
  RunToOk();
  EXPECT_EQ(Stored().PaperNum, 3);
  EXPECT_EQ(StoredName(1), u"p2");
}

TEST_F(RegisterWalk, SizesAreRefusedOnBothSidesInBothUnits) {
  struct {
    bool inch;
    std::u16string width, length, gap, message;
    int focus;
  } const cases[] = {
      {false, u"9.9", u"", u"", u"ラベルサイズの幅は、 10.0 ㎜ 以上にして下さい。",
       IDC_PAPER_REGISTER_WIDTH},
      {false, u"70.0", u"", u"", u"ラベルサイズの幅は、 58.0 ㎜ 以下にして下さい。",
       IDC_PAPER_REGISTER_WIDTH},
      {false, u"10.0", u"9.9", u"", u"ラベルサイズの長さは、 10.0 ㎜ 以上にして下さい。",
       IDC_PAPER_REGISTER_LENGTH},
      {false, u"58.0", u"163.1", u"", u"ラベルサイズの長さは、 163.0 ㎜ 以下にして下さい。",
       IDC_PAPER_REGISTER_LENGTH},
      {false, u"58.0", u"163.0", u"8.1", u"ギャップのサイズは、 8.0 ㎜ 以下にして下さい。",
       IDC_PAPER_REGISTER_GAP},
      {true, u"0.393", u"", u"", u"ラベルサイズの幅は、 0.394 inch 以上にして下さい。",
       IDC_PAPER_REGISTER_WIDTH},
      {true, u"2.300", u"", u"", u"ラベルサイズの幅は、 2.283 inch 以下にして下さい。",
       IDC_PAPER_REGISTER_WIDTH},
      {true, u"0.394", u"0.393", u"", u"ラベルサイズの長さは、 0.394 inch 以上にして下さい。",
       IDC_PAPER_REGISTER_LENGTH},
      {true, u"2.283", u"6.418", u"", u"ラベルサイズの長さは、 6.417 inch 以下にして下さい。",
       IDC_PAPER_REGISTER_LENGTH},
      {true, u"2.283", u"6.417", u"0.316", u"ギャップのサイズは、 0.315 inch 以下にして下さい。",
       IDC_PAPER_REGISTER_GAP},
  };
  FillNewPaper(u"Label");
  for (const auto& c : cases) {
    Click(c.inch ? IDC_PAPER_REGISTER_INCH : IDC_PAPER_REGISTER_MM);
    FillPaper(u"", c.width, c.length, c.gap);
    for (const int button : {IDOK, IDC_PAPER_REGISTER_WHOLE_LABEL}) {
      Click(button);
      Answers(kNew, c.message);
      SeesFocus(c.focus);
    }
    // The typed value is still there.
    const std::u16string typed = c.focus == IDC_PAPER_REGISTER_WIDTH    ? c.width
                                 : c.focus == IDC_PAPER_REGISTER_LENGTH ? c.length
                                                                        : c.gap;
    Sees(c.focus, typed);
    FillPaper(u"", c.inch ? u"1.000" : u"30.0", c.inch ? u"1.000" : u"30.0",
              c.inch ? u"0.100" : u"3.0");
  }
  FillPaper(u"", u"2.283", u"6.417", u"0.315");
  Click(IDOK);
  RunToOk();
  const PaperInfo stored = Stored().Papers[1];
  EXPECT_EQ(stored.Unit, kInch);
  EXPECT_EQ(stored.LabelWidth, 2283);
  EXPECT_EQ(stored.PrintableWidth, 1890);
  EXPECT_EQ(stored.PrintableLeft, 196);
  EXPECT_EQ(stored.LabelHeight, 6417);
  EXPECT_EQ(stored.EyeMarkSize, 118);
}

TEST_F(RegisterWalk, ANameOfSixtyFourUnitsWithoutTerminatorIsShownCut) {
  DriverSettingsBlock block = Fresh();
  Register(block, 1);
  for (WCHAR& unit : block.Printer.Papers[1].PaperName) unit = u'x';
  Keep(block);
  const std::u16string cut(63, u'x');
  SeesList(IDC_PAPER_LIST, {kStandard, cut, kFree});
  Pick(IDC_PAPER_LIST, 1);
  Click(IDC_PAPER_EDIT);
  Sees(IDC_PAPER_REGISTER_NAME, cut);
  Click(IDOK);
  Click(IDC_PAPER_DELETE);
  Answers(u"用紙削除の確認", cut + u" を削除します。\nよろしいですか？",
          MB_OKCANCEL | MB_ICONEXCLAMATION, IDOK);
  SeesList(IDC_PAPER_LIST, {kStandard, kFree});
  RunToOk();
}

TEST_F(RegisterWalk, EachControlShowsItsHelp) {
  struct {
    int control;
    std::u16string text;
  } const rows[] = {
      {IDC_PAPER_REGISTER_NAME, u"登録する用紙名を入力します。"},
      {IDC_PAPER_REGISTER_GRADE,
       u"印字濃度を設定します。通常は A "
       u"となります。用紙の代表的なものとして、Aの場合「一般サーマルA」\n"
       u"「テクノサーマルA」「物流サーマルA」、Bの場合「コート紙」に適しています。"},
      {IDC_PAPER_REGISTER_THICKNESS, u"印字濃度レベルを設定します。通常は濃度 3 となります。"},
      {IDC_PAPER_REGISTER_WIDTH, u"用紙幅サイズを設定します。（指定範囲10.0mmから58.0mmです。）"},
      {IDC_PAPER_REGISTER_LENGTH,
       u"用紙長さサイズを設定します。（指定範囲10.0mmから163.0mmです。）"},
      {IDC_PAPER_REGISTER_GAP,
       u"ラベルとラベルの間のサイズ（ギャップサイズ）を設定します。（範囲は、0.0mmから8."
       u"0mmです。通常は"
       u"3.0mmです）"},
  };
  Click(IDC_PAPER_REGISTER);
  for (const auto& row : rows) {
    Focus(row.control);
    Sees(IDC_HELP_TEXT, row.text);
  }
  Click(IDC_PAPER_REGISTER_INCH);
  Focus(IDC_PAPER_REGISTER_GAP);
  Sees(IDC_HELP_TEXT,
       u"ラベルとラベルの間のサイズ（ギャップサイズ）を設定します。（範囲は、0.000inchから0."
       u"315inchです。"
       u"通常は0.118inchです）");
  Click(IDC_PAPER_REGISTER_WHOLE_LABEL);
  Sees(IDC_HELP_TEXT, u"ラベル全体図を表示します。");
  Click(IDCANCEL);
  Sees(IDC_HELP_TEXT, u"ここにマウスカーソルのある 入力項目についての説明が表示されます。");
  RunToCancel();
}

}  // namespace
}  // namespace kestrel
