// The paper page: what it shows, what it lets be changed, and what it writes.
#include "tests/paper/paper_fixture.h"

namespace kestrel {
namespace {

using PaperPage = PaperTest;

// Who may use what is walked with the other pages; the printer's mode decides about two offsets.
TEST_F(PaperPage, OffersTheOffsetOfThePrintersMode) {
  for (uint16_t mode = 0; mode < 3; ++mode) {
    DriverSettingsBlock block = DefaultBlock();
    block.Printer.Mecha = mode;
    Keep(block);
    Cancel(kPaperTab,
           {ExpectEnabled({IDC_PAPER_PEEL_OFFSET, IDC_PAPER_PEEL_OFFSET_SPIN}, mode == 2),
            ExpectEnabled({IDC_PAPER_TEAR_OFFSET, IDC_PAPER_TEAR_OFFSET_SPIN}, mode == 0),
            ExpectEnabled({IDC_PAPER_PITCH_OFFSET, IDC_PAPER_PITCH_OFFSET_SPIN})});
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
      {IDC_PAPER_TEAR_OFFSET, u"", u""}  // no number: the position stays
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

TEST_F(PaperPage, LookingAndTypingWhatIsStoredMarkNothing) {
  Cancel(kPaperTab, {Click(IDC_PAPER_FREE_EDIT), Click(IDCANCEL), Paste(IDC_PAPER_HORZ_BASE, u"0"),
                     ExpectChanged(false), Paste(IDC_PAPER_HORZ_BASE, u"1"), ExpectChanged(true)});
}

TEST_F(PaperPage, HelpTellsTheRangesOfTheFields) {
  const auto help = [](int field, std::u16string range) {
    return Steps{
        Focus(field),
        [=](Desk& desk) {
          const std::u16string text = desk.Text(IDC_HELP_TEXT);
          EXPECT_NE(text.find(u"（範囲は、" + range + u"ﾄﾞｯﾄです。）"), text.npos) << field;
        },
    };
  };
  Cancel(kPaperTab, {help(IDC_PAPER_VERT_BASE, u"-300ﾄﾞｯﾄから300"),
                     help(IDC_PAPER_HORZ_BASE, u"-300ﾄﾞｯﾄから300"),
                     help(IDC_PAPER_TEAR_OFFSET, u"-99ﾄﾞｯﾄから99"),
                     help(IDC_PAPER_PITCH_OFFSET, u"-40ﾄﾞｯﾄから99")});
}

}  // namespace
}  // namespace kestrel
