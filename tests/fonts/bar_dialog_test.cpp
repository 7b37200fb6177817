// The dialog of barcode fonts, and what it asks of the detail library.
#include "fake_library.h"
#include "font_fixture.h"
#include "tests/support/bin_dir.h"

namespace fonts {
namespace {

using platform::Desk;
using support::Click;
using support::CloseMessage;
using support::ExpectChecked;
using support::ExpectEnabled;
using support::ExpectFocus;
using support::ExpectItems;
using support::ExpectRange;
using support::ExpectSelected;
using support::ExpectText;
using support::ExpectTitle;
using support::Focus;
using support::Replace;
using support::Select;
using Entries = std::vector<std::string>;

constexpr char16_t kRegisterTitle[] = u"バーコードフォントの登録";
constexpr char16_t kChangeTitle[] = u"バーコードフォントの変更";
enum KindRow : int { kUpca = 0, kCode39 = 4, kCode128 = 6, kRss = 11, kQr1 = 12 };

const std::vector<int> kSerialRadios = {IDC_BAR_FONT_SERIAL_ON, IDC_BAR_FONT_SERIAL_OFF};
const std::vector<int> kSerial = {IDC_BAR_FONT_HEXADECIMAL,   IDC_BAR_FONT_DECIMAL,
                                  IDC_BAR_FONT_PRINT_NUM,     IDC_BAR_FONT_PRINT_NUM_SPIN,
                                  IDC_BAR_FONT_INCREMENT,     IDC_BAR_FONT_INCREMENT_SPIN,
                                  IDC_BAR_FONT_ACTIVE_DIGITS, IDC_BAR_FONT_ACTIVE_DIGITS_SPIN,
                                  IDC_BAR_FONT_LOW_DIGITS,    IDC_BAR_FONT_LOW_DIGITS_SPIN};

// Names of the fake library's kinds, up to a number of rows.
std::vector<std::u16string> KindNames(int rows) {
  std::vector<std::u16string> names;
  for (int i = 0; i < rows; ++i) names.push_back({u'種', static_cast<char16_t>(u'A' + i)});
  return names;
}

// A record of a kind with the block that the library left.
Record Blocked(std::u16string_view name, int kind, const FakeLibrary::Block& block) {
  Record record = Bar(name, kind);
  std::ranges::copy(block, record.bytes.begin() + 146);
  return record;
}

class BarDialogTest : public FontTest {
 protected:
  void SetUp() override {
    FontTest::SetUp();
    FakeLibrary::Install(machine());
  }
  static Steps New(std::u16string name, const Steps& steps = {}, const Steps& atOk = {}) {
    return Steps{Click(IDC_CREATE_FONT_BAR_NEW)} + steps +
           Steps{Replace(IDC_BAR_FONT_NAME, std::move(name)), Click(IDOK)} + atOk +
           Steps{ExpectTitle(u"クリエイトフォント")};
  }
  static Steps Change(const Steps& steps = {}, const Steps& atOk = {}) {
    return Steps{Click(IDC_CREATE_FONT_BAR_EDIT), ExpectTitle(kChangeTitle)} + steps +
           Steps{Click(IDOK)} + atOk + Steps{ExpectTitle(u"クリエイトフォント")};
  }
  static platform::ScriptedUser::Step Error(std::u16string text) {
    return CloseMessage(std::move(text), MB_OK, u"VELA Kestrel Graphics Mode Driver");
  }
};
constexpr char16_t kNoLibrary[] = u"LoadLibrary Error!!";
constexpr char16_t kNoEntry[] = u"GetProcAddress Error!!";

TEST_F(BarDialogTest, ANewFontStartsOnTheFirstKind) {
  SetDensity(305);
  const Steps start = {
      ExpectTitle(kRegisterTitle),
      ExpectItems(IDC_BAR_FONT_KIND, KindNames(19)),
      ExpectSelected(IDC_BAR_FONT_KIND, kUpca),
      ExpectText(IDC_BAR_FONT_NAME, u""),
      ExpectChecked({IDC_BAR_FONT_STRING_FONT, IDC_BAR_FONT_SERIAL_OFF, IDC_BAR_FONT_DECIMAL}),
      ExpectRange(IDC_BAR_FONT_PRINT_NUM_SPIN, 1, 9999, 1),
      ExpectRange(IDC_BAR_FONT_INCREMENT_SPIN, -9999, 9999, 1),
      ExpectRange(IDC_BAR_FONT_ACTIVE_DIGITS_SPIN, 1, 99, 1),
      ExpectRange(IDC_BAR_FONT_LOW_DIGITS_SPIN, 0, 99, 0),
      ExpectEnabled(kSerial, false),
      ExpectEnabled(kSerialRadios, true),
      [](Desk& desk) {
        ASSERT_EQ(FakeLibrary::Entries(), Entries{"InitUPCA"});
        EXPECT_EQ(FakeLibrary::calls[0].info, (std::array<uint16_t, 4>{305, 305, 0, 0}));
        EXPECT_EQ(FakeLibrary::calls[0].dialog, desk.Top());
        EXPECT_EQ(platform::Machine::Current().OpenModules(), 1) << "the library is not kept";
      },
  };
  EXPECT_EQ(Register(New(u"B", start)), Records{Blocked(u"B", 100, FakeLibrary::Initial(kUpca))});
}

TEST_F(BarDialogTest, ReadsItsControls) {
  Record expected = Blocked(u"B", 100, FakeLibrary::Initial(kUpca));
  expected.Put(130, {0x4008, 100, 1, 1, 25, -6, 7, 8});
  EXPECT_EQ(Register(New(u"B", {Click(IDC_BAR_FONT_FILE_FONT), Click(IDC_BAR_FONT_SERIAL_ON),
                                ExpectEnabled(kSerial, true), Click(IDC_BAR_FONT_HEXADECIMAL),
                                Replace(IDC_BAR_FONT_PRINT_NUM, u"25"),
                                Replace(IDC_BAR_FONT_INCREMENT, u"-6"),
                                Replace(IDC_BAR_FONT_ACTIVE_DIGITS, u"7"),
                                support::Spin(IDC_BAR_FONT_LOW_DIGITS_SPIN, 8)})),
            Records{expected});
  // The same font shown again, with the numbering switched off: its numbers stay.
  EXPECT_EQ(
      Register(Change({ExpectChecked({IDC_BAR_FONT_FILE_FONT, IDC_BAR_FONT_SERIAL_ON,
                                      IDC_BAR_FONT_HEXADECIMAL}),
                       ExpectText(IDC_BAR_FONT_INCREMENT, u"-6"), ExpectEnabled(kSerial, true),
                       Click(IDC_BAR_FONT_SERIAL_OFF), ExpectEnabled(kSerial, false)})),
      Records{expected.Put(134, 0)});
}

// The kind decides whether the numbering may be switched, from the first notification on; what is
// chosen stays.
TEST_F(BarDialogTest, KindsSwitchTheSerialRadios) {
  Store({Bar(u"Q", 1400).Put(134, 1)});
  EXPECT_EQ(
      Register(Change({ExpectSelected(IDC_BAR_FONT_KIND, kQr1), ExpectEnabled(kSerialRadios, true),
                       Focus(IDC_BAR_FONT_KIND), ExpectEnabled(kSerialRadios, false),
                       ExpectEnabled(kSerial, true), Select(IDC_BAR_FONT_KIND, kRss),
                       ExpectEnabled(kSerialRadios, true), Select(IDC_BAR_FONT_KIND, 18),
                       ExpectEnabled(kSerialRadios, false), Select(IDC_BAR_FONT_KIND, kQr1),
                       ExpectChecked({IDC_BAR_FONT_SERIAL_ON})})),
      Records{Bar(u"Q", 1400).Put(134, 1)});
  EXPECT_TRUE(FakeLibrary::calls.empty());
}

TEST_F(BarDialogTest, EveryKindHasItsRow) {
  const int kinds[] = {100,  200,  300,  400,  500,  600,  700,  800,  900, 1200,
                       1300, 2500, 1400, 1500, 1600, 1700, 1900, 2000, 2100};
  Steps steps;
  Records expected;
  for (int row = 0; row < 19; ++row) {
    const std::u16string name = KindNames(19)[static_cast<size_t>(row)];
    steps = steps + New(name, {Select(IDC_BAR_FONT_KIND, row)});
    expected.push_back(Blocked(name, kinds[row], FakeLibrary::Initial(static_cast<size_t>(row))));
  }
  EXPECT_EQ(Register(steps), expected);
}

// A kind chosen without its details gets the library's defaults on OK; what lies behind the
// library's 40 bytes stays.
TEST_F(BarDialogTest, AnotherKindIsInitialised) {
  Record stored = Bar(u"B");
  stored.bytes[186] = stored.bytes[231] = 0x77;
  Store({stored});
  Record expected = Blocked(u"B", 700, FakeLibrary::Initial(kCode128));
  expected.bytes[186] = expected.bytes[231] = 0x77;
  EXPECT_EQ(Register(Change({Select(IDC_BAR_FONT_KIND, kCode128)})), Records{expected});
  EXPECT_EQ(FakeLibrary::Entries(), Entries{"InitCODE128"});
}

TEST_F(BarDialogTest, DetailsOfTheStoredKindStartFromItsBlock) {
  for (int result : {1, 0, 2}) {
    SCOPED_TRACE(result);
    Store({Bar(u"B")});
    FakeLibrary::Install(machine());
    FakeLibrary::showResult = static_cast<int16_t>(result);
    Record expected = Bar(u"B");
    if (result == 1) expected.bytes[146 + 14] = 0xED;
    EXPECT_EQ(Register(Change({Click(IDC_BAR_FONT_DETAIL)})), Records{expected});
    ASSERT_EQ(FakeLibrary::Entries(), Entries{"ShowDlgUPCA"});
    EXPECT_EQ(Blocked(u"B", 100, FakeLibrary::calls[0].block), Bar(u"B"));
  }
}

TEST_F(BarDialogTest, DetailsOfAnotherKindStartFromItsDefaults) {
  Store({Bar(u"B")});
  const Steps change = {Select(IDC_BAR_FONT_KIND, kQr1), Click(IDC_BAR_FONT_DETAIL)};
  EXPECT_EQ(Register(Change(change)),
            Records{Blocked(u"B", 1400, FakeLibrary::Edited(FakeLibrary::Initial(kQr1)))});
  ASSERT_EQ(FakeLibrary::Entries(), (Entries{"InitQR1", "ShowDlgQR1"}));
  EXPECT_EQ(FakeLibrary::calls[0].block, FakeLibrary::Block());
  EXPECT_EQ(FakeLibrary::calls[1].block, FakeLibrary::Initial(kQr1));

  // Not confirmed: kind and block stay, until OK finds another kind selected.
  Store({Bar(u"B")});
  FakeLibrary::Install(machine());
  FakeLibrary::showResult = 0;
  EXPECT_EQ(Register(Change(change + Steps{Select(IDC_BAR_FONT_KIND, kUpca)})), Records{Bar(u"B")});
  EXPECT_EQ(Register(Change(change)), Records{Blocked(u"B", 1400, FakeLibrary::Initial(kQr1))});
}

TEST_F(BarDialogTest, WithoutTheLibrary) {
  machine().UnregisterModule(u"QM610rBAR.DLL");
  Store({Bar(u"Q", 1400)});
  Record fresh = Bar(u"N");
  fresh.bytes = Blocked(u"N", 100, {}).bytes;
  const Steps none = {Error(kNoLibrary), ExpectItems(IDC_BAR_FONT_KIND, {}),
                      Click(IDC_BAR_FONT_DETAIL), ExpectTitle(kRegisterTitle)};
  EXPECT_EQ(Register(Steps{Click(IDC_CREATE_FONT_BAR_EDIT), Error(kNoLibrary),
                           ExpectSelected(IDC_BAR_FONT_KIND, -1), Click(IDOK)} +
                     New(u"N", Steps{Error(kNoLibrary)} + none)),
            (Records{Bar(u"Q", 1400), fresh}));
}

TEST_F(BarDialogTest, WithoutAnEntryPoint) {
  const auto detail = [](int row) {
    return Steps{Select(IDC_BAR_FONT_KIND, row), Click(IDC_BAR_FONT_DETAIL), Error(kNoEntry)};
  };
  const Record kStored = Bar(u"B");
  const struct {
    const char* missing;
    Steps change;
    Steps atOk;
    int16_t initResult;
    Record expected;
    Entries calls;
  } kCases[] = {
      {"GetBarNameUPCA", {Error(kNoEntry), ExpectItems(IDC_BAR_FONT_KIND, {})}, {}, 0, kStored, {}},
      {"GetBarNameRSS",
       {Error(kNoEntry), ExpectItems(IDC_BAR_FONT_KIND, KindNames(11))},
       {},
       0,
       kStored,
       {}},
      {"ShowDlgUPCA", {Click(IDC_BAR_FONT_DETAIL), Error(kNoEntry)}, {}, 1, kStored, {}},
      // The answer is then that of Init.
      {"ShowDlgCODE128",
       detail(kCode128),
       {},
       1,
       Blocked(u"B", 700, FakeLibrary::Initial(kCode128)),
       {"InitCODE128"}},
      {"ShowDlgCODE128",
       detail(kCode128) + Steps{Select(IDC_BAR_FONT_KIND, kUpca)},
       {},
       0,
       kStored,
       {"InitCODE128"}},
      {"InitCODE128",
       detail(kCode128) + Steps{Select(IDC_BAR_FONT_KIND, kUpca)},
       {},
       1,
       kStored,
       {}},
      {"InitCODE128",
       {Select(IDC_BAR_FONT_KIND, kCode128)},
       {Error(kNoEntry)},
       1,
       Bar(u"B", 700),
       {}},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.missing);
    Store({kStored});
    FakeLibrary::Install(machine(), {c.missing});
    FakeLibrary::initResult = c.initResult;
    // A message box may come before the dialog can be seen.
    EXPECT_EQ(Register(Steps{Click(IDC_CREATE_FONT_BAR_EDIT)} + c.change + Steps{Click(IDOK)} +
                       c.atOk + Steps{ExpectTitle(u"クリエイトフォント")}),
              Records{c.expected});
    EXPECT_EQ(FakeLibrary::Entries(), c.calls);
  }
  FakeLibrary::Install(machine(), {"InitUPCA"});
  ForgetFonts();
  EXPECT_EQ(Register(New(u"N", {Error(kNoEntry), ExpectItems(IDC_BAR_FONT_KIND, KindNames(19))})),
            Records{Blocked(u"N", 100, {})});
}

// A library that names fewer kinds than the font's own keeps the font's kind.
TEST_F(BarDialogTest, KindsBeyondTheListStay) {
  FakeLibrary::Install(machine(), {"GetBarNameRSS"});
  Store({Bar(u"Q", 1400)});
  EXPECT_EQ(Register(Steps{Click(IDC_CREATE_FONT_BAR_EDIT), Error(kNoEntry),
                           ExpectSelected(IDC_BAR_FONT_KIND, -1), Click(IDC_BAR_FONT_DETAIL),
                           Click(IDOK)}),
            Records{Bar(u"Q", 1400)});
  // An id without a row is shown as the first kind, and becomes it.
  FakeLibrary::Install(machine());
  Store({Bar(u"B", 1000)});
  EXPECT_EQ(Register(Change({ExpectSelected(IDC_BAR_FONT_KIND, kUpca)})),
            Records{Blocked(u"B", 100, FakeLibrary::Initial(kUpca))});
}

TEST_F(BarDialogTest, NamesAndNumbersAreChecked) {
  Store({Deco(u"Deco"), Bar(u"Bar")});
  const char16_t taken[] =
      u"既に同一のフォント名が登録されています。\n別のフォント名に変更して下さい。";
  const struct {
    int field;
    const char16_t *wrong, *message, *right;
  } kCases[] = {
      {IDC_BAR_FONT_NAME, u" ", u"登録フォント名を入力して下さい。", u"B"},
      {IDC_BAR_FONT_NAME, u"Deco", taken, u"B"},
      {IDC_BAR_FONT_NAME, u"Bar", taken, u"B"},
      {IDC_BAR_FONT_PRINT_NUM, u"0", u"連番設定\n同一発行枚数は 1 枚以上にして下さい。", u"9999"},
      {IDC_BAR_FONT_INCREMENT, u"10000", u"連番設定\n増減値は 9999 以下にして下さい。", u"-9999"},
      {IDC_BAR_FONT_ACTIVE_DIGITS, u"100", u"連番設定\n連番有効桁数は 99 枚以下にして下さい。",
       u"99"},
      {IDC_BAR_FONT_LOW_DIGITS, u"-1", u"連番設定\n下位無効桁数は 0 枚以上にして下さい。", u"99"},
  };
  Steps steps = {Click(IDC_BAR_FONT_SERIAL_ON)};
  for (const auto& c : kCases) steps.push_back(Replace(c.field, c.wrong));
  for (const auto& c : kCases) {
    steps = steps + Steps{Replace(c.field, c.wrong),
                          Focus(IDC_BAR_FONT_KIND),
                          Click(IDOK),
                          CloseMessage(c.message, MB_ICONEXCLAMATION, kRegisterTitle),
                          ExpectFocus(c.field),
                          Replace(c.field, c.right)};
  }
  Record expected = Blocked(u"B", 100, FakeLibrary::Initial(kUpca));
  expected.Put(134, {1, 0, 9999, -9999, 99, 99});
  EXPECT_EQ(Register(New(u"B", steps)), (Records{Deco(u"Deco"), Bar(u"Bar"), expected}));
}

TEST_F(BarDialogTest, CancelKeepsTheList) {
  Store({Bar(u"B")});
  const Steps change = {Replace(IDC_BAR_FONT_NAME, u"Other"), Select(IDC_BAR_FONT_KIND, kCode39),
                        Click(IDC_BAR_FONT_DETAIL)};
  EXPECT_EQ(Register(Steps{Click(IDC_CREATE_FONT_BAR_EDIT)} + change +
                     Steps{Click(IDCANCEL), Click(IDC_CREATE_FONT_BAR_NEW)} + change +
                     Steps{[](Desk& desk) { EXPECT_TRUE(desk.Close()); }}),
            Records{Bar(u"B")});
}

TEST_F(BarDialogTest, HelpFollowsTheControlInUse) {
  const auto help = [](std::u16string text) { return ExpectText(IDC_HELP_TEXT, text); };
  Register(New(u"B", {Focus(IDC_BAR_FONT_KIND), help(u"バーコード種を選択します。"),
                      Click(IDC_BAR_FONT_SERIAL_ON), Focus(IDC_BAR_FONT_INCREMENT),
                      [](Desk& desk) {
                        EXPECT_NE(desk.Text(IDC_HELP_TEXT).find(u"-9999から9999"),
                                  std::u16string::npos);
                      },
                      Select(IDC_BAR_FONT_KIND, kCode39), help(u"バーコード種を選択します。")}));
}

// The library itself, found in the driver directory of the printer's version.
TEST_F(BarDialogTest, TheRealLibraryEditsAQrCode) {
  machine().UnregisterModule(u"QM610rBAR.DLL");
  machine().InstallModule(machine().driverDirectory() + u"\\3\\QM610rBAR.DLL",
                          support::Built("QM610rBAR.so"));
  constexpr int kCellSize = 1004;
  const Records stored = Register(
      New(u"QR", {[](Desk& desk) { EXPECT_EQ(desk.Control(IDC_BAR_FONT_KIND).items.size(), 19u); },
                  Select(IDC_BAR_FONT_KIND, kQr1), Click(IDC_BAR_FONT_DETAIL),
                  Replace(kCellSize, u"9"), Click(IDOK), ExpectTitle(kRegisterTitle)}));
  ASSERT_EQ(stored.size(), 1u);
  EXPECT_EQ(stored[0].Word(132), 1400);
  EXPECT_EQ(stored[0].Word(146), 1400);
  EXPECT_EQ(stored[0].Word(146 + 14), 9);
  EXPECT_EQ(
      Register(Change({Click(IDC_BAR_FONT_DETAIL), ExpectText(kCellSize, u"9"), Click(IDOK)})),
      stored);
}

}  // namespace
}  // namespace fonts
