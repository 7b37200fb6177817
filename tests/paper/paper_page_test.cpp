// The paper page: what it shows, what it lets be changed, and what it writes.
#include <map>

#include "tests/paper/paper_walk.h"

namespace kestrel {
namespace {

// Counts the sheet's PSM_CHANGED messages.
int changes;
LRESULT CALLBACK CountChanges(HWND sheet, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == PSM_CHANGED) ++changes;
  return DefDlgProcW(sheet, message, wParam, lParam);
}

using PaperPage = PaperWalk;

TEST_F(PaperPage, EnablesControlsByModeSessionAndPermission) {
  constexpr int kTableButtons[] = {IDC_PAPER_REGISTER, IDC_PAPER_EDIT, IDC_PAPER_DELETE};
  constexpr int kAlways[] = {IDC_PAPER_LIST,         IDC_PAPER_PORTRAIT,  IDC_PAPER_LANDSCAPE,
                             IDC_PAPER_FLIP,         IDC_PAPER_VERT_BASE, IDC_PAPER_HORZ_BASE,
                             IDC_PAPER_PITCH_OFFSET, IDC_PAPER_FREE_EDIT, IDC_PAPER_REFERENCE,
                             IDC_PAPER_WHOLE_LABEL,  IDC_PAPER_POSITION};
  constexpr int kSpinOf[][2] = {{IDC_PAPER_VERT_BASE, IDC_PAPER_VERT_BASE_SPIN},
                                {IDC_PAPER_HORZ_BASE, IDC_PAPER_HORZ_BASE_SPIN},
                                {IDC_PAPER_PEEL_OFFSET, IDC_PAPER_PEEL_OFFSET_SPIN},
                                {IDC_PAPER_TEAR_OFFSET, IDC_PAPER_TEAR_OFFSET_SPIN},
                                {IDC_PAPER_PITCH_OFFSET, IDC_PAPER_PITCH_OFFSET_SPIN}};
  for (const SheetKind kind :
       {SheetKind::kDocument, SheetKind::kAdvanced, SheetKind::kUserDefault}) {
    for (uint16_t mode = 0; mode < 3; ++mode) {
      for (const bool permission : {true, false}) {
        DriverSettingsBlock block = Fresh();
        block.Printer.Mecha = mode;
        Keep(block);
        ask_.kind = kind;
        ask_.permission = permission;
        std::map<int, bool> expected;
        for (const int id : kAlways) expected[id] = permission;
        for (const int id : kTableButtons) {
          expected[id] = permission && kind == SheetKind::kUserDefault;
        }
        expected[IDC_PAPER_PEEL_OFFSET] = permission && mode == 2;
        expected[IDC_PAPER_TEAR_OFFSET] = permission && mode == 0;
        expected[IDC_PAPER_PICTURE] = false;
        for (const auto& [edit, spin] : kSpinOf) expected[spin] = expected[edit];
        Then([=](Desk& desk) {
          for (const auto& [id, enabled] : expected) {
            EXPECT_EQ(desk.Control(id).enabled, enabled)
                << id << " kind " << static_cast<int>(kind) << " mode " << mode << " permission "
                << permission;
          }
        });
        RunToCancel();
      }
    }
  }
}

TEST_F(PaperPage, ShowsTheSettingsAndWritesThemOnLeaving) {
  DriverSettingsBlock block = Fresh();
  Register(block, 2);
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
  SeesSelected(IDC_PAPER_LIST, 1);
  Then([](Desk& desk) {
    EXPECT_FALSE(desk.Control(IDC_PAPER_PORTRAIT).checked);
    EXPECT_TRUE(desk.Control(IDC_PAPER_LANDSCAPE).checked);
    EXPECT_TRUE(desk.Control(IDC_PAPER_FLIP).checked);
    EXPECT_FALSE(desk.Control(IDC_PAPER_POSITION).checked);
    EXPECT_EQ(desk.Control(IDC_PAPER_VERT_BASE_SPIN).minimum, -300);
    EXPECT_EQ(desk.Control(IDC_PAPER_VERT_BASE).textLimit, 4);
    EXPECT_EQ(desk.Control(IDC_PAPER_PITCH_OFFSET_SPIN).maximum, 99);
  });
  Sees(IDC_PAPER_VERT_BASE, u"-300");
  Sees(IDC_PAPER_HORZ_BASE, u"7");
  Sees(IDC_PAPER_PEEL_OFFSET, u"99");
  Sees(IDC_PAPER_TEAR_OFFSET, u"-99");
  Sees(IDC_PAPER_PITCH_OFFSET, u"-40");
  Sees(IDC_PAPER_LIMIT_TEXT, u"用紙は最大 20 個登録できます。");
  SheetAnswer answer = RunToOk();
  EXPECT_EQ(memcmp(&answer.record.Private, &settings, sizeof settings), 0);

  Click(IDC_PAPER_PORTRAIT);
  Click(IDC_PAPER_FLIP);
  Click(IDC_PAPER_POSITION);
  Type(IDC_PAPER_VERT_BASE, u"300");
  Type(IDC_PAPER_HORZ_BASE, u"-12");
  Spin(IDC_PAPER_TEAR_OFFSET_SPIN, 2);
  Spin(IDC_PAPER_PITCH_OFFSET_SPIN, -1);
  Then(support::GoTo(kVersionTab));
  Then(support::GoTo(kPaperTab));
  Sees(IDC_PAPER_TEAR_OFFSET, u"-97");
  answer = RunToOk();
  settings.Orient = 1;
  settings.nFlip = 0;
  settings.Position = 1;
  settings.nVertBase = 300;
  settings.nHorzBase = -12;
  settings.nTearOffset = -97;
  EXPECT_EQ(memcmp(&answer.record.Private, &settings, sizeof settings), 0);
  EXPECT_EQ(answer.record.Public.dmOrientation, 1);
}

TEST_F(PaperPage, TypingOutsideTheRangeBringsTheStoredValueBack) {
  DriverSettingsBlock block = Fresh();
  block.Record.Private.nVertBase = 5;
  Keep(block);
  struct {
    int field;
    std::u16string typed, shown;
  } const cases[] = {
      {IDC_PAPER_VERT_BASE, u"400", u"5"},    {IDC_PAPER_VERT_BASE, u"-301", u"5"},
      {IDC_PAPER_VERT_BASE, u"300", u"300"},  {IDC_PAPER_VERT_BASE, u"-300", u"-300"},
      {IDC_PAPER_HORZ_BASE, u"301", u"0"},    {IDC_PAPER_HORZ_BASE, u"-30", u"-30"},
      {IDC_PAPER_PITCH_OFFSET, u"-41", u"0"}, {IDC_PAPER_PITCH_OFFSET, u"-40", u"-40"},
      {IDC_PAPER_PITCH_OFFSET, u"99", u"99"}, {IDC_PAPER_TEAR_OFFSET, u"-99", u"-99"},
  };
  for (const auto& c : cases) {
    Type(c.field, c.typed);
    Sees(c.field, c.shown);
  }
  Paste(IDC_PAPER_HORZ_BASE, u"1x");  // a character that is not allowed
  Sees(IDC_PAPER_HORZ_BASE, u"-30");
  Type(IDC_PAPER_TEAR_OFFSET, u"");  // no number: the position stays
  const SheetAnswer answer = RunToOk();
  EXPECT_EQ(answer.record.Private.nVertBase, -300);
  EXPECT_EQ(answer.record.Private.nHorzBase, -30);
  EXPECT_EQ(answer.record.Private.nPitchOffset, 99);
  EXPECT_EQ(answer.record.Private.nTearOffset, -99);
}

TEST_F(PaperPage, AnIdThatNamesNoPaperMeansTheFreeSize) {
  for (const int16_t id : {int16_t{0}, int16_t{259}, int16_t{-1}, int16_t{32767}}) {
    DriverSettingsBlock block = Fresh();
    block.Record.Private.PaperID = id;
    Keep(block);
    SeesSelected(IDC_PAPER_LIST, 1);
    EXPECT_EQ(RunToOk().record.Private.PaperID, 256) << id;
  }
}

TEST_F(PaperPage, OnlyAChangeMarksTheSheet) {
  const auto watch = [this] {
    Then([](Desk& desk) {
      changes = 0;
      SetWindowLongPtrW(desk.Top(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&CountChanges));
    });
  };
  const auto marked = [this](bool yes, const char* what) {
    Then([=](Desk&) { EXPECT_EQ(changes > 0, yes) << what; });
  };
  const std::pair<const char*, std::function<void()>> cases[] = {
      {"list", [this] { Pick(IDC_PAPER_LIST, 1); }},
      {"orientation", [this] { Click(IDC_PAPER_LANDSCAPE); }},
      {"rotation", [this] { Click(IDC_PAPER_FLIP); }},
      {"position", [this] { Click(IDC_PAPER_POSITION); }},
      {"typing", [this] { Type(IDC_PAPER_VERT_BASE, u"3"); }},
      {"arrows", [this] { Spin(IDC_PAPER_VERT_BASE_SPIN, 1); }},
  };
  for (const auto& [what, change] : cases) {
    watch();
    Focus(IDC_PAPER_LIST);
    Click(IDC_PAPER_WHOLE_LABEL);
    Click(IDC_PAPER_REFERENCE);
    Type(IDC_PAPER_HORZ_BASE, u"0");  // what it is already
    marked(false, what);
    change();
    marked(true, what);
    RunToCancel();
  }
}

TEST_F(PaperPage, EachControlShowsItsHelp) {
  struct {
    int control;
    bool click;
    std::u16string text;
  } const rows[] = {
      {IDC_PAPER_LIST, false, u"登録されている用紙名を選択します。"},
      {IDC_PAPER_LANDSCAPE, true, u"印刷方向を横に設定します。"},
      {IDC_PAPER_PORTRAIT, true, u"印刷方向を縦に設定します。"},
      {IDC_PAPER_FLIP, true, u"印刷方向を180度回転します。"},
      {IDC_PAPER_VERT_BASE, false,
       u"印刷位置を決める原点の縦基点補正を設定します。（範囲は、-300ﾄﾞｯﾄから300ﾄﾞｯﾄです。）"
       u"通常は「0」となります。"},
      {IDC_PAPER_HORZ_BASE, false,
       u"印刷位置を決める原点の横基点補正を設定します。（範囲は、-300ﾄﾞｯﾄから300ﾄﾞｯﾄです。）"
       u"通常は「0」となります。"},
      {IDC_PAPER_TEAR_OFFSET, false,
       u"ティアオフオフセット（ラベルとラベルの間の搬送停止位置）を設定します。"
       u"（範囲は、-99ﾄﾞｯﾄから99ﾄﾞｯﾄです。）通常は「0」となります。"},
      {IDC_PAPER_PITCH_OFFSET, false,
       u"用紙ピッチオフセット（ラベル搬送停止位置）を設定します。"
       u"（範囲は、-40ﾄﾞｯﾄから99ﾄﾞｯﾄです。）通常は「0」となります。"},
      {IDC_PAPER_REFERENCE, true, u"用紙の新規登録時、登録済みの用紙のデータを参照します。"},
      {IDC_PAPER_WHOLE_LABEL, true, u"ラベル全体図を表示します。"},
      {IDC_PAPER_POSITION, true,
       u"用紙設定の項目と印字位置をVer9以前のプリンタドライバと同等にします。"},
  };
  for (const auto& row : rows) {
    if (row.click) {
      Click(row.control);
    } else {
      Focus(row.control);
    }
    Sees(IDC_HELP_TEXT, row.text);
  }
  RunToCancel();
}

}  // namespace
}  // namespace kestrel
