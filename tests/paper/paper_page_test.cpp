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
           {ExpectEnabled({kPeel, kPeelSpin}, mode == 2),
            ExpectEnabled({kTear, kTearSpin}, mode == 0), ExpectEnabled({kPitch, kPitchSpin})});
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
  const Steps shown = {ExpectSelected(kList, 1),
                       ExpectChecked({kLandscape, kFlip}),
                       ExpectChecked({kPortrait, IDC_PAPER_POSITION, IDC_PAPER_REFERENCE}, false),
                       ExpectRange(kVertSpin, -300, 300, -300),
                       ExpectRange(kHorzSpin, -300, 300, 7),
                       ExpectRange(kPeelSpin, -40, 99, 99),
                       ExpectRange(kTearSpin, -99, 99, -99),
                       ExpectRange(kPitchSpin, -40, 99, -40),
                       ExpectText(kTear, u"-99"),
                       ExpectText(IDC_PAPER_LIMIT_TEXT, u"用紙は最大 20 個登録できます。")};
  SheetAnswer answer = Ok(kPaperTab, {shown, GoTo(kVersionTab), GoTo(kPaperTab), shown});
  EXPECT_EQ(memcmp(&answer.record.Private, &settings, sizeof settings), 0);

  answer = Ok(kPaperTab,
              {Click(kPortrait), Click(kFlip), Click(IDC_PAPER_POSITION), Replace(kVert, u"300"),
               Paste(kHorz, u"-12"), Spin(kTearSpin, 2), Spin(kPitchSpin, -1), GoTo(kVersionTab),
               GoTo(kPaperTab), ExpectText(kTear, u"-97"),
               // Turned twice, the switch is where the picture is.
               Click(kLandscape), Click(kPortrait)});
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
      {kVert, u"400", u"5"},     {kVert, u"-301", u"5"},  {kVert, u"300", u"300"},
      {kVert, u"-300", u"-300"}, {kHorz, u"301", u"0"},   {kHorz, u"-30", u"-30"},
      {kHorz, u"1x", u"-30"},    {kPitch, u"-41", u"0"},  {kPitch, u"100", u"0"},
      {kPitch, u"99", u"99"},    {kTear, u"-99", u"-99"}, {kTear, u"", u""},
  };
  Steps steps;
  for (const auto& c : cases) steps += {Paste(c.field, c.pasted), ExpectText(c.field, c.shown)};
  const SheetAnswer answer =
      Ok(kPaperTab,
         {steps,
          // A stray letter takes back itself alone, the stored value too; the caret stays behind.
          Paste(kVert, u"12"), Paste(kVert, u"5"), Type(kVert, u"x"), ExpectText(kVert, u"5"),
          Type(kVert, u"1"), ExpectText(kVert, u"51"), Type(kVert, u"0"),
          ExpectText(kVert, u"5"),  // 510
          Type(kVert, u"2"), ExpectText(kVert, u"52")});
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
    EXPECT_EQ(Ok(kPaperTab, ExpectSelected(kList, 1)).record.Private.PaperID, 256) << id;
  }
}

TEST_F(PaperPage, LookingAndTypingWhatIsStoredMarkNothing) {
  Cancel(kPaperTab, {Click(kFreeEdit), Click(IDCANCEL), Paste(kHorz, u"0"), ExpectChanged(false),
                     Paste(kHorz, u"1"), ExpectChanged(true)});
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
  Cancel(kPaperTab, {help(kVert, u"-300ﾄﾞｯﾄから300"), help(kHorz, u"-300ﾄﾞｯﾄから300"),
                     help(kTear, u"-99ﾄﾞｯﾄから99"), help(kPitch, u"-40ﾄﾞｯﾄから99")});
}

}  // namespace
}  // namespace kestrel
