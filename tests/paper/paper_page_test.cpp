// The paper page, in the sheet of the user's defaults.
#include "sheets/page_services.h"
#include "tests/paper/paper_fixture.h"

namespace kestrel {
namespace {

using PaperPage = PaperTest;

constexpr struct {
  int edit, spin, minimum, maximum;
  int16_t PrivateDevMode::*setting;
  uint16_t mode;  // a printer mode in which the field is enabled
} kOffsets[] = {
    {kVert, IDC_PAPER_VERT_BASE_SPIN, -300, 300, &PrivateDevMode::nVertBase, kTearOffMode},
    {IDC_PAPER_HORZ_BASE, IDC_PAPER_HORZ_BASE_SPIN, -300, 300, &PrivateDevMode::nHorzBase,
     kContinuousMode},
    {IDC_PAPER_PEEL_OFFSET, IDC_PAPER_PEEL_OFFSET_SPIN, -40, 99, &PrivateDevMode::nPeelOffset,
     kPeelMode},
    {IDC_PAPER_TEAR_OFFSET, IDC_PAPER_TEAR_OFFSET_SPIN, -99, 99, &PrivateDevMode::nTearOffset,
     kTearOffMode},
    {IDC_PAPER_PITCH_OFFSET, IDC_PAPER_PITCH_OFFSET_SPIN, -40, 99, &PrivateDevMode::nPitchOffset,
     kPeelMode}};

TEST_F(PaperPage, LeavingStoresSelectedPaperAndOrientation) {
  DriverSettingsBlock block = With(2);
  PrivateDevMode& settings = block.Record.Private;
  settings.PaperID = 258;
  settings.Orient = DMORIENT_LANDSCAPE;
  settings.nFlip = 1;
  settings.Position = 0;
  StoreDefaults(block);
  const Steps expectStored = {
      ExpectSelected(kList, 1), ExpectChecked({IDC_PAPER_LANDSCAPE, IDC_PAPER_FLIP}),
      ExpectChecked({IDC_PAPER_PORTRAIT, IDC_PAPER_POSITION, IDC_PAPER_REFERENCE}, false),
      ExpectText(IDC_PAPER_LIMIT_TEXT, u"用紙は最大 20 個登録できます。")};
  const SettingsRecord left =
      Ok(kPaperTab,
         {expectStored, GoTo(kVersionTab), GoTo(kPaperTab), expectStored, Select(kList, 2),
          Click(IDC_PAPER_PORTRAIT), Click(IDC_PAPER_FLIP), Click(IDC_PAPER_POSITION)})
          .record;
  EXPECT_EQ(left.Private.PaperID, 259);
  EXPECT_EQ(left.Private.Orient, DMORIENT_PORTRAIT);
  EXPECT_EQ(left.Private.nFlip, 0);
  EXPECT_EQ(left.Private.Position, 1);
  EXPECT_EQ(left.Public.dmOrientation, DMORIENT_PORTRAIT);
  settings.PaperID = 260;  // no paper
  StoreDefaults(block);
  EXPECT_EQ(Ok(kPaperTab, ExpectText(kList, kFree)).record.Private.PaperID, kFreePaperId);
}

TEST_F(PaperPage, OffsetFieldsAcceptTheirRangesOnly) {
  for (const auto& row : kOffsets) {
    SCOPED_TRACE(row.edit);
    DriverSettingsBlock block = DefaultBlock();
    block.Printer.Mecha = row.mode;
    block.Record.Private.*row.setting = 11;
    StoreDefaults(block);
    const std::u16string least = Number(row.minimum), most = Number(row.maximum);
    // The text limit of a field keeps out "-100".
    Steps rejected = {Paste(row.edit, Number(row.maximum + 1)), ExpectText(row.edit, u"11")};
    if (row.minimum != -99)
      rejected += {Paste(row.edit, Number(row.minimum - 1)), ExpectText(row.edit, u"11")};
    const PrivateDevMode left =
        Ok(kPaperTab,
           {ExpectRange(row.spin, row.minimum, row.maximum, 11), Focus(row.edit),
            ExpectHelp(u"（範囲は、" + least + u"ﾄﾞｯﾄから" + most + u"ﾄﾞｯﾄです。）"), rejected,
            ExpectChanged(false), Paste(row.edit, most), ExpectChanged(true), Spin(row.spin, -2),
            ExpectText(row.edit, Number(row.maximum - 2)), Paste(row.edit, least)})
            .record.Private;
    EXPECT_EQ(left.*row.setting, row.minimum);
    // The printer's mode determines which fields are enabled.
    for (const uint16_t mode : {kTearOffMode, kContinuousMode, kPeelMode}) {
      const bool enabled = (row.edit != IDC_PAPER_PEEL_OFFSET || mode == kPeelMode) &&
                           (row.edit != IDC_PAPER_TEAR_OFFSET || mode == kTearOffMode);
      block.Printer.Mecha = mode;
      StoreDefaults(block);
      const auto unchanged = Ok(kPaperTab, ExpectEnabled({row.edit, row.spin}, enabled));
      EXPECT_EQ(unchanged.record.Private.*row.setting, 11);
    }
  }
}

// The result does not depend on the texts that the up-down accepts as a number.
TEST_F(PaperPage, OffsetWithoutWholeNumberKeepsStoredValue) {
  using enum platform::BuddyReading;
  const struct {
    std::u16string typed;  // after "17"; the stored value is 30
    platform::BuddyReading reading;
    std::u16string shown;
    int left;
  } rows[] = {
      {u"", kLeadingNumber, u"", 30},       {u"-", kDigitsAndMinus, u"-", 30},
      {u"5-3", kLeadingNumber, u"5-3", 30}, {u"007", kWholeText, u"007", 7},
      {u" 12", kWholeText, u"17", 17},  // rejected for its blank
  };
  DriverSettingsBlock block = DefaultBlock();
  block.Record.Private.nVertBase = 30;
  for (const auto& row : rows) {
    StoreDefaults(block);
    const auto record =
        Ok(kPaperTab, {[&](Desk& desk) { desk.SetBuddyReading(row.reading); }, Paste(kVert, u"17"),
                       Paste(kVert, row.typed), ExpectText(kVert, row.shown)})
            .record;
    EXPECT_EQ(record.Private.nVertBase, row.left) << testing::PrintToString(row.typed);
  }
}

TEST_F(PaperPage, LeavingThePageRefreshesPublicFields) {
  Cancel(kPaperTab, {Select(kList, 1), GoTo(kVersionTab), [](Desk& desk) {
                       const HWND page = desk.Windows().back().page->handle;
                       const DEVMODEW& fields = PageSession(page)->settings->Record.Public;
                       EXPECT_EQ(fields.dmPaperSize, kFreePaperId);
                       EXPECT_EQ(std::u16string_view(fields.dmFormName), kFree);
                     }});
}

Steps Delete(std::u16string name, int button = IDOK) {
  return {Click(IDC_PAPER_DELETE),
          CloseMessage(name + u" を削除します。\nよろしいですか？",
                       MB_OKCANCEL | MB_ICONEXCLAMATION, u"用紙削除の確認", button)};
}

TEST_F(PaperPage, DeletionSelectsTheNextPaper) {
  StoreDefaults(With(3));
  const Steps fixed = {
      Click(IDC_PAPER_DELETE),
      CloseError(u"この用紙は、ドライバ固定の用紙です。\n削除することは、できません。", kPage)};
  const SettingsRecord middle =
      Ok(kPaperTab, {Select(kList, 0), fixed, Select(kList, 4), fixed, Select(kList, 2),
                     Delete(u"P2", IDCANCEL), ExpectSelected(kList, 2), Delete(u"P2"),
                     ExpectItems(kList, {kStandard, u"P1", u"P3", kFree}), ExpectSelected(kList, 2),
                     ExpectLabelWidth(kPicture, 36)})
          .record;
  EXPECT_EQ(middle.Private.PaperID, 259);  // P3 now
  EXPECT_EQ(middle.Public.dmPaperWidth, 203);
  // A new paper that gets the id of a deleted one is not selected.
  const SettingsRecord last =
      Ok(kPaperTab, {Delete(u"P3"), ExpectChanged(true), ExpectText(kList, kFree),
                     ExpectLabelWidth(kPicture, 102), Click(kRegister), Replace(kName, u"Again"),
                     Click(IDOK), ExpectSelected(kList, 3)})
          .record;
  EXPECT_EQ(last.Private.PaperID, kFreePaperId);
}

}  // namespace
}  // namespace kestrel
