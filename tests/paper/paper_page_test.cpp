// The paper page and the registration dialog, in the sheet of the user's defaults.
#include <array>

#include "platform/machine/display_list.h"
#include "sheets/page_services.h"
#include "tests/paper/paper_fixture.h"

namespace kestrel {
namespace {

using PaperPage = PaperTest;

constexpr struct {
  int edit, spin, minimum, maximum;
  int16_t PrivateDevMode::*setting;
} kOffsets[] = {{kVert, IDC_PAPER_VERT_BASE_SPIN, -300, 300, &PrivateDevMode::nVertBase},
                {kHorz, IDC_PAPER_HORZ_BASE_SPIN, -300, 300, &PrivateDevMode::nHorzBase},
                {kPeel, IDC_PAPER_PEEL_OFFSET_SPIN, -40, 99, &PrivateDevMode::nPeelOffset},
                {kTear, IDC_PAPER_TEAR_OFFSET_SPIN, -99, 99, &PrivateDevMode::nTearOffset},
                {kPitch, IDC_PAPER_PITCH_OFFSET_SPIN, -40, 99, &PrivateDevMode::nPitchOffset}};

// The printer's mode determines which offset fields are enabled.
TEST_F(PaperPage, LeavingStoresTypedSettingsWithinTheirRanges) {
  const auto expectCaretAtEnd = [](Desk&) {
    EXPECT_EQ(SendMessageW(GetFocus(), EM_GETSEL, 0, 0), MAKELONG(2, 2));
  };
  for (uint16_t mode = 0; mode < 3; ++mode) {
    DriverSettingsBlock block = With(2);
    block.Printer.Mecha = mode;
    PrivateDevMode& settings = block.Record.Private;
    settings.PaperID = static_cast<int16_t>(258 + mode);  // the last names no paper
    settings.Orient = 2;
    settings.nFlip = 1;
    settings.Position = 0;
    Steps shown = {ExpectSelected(kList, 1 + mode), ExpectChecked({kLandscape, kFlip}),
                   ExpectChecked({kPortrait, IDC_PAPER_POSITION, IDC_PAPER_REFERENCE}, false),
                   ExpectText(IDC_PAPER_LIMIT_TEXT, u"用紙は最大 20 個登録できます。"),
                   ExpectText(kPageWholeLabel, u"全体図表示")};
    // A cancelled dialog and typing the stored value do not mark the sheet changed.
    Steps typed = {Click(kFreeEdit), Click(IDCANCEL), Paste(kVert, u"11"), ExpectChanged(false)};
    PrivateDevMode left = settings;
    int16_t stored = 10;
    for (const auto& [edit, spin, minimum, maximum, setting] : kOffsets) {
      const bool enabled = (edit != kPeel || mode == 2) && (edit != kTear || mode == 0);
      const std::u16string least = Number(minimum), most = Number(maximum);
      settings.*setting = left.*setting = ++stored;
      shown += {ExpectEnabled({edit, spin}, enabled), ExpectText(edit, Number(stored)),
                ExpectRange(spin, minimum, maximum, stored)};
      if (!enabled) continue;
      const std::u16string range = u"（範囲は、" + least + u"ﾄﾞｯﾄから" + most + u"ﾄﾞｯﾄです。）";
      typed += {Focus(edit), [=](Desk& desk) {
                  EXPECT_NE(desk.Text(IDC_HELP_TEXT).find(range), std::u16string::npos) << edit;
                }};
      for (const int outside : {minimum - 1, maximum + 1}) {
        if (outside == -100) continue;  // longer than the text limit of the field
        typed += {Paste(edit, Number(outside)), ExpectText(edit, Number(stored)), expectCaretAtEnd};
      }
      typed += {Paste(edit, most), Spin(spin, -2), ExpectText(edit, Number(maximum - 2)),
                Paste(edit, least), ExpectText(edit, least)};
      left.*setting = static_cast<int16_t>(minimum);
    }
    StoreDefaults(block);
    // A rejected character restores the last valid number, here also the stored one, and leaves the
    // caret at the end.
    typed += {ExpectChanged(true),      Paste(kVert, u"2"), Type(kVert, u"x"),
              ExpectText(kVert, u"2"),  Type(kVert, u"12"), Type(kVert, u"9"),  // 2129
              ExpectText(kVert, u"11"), Type(kVert, u"2"),  Click(kLandscape),
              Click(kPortrait),         Click(kFlip),       Click(IDC_PAPER_POSITION)};
    left.nVertBase = 112;
    if (mode == 2) left.PaperID = 256;
    left.Orient = left.Position = 1;
    left.nFlip = 0;
    const SettingsRecord answer =
        Ok(kPaperTab, {shown, GoTo(kVersionTab), GoTo(kPaperTab), shown, typed}).record;
    EXPECT_EQ(memcmp(&answer.Private, &left, sizeof left), 0);
    EXPECT_EQ(answer.Public.dmOrientation, 1);
  }
}

// Returns the lines of the markers in the page's picture box.
std::vector<std::array<LONG, 4>> MarkerLines(Desk& desk) {
  std::vector<std::array<LONG, 4>> lines;
  for (const platform::DrawOp& op : desk.Control(kPicture).drawing) {
    const RECT& line = op.rect;
    if (op.pen == RGB(255, 0, 0)) lines.push_back({line.left, line.top, line.right, line.bottom});
  }
  return lines;
}

// Leaving the page stores the values that the markers show, however the up-down parses the text.
TEST_F(PaperPage, OffsetWithoutWholeNumberKeepsStoredValue) {
  const Steps backspace = [](Desk& desk) { EXPECT_TRUE(desk.Key(VK_BACK)); };
  const struct {
    int stored;
    Steps typed;
    std::u16string shown;
    int left;
  } rows[] = {
      {123, {Replace(kVert, u"123"), backspace, backspace, backspace}, u"", 123},
      {-12, {Replace(kVert, u"-12"), backspace, backspace}, u"-", -12},
      {30, Paste(kVert, u"--5"), u"--5", 30},
      {30, Paste(kVert, u"5-3"), u"5-3", 30},
      {30, {Replace(kVert, u"17"), Paste(kVert, u"-")}, u"-", 30},
      {30, Paste(kVert, u"007"), u"007", 7},
      // A rejected text is replaced by the last number.
      {30, Paste(kVert, u"+3"), u"30", 30},
      {30, {Replace(kVert, u"17"), Paste(kVert, u" 12")}, u"17", 17},
      {30, {Replace(kVert, u"17"), Paste(kVert, u"-"), Paste(kVert, u"4x")}, u"17", 17},
  };
  for (const platform::BuddyReading reading :
       {platform::BuddyReading::kWholeText, platform::BuddyReading::kDigitsAndMinus,
        platform::BuddyReading::kLeadingNumber}) {
    for (const auto& [stored, typed, shown, left] : rows) {
      SCOPED_TRACE(testing::Message()
                   << platform::ToUtf8(shown) << ", reading " << static_cast<int>(reading));
      DriverSettingsBlock block = DefaultBlock();
      block.Record.Private.nVertBase = static_cast<int16_t>(stored);
      StoreDefaults(block);
      std::vector<std::array<LONG, 4>> marked;
      const auto record = Ok(kPaperTab, {[=](Desk& desk) { desk.SetBuddyReading(reading); }, typed,
                                         ExpectText(kVert, shown), Click(kPageWholeLabel),
                                         [&](Desk& desk) { marked = MarkerLines(desk); }})
                              .record;
      EXPECT_EQ(record.Private.nVertBase, left);
      Cancel(kPaperTab, {ExpectText(kVert, Number(left)), Click(kPageWholeLabel),
                         [&](Desk& desk) { EXPECT_EQ(MarkerLines(desk), marked); }});
    }
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

TEST_F(PaperPage, EscInOpenListRestoresSelectedPaper) {
  StoreDefaults(With(2));
  const auto closed = [&](const Step& key) {
    return Ok(kPaperTab, {Select(kList, 0), MoveInOpenList(kList, 2), key, GoTo(kVersionTab)})
        .record.Private.PaperID;
  };
  EXPECT_EQ(closed(Escape()), 257);
  EXPECT_EQ(closed(Enter()), 259);
}

constexpr char16_t kNew[] = u"用紙登録";
constexpr char16_t kEdit[] = u"用紙編集";
constexpr char16_t kFixed[] = u"この用紙は、ドライバ固定の用紙です。\n削除することは、できません。";

Steps Delete(std::u16string name, int button = IDOK) {
  return {Click(IDC_PAPER_DELETE),
          CloseMessage(name + u" を削除します。\nよろしいですか？",
                       MB_OKCANCEL | MB_ICONEXCLAMATION, u"用紙削除の確認", button)};
}

// Expects the width of the first label in a picture box.
Step ExpectLabelWidth(int box, int width) {
  return [=](Desk& desk) {
    const RECT label = desk.Control(box).drawing.at(1).rect;
    EXPECT_EQ(label.right - label.left, width);
  };
}

class RegisterDialog : public PaperTest {
 protected:
  // Logs the dialog's inputs, disabled ones in brackets, and its unit.
  Step LogInputs() {
    return [this](Desk& desk) {
      for (const int id : {kName, kWidth, kLength, kGap, kGrade, kDarkness}) {
        const std::u16string text = desk.Text(id);
        log_ += (desk.Control(id).enabled ? text : u"[" + text + u"]") + u"|";
      }
      if (desk.Control(kMmButton).checked) log_ += u"mm";
      if (desk.Control(kInchButton).checked) log_ += u"inch";
      log_ += u"\n";
    };
  }
};

TEST_F(RegisterDialog, StoresTwentiethPaperAndRejectsAnother) {
  StoreDefaults(With(18));
  const SettingsRecord left =
      Ok(kPaperTab, {Click(kRegister), ExpectTitle(kNew), Fill(u"棚札", u"58.0", u"30.5", u"2.5"),
                     Select(kGrade, 2), Select(kDarkness, 4), Click(IDOK), ExpectSelected(kList, 0),
                     ExpectChanged(true), Click(kRegister),
                     CloseError(u"用紙登録数が既定値を超えます。\n"
                                u"用紙の削除を行ってから、新しい用紙の登録を行って下さい。",
                                kPage),
                     ExpectTitle(kPage), Select(kList, 19)})
          .record;
  EXPECT_EQ(left.Private.PaperID, 276);
  EXPECT_EQ(left.Public.dmPaperLength, 305);
  EXPECT_EQ(Stored(19), u"棚札 2 5 580 305 25 30 0 50 0 480 305 0 0 0 0 1");
}

TEST_F(RegisterDialog, EscInOpenGradeListEnablesDarknessListAgain) {
  Cancel(kPaperTab,
         {Click(kRegister), Select(kGrade, 2), MoveInOpenList(kGrade, 1),
          ExpectText(kGrade, u"プリンタ設定に従う"), ExpectEnabled({kDarkness}, false), Escape(),
          ExpectSelected(kGrade, 2), ExpectEnabled({kDarkness}), Click(IDCANCEL)});
}

TEST_F(RegisterDialog, FeedDirectionIsBlackOnWhiteInHighContrast) {
  machine().SetHighContrast(true);
  const auto drawnBlackOnWhite = [](Desk& desk) {
    const auto drawing = desk.Control(IDC_PAPER_FEED_TEXT).drawing;
    EXPECT_EQ(std::tuple(drawing.at(0).brush, drawing.at(1).textColour, drawing.at(1).background),
              std::tuple(0xFFFFFFu, 0u, 0xFFFFFFu));
  };
  const std::vector<int> text = {IDC_PAPER_REGISTER_FEED_TEXT};
  Cancel(kPaperTab,
         {drawnBlackOnWhite, Click(kRegister),
          ExpectEach(text, &platform::ControlView::background, COLORREF{0xFFFFFF}),
          ExpectEach(text, &platform::ControlView::textColour, COLORREF{0}), Click(IDCANCEL)});
}

TEST_F(RegisterDialog, CancelChangesNothing) {
  const DriverSettingsBlock block = With(2);
  StoreDefaults(block);
  Steps steps;
  for (const Step& cancel : {Click(IDCANCEL), Close()}) {
    steps +=
        {Click(kRegister), Fill(u"New", u"40.0"), cancel, ExpectTitle(kPage),
         ExpectText(IDC_HELP_TEXT, kFirstHelpCursor), Select(kList, 1), Click(kEditButton),
         Fill(u"Renamed", u"50.0"), cancel, Click(kFreeEdit), Fill(u"", u"50.0"), Click(kReference),
         // Closing the list of reference papers chooses none, although one is selected.
         Select(kReferenceList, 1), cancel, ExpectText(kWidth, u"50.0"), cancel,
         Delete(u"P1", IDCANCEL), ExpectItems(kList, {kStandard, u"P1", u"P2", kFree})};
  }
  const SheetResult answer = Ok(kPaperTab, {steps, Select(kList, 0)});
  EXPECT_EQ(memcmp(&answer.record.Private, &block.Record.Private, sizeof(PrivateDevMode)), 0);
  const PrinterSettingsPart stored = StoredPrinterPart(machine());
  EXPECT_EQ(memcmp(&stored, &block.Printer, sizeof stored), 0);
}

TEST_F(RegisterDialog, RenamedPaperKeepsItsSlotAndDeletionRenumbersTheNext) {
  DriverSettingsBlock block = With(4);
  std::fill_n(block.Printer.Papers[1].PaperName, kPaperNameLength, u'x');  // without a terminator
  StoreDefaults(block);
  const std::u16string cut(63, u'x');
  // A paper may keep its own name.
  Ok(kPaperTab,
     {ExpectItems(kList, {kStandard, cut, u"P2", u"P3", u"P4", kFree}), Select(kList, 1),
      Click(kEditButton), ExpectTitle(kEdit), ExpectText(kName, cut),
      ExpectEach({kName}, &platform::ControlView::textLimit, 63), ExpectHidden(kReference),
      ExpectEnabled({kReference}, false), Paste(kName, u"P2"), Focus(kWidth), Click(IDOK),
      CloseError(u"既に同一の用紙名が登録されています。\n別の用紙名に変更して下さい。", kEdit),
      ExpectFocus(kName), ExpectText(kName, u"P2"), Paste(kName, u"p2"), Click(IDOK),
      Click(kEditButton), Click(IDOK),
      // The name of a new paper is compared with every slot, the first one included.
      Click(kRegister), Paste(kName, kStandard), Click(IDOK),
      CloseError(u"既に同一の用紙名が登録されています。\n別の用紙名に変更して下さい。", kNew),
      Click(IDCANCEL)});
  // The driver's own paper and the free-size paper cannot be deleted.
  const Steps fixed = {Click(IDC_PAPER_DELETE), CloseError(kFixed, kPage)};
  const SheetResult middle =
      Ok(kPaperTab,
         {Select(kList, 0), fixed, Select(kList, 5), fixed, Select(kList, 2),
          ExpectLabelWidth(kPicture, 36), Delete(u"P2"),
          ExpectItems(kList, {kStandard, u"p2", u"P3", u"P4", kFree}), ExpectSelected(kList, 2)});
  EXPECT_EQ(Stored(1), u"p2 0 3 201 680 30 30 0 0 0 201 680 0 0 0 0 1");
  EXPECT_EQ(middle.record.Private.PaperID, 259);  // P3 now
  EXPECT_EQ(middle.record.Public.dmPaperWidth, 203);

  // A new paper that gets the id of a deleted one is not selected.
  const SheetResult last =
      Ok(kPaperTab, {Delete(u"P3"), ExpectChanged(true), Delete(u"P4"), ExpectText(kList, kFree),
                     ExpectLabelWidth(kPicture, 102), Click(kRegister), Fill(u"Again"), Click(IDOK),
                     ExpectSelected(kList, 3)});
  EXPECT_EQ(last.record.Private.PaperID, 256);
}

// Typed and stepped sizes take effect at once; a rejected input changes none of them.
TEST_F(RegisterDialog, RejectedInputKeepsShownSizes) {
  const auto rejected = [](int field, std::u16string message) {
    Steps steps;
    for (const int button : {int{IDOK}, kWholeLabel}) {
      // OK is the default button again after the focus has moved to the field.
      steps += {Click(button), CloseError(message + u"にして下さい。", kNew), ExpectFocus(field),
                [](Desk& desk) { EXPECT_TRUE(desk.Control(IDOK).defaultButton); }};
    }
    return steps;
  };
  Ok(kPaperTab,
     {Click(kRegister), Fill(u"N", u"9.9", u"163.1", u"3.0"),
      rejected(kWidth, u"ラベルサイズの幅は、 10.0 ㎜ 以上"), Replace(kWidth, u"12.3"),
      rejected(kLength, u"ラベルサイズの長さは、 163.0 ㎜ 以下"), LogInputs(),
      Replace(kLength, u"68.0"), Click(kInchButton), LogInputs(), Replace(kGap, u"0.316"),
      rejected(kGap, u"ギャップのサイズは、 0.315 inch 以下"), LogInputs(), Click(kMmButton),
      LogInputs(), Spin(kWidthSpin, -3), ExpectText(kWidth, u"12.0"),
      // Each character is rejected.
      Type(kWidth, u".5"), ExpectText(kWidth, u"12.0"), Replace(kWidth, u"45"),
      ExpectText(kWidth, u"45"), Replace(kGap, u"1"), Spin(IDC_PAPER_REGISTER_GAP_SPIN, 100),
      Spin(IDC_PAPER_REGISTER_LENGTH_SPIN, 3), LogInputs(), Click(kInchButton),
      [](Desk& desk) { EXPECT_EQ(desk.Control(kWidth).textLimit, 5); },
      ExpectRange(kWidthSpin, 394, 2283, 1772),
      ExpectRange(IDC_PAPER_REGISTER_LENGTH_SPIN, 394, 6417, 2689), Spin(kWidthSpin, 2), Enter()});
  log_ += Stored(1);
  ExpectGolden("register_sizes.txt");
}

// A new paper copies the selected one without its name when "data reference" is checked.
TEST_F(RegisterDialog, PaperInOtherUnitsThanInchesIsEditedInMillimetres) {
  DriverSettingsBlock block = DefaultBlock();
  AppendPaper(block, Paper(u"P1", {255, 3, 201, 680, 44, 55}));
  AppendPaper(block, Paper(u"P2", {0, 3, 320, 680, 30, 30, kDot}));
  AppendPaper(block, Paper(u"P3", {0, 3, 320, 680, 30, 30, 77}));
  block.Record.Private.FreePaper.LabelHeight = 999;
  StoreDefaults(block);
  Ok(kPaperTab, {Select(kList, 2), Click(kEditButton), LogInputs(), Click(IDCANCEL),
                 Select(kList, 3), Click(kEditButton), LogInputs(), Click(IDOK)});
  Ok(kPaperTab, {Select(kList, 1), Click(IDC_PAPER_REFERENCE), Click(kRegister), LogInputs(),
                 Select(kGrade, 0), LogInputs(), Select(kGrade, 3), LogInputs(), Fill(u"Copy"),
                 Click(IDOK), Select(kList, 5), Click(kRegister), LogInputs(), Click(IDCANCEL),
                 Click(IDC_PAPER_REFERENCE), Click(kRegister), LogInputs(), Click(IDCANCEL)});
  for (const int slot : {2, 3, 4}) log_ += Stored(slot) + u"\n";
  ExpectGolden("register_units.txt");
}

TEST_F(RegisterDialog, FreeSizeCopiesReferencePaperInItsUnit) {
  DriverSettingsBlock block = DefaultBlock();
  AppendPaper(block, Paper(u"P1", {255, 1, 1500, 1500, 100, 111, kInch}));
  block.Record.Private.FreePaper = Paper(u"An older name than this", {1, 3, 321});
  StoreDefaults(block);
  const Steps opened = {ExpectTitle(u"フリーサイズ用紙編集"), ExpectEnabled({kReference})};
  SheetResult answer =
      Ok(kPaperTab, {Select(kList, 2), Click(kEditButton), opened, LogInputs(),
                     Replace(kWidth, u"32.2"), Click(IDOK), ExpectLabelWidth(kPicture, 57)});
  EXPECT_EQ(StoredPrinterPart(machine()).PaperNum, 2);
  log_ += Describe(answer.record.Private.FreePaper) + u"\n";  // the older name is cleared
  answer = Ok(kPaperTab,
              {Click(kFreeEdit), opened, Click(kWholeLabel), Click(kReference),
               ExpectTitle(u"参照用紙選択　"), ExpectItems(kReferenceList, {kStandard, u"P1"}),
               ExpectSelected(kReferenceList, 0), Click(IDOK), LogInputs(), Click(kReference),
               Select(kReferenceList, 1), Click(IDOK), LogInputs(),
               ExpectRange(kWidthSpin, 394, 2283, 1500),
               // The whole-label view shows the copied paper, a square as wide as the box.
               ExpectLabelWidth(kDialogPicture, 138), Click(IDOK),
               ExpectItems(kList, {kStandard, u"P1", kFree})});
  log_ += Describe(answer.record.Private.FreePaper);
  ExpectGolden("register_free.txt");
  EXPECT_EQ(answer.record.Public.dmPaperLength, 381);
}

// golden/register_help.txt: the focused control and the help text after each step.
TEST_F(RegisterDialog, TabMovesDownTheLeftSideAndUpdatesHelp) {
  const auto help = [this](Desk& desk) {
    log_ += Number(desk.FocusedId()) + u" " + desk.Text(IDC_HELP_TEXT) + u"\n";
  };
  Steps steps = {Click(kFreeEdit), Click(kReference), Click(IDCANCEL), help,
                 Click(IDCANCEL),  Click(kRegister)};
  for (const Step& use :
       {Focus(kName), Tab(), Tab(), Tab(), Click(kInchButton), Focus(kGap), Tab(), Tab(), Tab(),
        Click(kMmButton), Focus(kLength), Click(kWholeLabel), Tab()})
    steps += {use, help};
  Cancel(kPaperTab, {steps, Click(IDCANCEL)});
  ExpectGolden("register_help.txt");
}

}  // namespace
}  // namespace kestrel
