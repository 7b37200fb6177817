// The paper page: what it shows, what it lets be changed, and what it writes.
#include "tests/paper/paper_fixture.h"

namespace kestrel {
namespace {

using PaperPage = PaperTest;

TEST_F(PaperPage, EnablesControlsByModeSessionAndPermission) {
  const std::vector<int> table = {IDC_PAPER_REGISTER, IDC_PAPER_EDIT, IDC_PAPER_DELETE};
  const std::vector<int> always = {IDC_PAPER_LIST,         IDC_PAPER_PORTRAIT,
                                   IDC_PAPER_LANDSCAPE,    IDC_PAPER_FLIP,
                                   IDC_PAPER_VERT_BASE,    IDC_PAPER_VERT_BASE_SPIN,
                                   IDC_PAPER_HORZ_BASE,    IDC_PAPER_HORZ_BASE_SPIN,
                                   IDC_PAPER_PITCH_OFFSET, IDC_PAPER_PITCH_OFFSET_SPIN,
                                   IDC_PAPER_FREE_EDIT,    IDC_PAPER_REFERENCE,
                                   IDC_PAPER_WHOLE_LABEL,  IDC_PAPER_POSITION};
  for (const SheetKind kind :
       {SheetKind::kDocument, SheetKind::kAdvanced, SheetKind::kUserDefault}) {
    for (uint16_t mode = 0; mode < 3; ++mode) {
      for (const bool permission : {true, false}) {
        SCOPED_TRACE(testing::Message() << static_cast<int>(kind) << mode << permission);
        DriverSettingsBlock block = DefaultBlock();
        block.Printer.Mecha = mode;
        Keep(block);
        const auto peel = {IDC_PAPER_PEEL_OFFSET, IDC_PAPER_PEEL_OFFSET_SPIN};
        const auto tear = {IDC_PAPER_TEAR_OFFSET, IDC_PAPER_TEAR_OFFSET_SPIN};
        Show({.kind = kind, .permission = permission},
             {GoTo(kPaperTab), ExpectEnabled(always, permission),
              ExpectEnabled(table, permission && kind == SheetKind::kUserDefault),
              ExpectEnabled(peel, permission && mode == 2),
              ExpectEnabled(tear, permission && mode == 0),
              ExpectEnabled({IDC_PAPER_PICTURE}, false), PressCancel()});
      }
    }
  }
}

TEST_F(PaperPage, ShowsTheSettingsAndWritesThemOnLeaving) {
  DriverSettingsBlock block = With(2);
  PrivateDevMode& settings = block.Record.Private;
  settings.PaperID = 258;
  settings.Orient = 2;
  settings.nFlip = 1;
  settings.nVertBase = -300;
  settings.nHorzBase = 7;
  settings.nPeelOffset = 99;
  settings.nTearOffset = -99;
  settings.nPitchOffset = -40;
  settings.Position = 0;
  Keep(block);
  const Steps shown = {
      ExpectSelected(IDC_PAPER_LIST, 1),
      ExpectChecked({IDC_PAPER_LANDSCAPE, IDC_PAPER_FLIP}),
      ExpectChecked({IDC_PAPER_PORTRAIT, IDC_PAPER_POSITION, IDC_PAPER_REFERENCE}, false),
      ExpectRange(IDC_PAPER_VERT_BASE_SPIN, -300, 300, -300),
      ExpectRange(IDC_PAPER_HORZ_BASE_SPIN, -300, 300, 7),
      ExpectRange(IDC_PAPER_PEEL_OFFSET_SPIN, -40, 99, 99),
      ExpectRange(IDC_PAPER_TEAR_OFFSET_SPIN, -99, 99, -99),
      ExpectRange(IDC_PAPER_PITCH_OFFSET_SPIN, -40, 99, -40),
      ExpectText(IDC_PAPER_TEAR_OFFSET, u"-99"),
      ExpectText(IDC_PAPER_LIMIT_TEXT, u"用紙は最大 20 個登録できます。")};
  SheetAnswer answer = Ok(kPaperTab, {shown, GoTo(kVersionTab), GoTo(kPaperTab), shown});
  EXPECT_EQ(memcmp(&answer.record.Private, &settings, sizeof settings), 0);

  answer =
      Ok(kPaperTab, {Click(IDC_PAPER_PORTRAIT), Click(IDC_PAPER_FLIP), Click(IDC_PAPER_POSITION),
                     Replace(IDC_PAPER_VERT_BASE, u"300"), Paste(IDC_PAPER_HORZ_BASE, u"-12"),
                     Spin(IDC_PAPER_TEAR_OFFSET_SPIN, 2), Spin(IDC_PAPER_PITCH_OFFSET_SPIN, -1),
                     GoTo(kVersionTab), GoTo(kPaperTab), ExpectText(IDC_PAPER_TEAR_OFFSET, u"-97"),
                     // Turned twice, the switch is where the picture is.
                     Click(IDC_PAPER_LANDSCAPE), Click(IDC_PAPER_PORTRAIT)});
  settings.Orient = 1;
  settings.nFlip = 0;
  settings.Position = 1;
  settings.nVertBase = 300;
  settings.nHorzBase = -12;
  settings.nTearOffset = -97;
  EXPECT_EQ(memcmp(&answer.record.Private, &settings, sizeof settings), 0);
  EXPECT_EQ(answer.record.Public.dmOrientation, 1);
}

TEST_F(PaperPage, AnOffsetFieldKeepsToItsRangeAndToWhatWasTyped) {
  DriverSettingsBlock block = DefaultBlock();
  block.Record.Private.nVertBase = 5;
  Keep(block);
  const struct {
    int field;
    std::u16string pasted, shown;
  } cases[] = {
      {IDC_PAPER_VERT_BASE, u"400", u"5"},
      {IDC_PAPER_VERT_BASE, u"-301", u"5"},
      {IDC_PAPER_VERT_BASE, u"300", u"300"},
      {IDC_PAPER_VERT_BASE, u"-300", u"-300"},
      {IDC_PAPER_HORZ_BASE, u"301", u"0"},
      {IDC_PAPER_HORZ_BASE, u"-30", u"-30"},
      {IDC_PAPER_HORZ_BASE, u"1x", u"-30"},
      {IDC_PAPER_PITCH_OFFSET, u"-41", u"0"},
      {IDC_PAPER_PITCH_OFFSET, u"100", u"0"},
      {IDC_PAPER_PITCH_OFFSET, u"99", u"99"},
      {IDC_PAPER_TEAR_OFFSET, u"-99", u"-99"},
      {IDC_PAPER_TEAR_OFFSET, u"", u""},  // no number: the position stays
  };
  Steps steps;
  for (const auto& c : cases) steps += {Paste(c.field, c.pasted), ExpectText(c.field, c.shown)};
  const SheetAnswer answer =
      Ok(kPaperTab,
         {steps,
          // A stray letter takes back itself alone, the stored value too; the caret stays behind.
          Paste(IDC_PAPER_VERT_BASE, u"12"), Paste(IDC_PAPER_VERT_BASE, u"5"),
          Type(IDC_PAPER_VERT_BASE, u"x"), ExpectText(IDC_PAPER_VERT_BASE, u"5"),
          Type(IDC_PAPER_VERT_BASE, u"1"), ExpectText(IDC_PAPER_VERT_BASE, u"51"),
          Type(IDC_PAPER_VERT_BASE, u"0"), ExpectText(IDC_PAPER_VERT_BASE, u"5"),  // 510
          Type(IDC_PAPER_VERT_BASE, u"2"), ExpectText(IDC_PAPER_VERT_BASE, u"52")});
  EXPECT_EQ(answer.record.Private.nVertBase, 52);
  EXPECT_EQ(answer.record.Private.nHorzBase, -30);
  EXPECT_EQ(answer.record.Private.nPitchOffset, 99);
  EXPECT_EQ(answer.record.Private.nTearOffset, -99);
}

TEST_F(PaperPage, AnIdThatNamesNoPaperMeansTheFreeSize) {
  for (const int16_t id : {int16_t{0}, int16_t{-1}, int16_t{258}, int16_t{32767}}) {
    DriverSettingsBlock block = DefaultBlock();
    block.Record.Private.PaperID = id;
    Keep(block);
    EXPECT_EQ(Ok(kPaperTab, ExpectSelected(IDC_PAPER_LIST, 1)).record.Private.PaperID, 256) << id;
  }
}

TEST_F(PaperPage, OnlyAChangeMarksTheSheet) {
  for (const Step& change :
       {Select(IDC_PAPER_LIST, 1), Click(IDC_PAPER_LANDSCAPE), Click(IDC_PAPER_FLIP),
        Click(IDC_PAPER_POSITION), Replace(IDC_PAPER_VERT_BASE, u"3"),
        Spin(IDC_PAPER_VERT_BASE_SPIN, 1)}) {
    Cancel(kPaperTab, {Focus(IDC_PAPER_LIST), Click(IDC_PAPER_WHOLE_LABEL),
                       Click(IDC_PAPER_REFERENCE), Click(IDC_PAPER_FREE_EDIT), Click(IDCANCEL),
                       Paste(IDC_PAPER_HORZ_BASE, u"0"),  // what it is already
                       ExpectChanged(false), change, ExpectChanged(true)});
  }
}

TEST_F(PaperPage, EachControlShowsItsHelp) {
  const auto offset = [](std::u16string what, std::u16string range) {
    return what + u"を設定します。（範囲は、" + range + u"ﾄﾞｯﾄです。）通常は「0」となります。";
  };
  const struct {
    Step use;
    std::u16string text;
  } rows[] = {
      {Focus(IDC_PAPER_LIST), u"登録されている用紙名を選択します。"},
      {Click(IDC_PAPER_LANDSCAPE), u"印刷方向を横に設定します。"},
      {Click(IDC_PAPER_PORTRAIT), u"印刷方向を縦に設定します。"},
      {Click(IDC_PAPER_FLIP), u"印刷方向を180度回転します。"},
      {Focus(IDC_PAPER_VERT_BASE), offset(u"印刷位置を決める原点の縦基点補正", u"-300ﾄﾞｯﾄから300")},
      {Focus(IDC_PAPER_HORZ_BASE), offset(u"印刷位置を決める原点の横基点補正", u"-300ﾄﾞｯﾄから300")},
      {Focus(IDC_PAPER_TEAR_OFFSET),
       offset(u"ティアオフオフセット（ラベルとラベルの間の搬送停止位置）", u"-99ﾄﾞｯﾄから99")},
      {Focus(IDC_PAPER_PITCH_OFFSET),
       offset(u"用紙ピッチオフセット（ラベル搬送停止位置）", u"-40ﾄﾞｯﾄから99")},
      {Click(IDC_PAPER_REFERENCE), u"用紙の新規登録時、登録済みの用紙のデータを参照します。"},
      {Click(IDC_PAPER_WHOLE_LABEL), u"ラベル全体図を表示します。"},
      {Click(IDC_PAPER_POSITION),
       u"用紙設定の項目と印字位置をVer9以前のプリンタドライバと同等にします。"},
  };
  Steps steps;
  for (const auto& row : rows) steps += {row.use, ExpectText(IDC_HELP_TEXT, row.text)};
  Cancel(kPaperTab, steps);
}

}  // namespace
}  // namespace kestrel
