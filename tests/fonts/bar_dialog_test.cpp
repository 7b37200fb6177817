// The dialog of barcode fonts, and what it asks of the detail library.
#include "fake_library.h"
#include "font_fixture.h"
#include "tests/support/bin_dir.h"

namespace fonts {
namespace {

constexpr char16_t kRegisterTitle[] = u"バーコードフォントの登録";
constexpr char16_t kChangeTitle[] = u"バーコードフォントの変更";
constexpr char16_t kNoLibrary[] = u"LoadLibrary Error!!";
constexpr char16_t kNoEntry[] = u"GetProcAddress Error!!";
enum KindRow : int { kUpca = 0, kCode128 = 6, kQr1 = 12 };
constexpr int kKinds[] = {100,  200,  300,  400,  500,  600,  700,  800,  900, 1200,
                          1300, 2500, 1400, 1500, 1600, 1700, 1900, 2000, 2100};
const SerialIds kSerial = {
    {1030, 1029}, {1032, 1031}, {1103, 1105, 1111, 1113}, {1163, 1164, 1112, 1114}};

Step NumberingLooks(std::string look) {
  return [=](Desk& desk) { EXPECT_EQ(SerialLook(desk, kSerial), look); };
}
Step Error(std::u16string text) {
  return CloseMessage(std::move(text), MB_OK, u"VELA Kestrel Graphics Mode Driver");
}
Step KindsListed(size_t number, int selected) {
  return [=](Desk& desk) {
    const auto list = desk.Control(IDC_BAR_FONT_KIND);
    EXPECT_EQ(list.items, std::vector<std::u16string>(number, u"種45678901234567890123456789012"));
    EXPECT_EQ(list.selection, selected);
  };
}
Steps New(std::u16string name, const Steps& steps = {}) {
  return {Click(IDC_CREATE_FONT_BAR_NEW), steps, Replace(IDC_BAR_FONT_NAME, std::move(name)),
          Click(IDOK), ExpectTitle(u"クリエイトフォント")};
}
// A message box may come before the dialog can be seen, and after OK.
Steps Change(const Steps& steps = {}, const Steps& atOk = {}) {
  return {Click(IDC_CREATE_FONT_BAR_EDIT), steps, Click(IDOK), atOk,
          ExpectTitle(u"クリエイトフォント")};
}

class BarDialogTest : public FontTest {
 protected:
  void SetUp() override {
    FontTest::SetUp();
    FakeLibrary::Install(machine());
  }
};

// A record of a kind with the block that the library left.
Record Fresh(std::u16string_view name, int kind = 100) {
  Record record = Bar(name, kind);
  std::ranges::copy(FakeLibrary::Initial(), record.bytes.begin() + 146);
  return record;
}

TEST_F(BarDialogTest, ANewFontStartsOnTheFirstKind) {
  SetDensity(305);
  EXPECT_EQ(
      Register(New(u"B", {ExpectTitle(kRegisterTitle), KindsListed(19, kUpca),
                          ExpectText(IDC_BAR_FONT_NAME, u""),
                          ExpectChecked({IDC_BAR_FONT_STRING_FONT}), NumberingLooks(kSerialOff),
                          [](Desk& desk) {
                            EXPECT_EQ(FakeLibrary::owner, desk.Top());
                            EXPECT_EQ(FakeLibrary::calls, "I");
                            EXPECT_EQ(FakeLibrary::info, (std::array<uint16_t, 4>{305, 305, 0, 0}));
                            EXPECT_EQ(platform::Machine::Current().OpenModules(), 1) << "kept";
                          }})),
      Records{Fresh(u"B")});
}

TEST_F(BarDialogTest, ReadsItsControls) {
  Store({Deco(u"Deco"), Bar(u"Bar")});
  const Record expected = Fresh(kFullName).Put(130, {0x4008, 100, 1, 1, 5, 0, 12, 8});
  EXPECT_EQ(Register(New(kFullName,
                         {Put(kSerial.edits[0], u"0"), NameWalk(IDC_BAR_FONT_NAME, kRegisterTitle),
                          SerialWalk(kSerial, kRegisterTitle), Click(IDC_BAR_FONT_FILE_FONT),
                          Click(IDC_BAR_FONT_HEXADECIMAL)})),
            (Records{Deco(u"Deco"), Bar(u"Bar"), expected}));
  // The same font shown again, with the numbering switched off: its numbers stay. Nothing of a
  // former, longer name does.
  Store({expected});
  EXPECT_EQ(
      Register(Change({ExpectTitle(kChangeTitle), ExpectChecked({IDC_BAR_FONT_FILE_FONT}),
                       NumberingLooks("1 1 5/1..9999 0/-9999..9999 12/1..99 8/0..99"),
                       Click(IDC_BAR_FONT_SERIAL_OFF),
                       NumberingLooks("0 (1) (5/1..9999) (0/-9999..9999) (12/1..99) (8/0..99)"),
                       Replace(IDC_BAR_FONT_NAME, u"C"), Click(IDC_BAR_FONT_STRING_FONT)})),
      Records{Fresh(u"C").Put(130, {0x2008, 100, 0, 1, 5, 0, 12, 8})});
}

// The kind decides whether the numbering may be switched, from the first notification on; what is
// chosen stays. What a kind chosen without its details gets is the library's; what lies behind the
// library's 40 bytes stays.
TEST_F(BarDialogTest, EveryKindHasItsRow) {
  const auto tailed = [](Record record) {
    std::fill(record.bytes.begin() + 186, record.bytes.end(), 0x77);
    return record.Put(134, 1);
  };
  for (int row = 0; row < 19; ++row) {
    SCOPED_TRACE(row);
    const Record stored = tailed(Bar(u"B", kKinds[row]));
    Store({stored});
    const int next = (row + 1) % 19;
    const auto looks = [](int kind) {
      return
          [=](Desk& desk) { EXPECT_EQ(Radios(desk, kSerial.switches), kind < kQr1 ? "1" : "(1)"); };
    };
    EXPECT_EQ(Register(Change({KindsListed(19, row), looks(kUpca), Focus(IDC_BAR_FONT_KIND),
                               looks(row), ExpectEnabled({IDC_BAR_FONT_INCREMENT})})),
              Records{stored});
    EXPECT_EQ(FakeLibrary::calls, "");
    const Record expected = tailed(Fresh(u"B", kKinds[next]));
    EXPECT_EQ(Register(Change({Select(IDC_BAR_FONT_KIND, next), looks(next)})), Records{expected});
    EXPECT_EQ(std::exchange(FakeLibrary::calls, ""), "I");
  }
}

TEST_F(BarDialogTest, DetailsThroughTheLibrary) {
  const auto detail = [](int row) {
    return Steps{Select(IDC_BAR_FONT_KIND, row), Click(IDC_BAR_FONT_DETAIL)};
  };
  const Steps back = Select(IDC_BAR_FONT_KIND, kUpca);
  const Record stored = Bar(u"B");
  Record edited = stored;
  Record freshAndEdited = Fresh(u"B", 1400);
  edited.bytes[146 + 14] = freshAndEdited.bytes[146 + 14] = 0xED;
  // A library without an entry point, and what its Init and ShowDlg answer.
  const auto check = [&](const char* missing, int init, int show, const Steps& change,
                         const Record& expected, const std::string& calls, const Steps& atOk = {}) {
    SCOPED_TRACE(testing::Message() << missing << init << show << calls);
    Store({stored});
    FakeLibrary::Install(machine(), {missing});
    FakeLibrary::initResult = static_cast<int16_t>(init);
    FakeLibrary::showResult = static_cast<int16_t>(show);
    EXPECT_EQ(Register(Change(change, atOk)), Records{expected});
    EXPECT_EQ(FakeLibrary::calls, calls);
    // Init starts from nothing, ShowDlg from what is stored or from what Init left.
    FakeLibrary::Block from = {};
    if (calls == "S") std::ranges::copy_n(stored.bytes.begin() + 146, 40, from.begin());
    if (calls == "IS") from = FakeLibrary::Initial();
    if (calls.ends_with("S") || calls == "I") {
      EXPECT_EQ(FakeLibrary::handed, from);
    }
  };
  check("", 0, 1, detail(kUpca), edited, "S");
  check("", 0, 0, detail(kUpca), stored, "S");
  check("", 0, 2, detail(kUpca), stored, "S");
  check("", 0, 1, detail(kQr1), freshAndEdited, "IS");
  check("", 1, 0, {detail(kQr1), back}, stored, "IS");
  check("", 1, 0, detail(kQr1), Fresh(u"B", 1400), "ISI");
  const Step error = Error(kNoEntry);
  check("GetBarNameUPCA", 0, 1, {error, KindsListed(0, -1), Click(IDC_BAR_FONT_DETAIL)}, stored,
        "");
  check("GetBarNameRSS", 0, 1, {error, KindsListed(11, kUpca)}, stored, "");
  check("ShowDlgUPCA", 1, 1, {detail(kUpca), error}, stored, "");
  // Without ShowDlg the answer is that of Init.
  check("ShowDlgCODE128", 1, 1, {detail(kCode128), error}, Fresh(u"B", 700), "I");
  check("ShowDlgCODE128", 0, 1, {detail(kCode128), error, back}, stored, "I");
  check("InitCODE128", 1, 1, {detail(kCode128), error, back}, stored, "");
  check("InitCODE128", 1, 1, Select(IDC_BAR_FONT_KIND, kCode128), Bar(u"B", 700), "", error);
}

// Without the library, and with kinds that it does not list or that have no row.
TEST_F(BarDialogTest, KindsBeyondTheListStay) {
  Store({Bar(u"Q", 1400)});
  FakeLibrary::Install(machine(), {"GetBarNameRSS"});
  EXPECT_EQ(Register(Change({Error(kNoEntry), KindsListed(11, -1), Click(IDC_BAR_FONT_DETAIL)})),
            Records{Bar(u"Q", 1400)});
  machine().UnregisterModule(u"QM610rBAR.DLL");
  Record empty = Bar(u"N");
  std::ranges::fill_n(empty.bytes.begin() + 146, 40, 0);
  EXPECT_EQ(
      Register({Change({Error(kNoLibrary), KindsListed(0, -1)}),
                New(u"N", {Error(kNoLibrary), Error(kNoLibrary), Click(IDC_BAR_FONT_DETAIL)})}),
      (Records{Bar(u"Q", 1400), empty}));
  FakeLibrary::Install(machine(), {"InitUPCA"});
  Store({Bar(u"B", 1000)});
  EXPECT_EQ(Register({Change({KindsListed(19, kUpca)}, Error(kNoEntry)),
                      New(u"N", {Error(kNoEntry), KindsListed(19, kUpca)})}),
            (Records{Bar(u"B", 100), empty}));
}

TEST_F(BarDialogTest, HelpFollowsTheControlInUse) {
  const std::pair<int, UINT> kHelp[] = {{1049, 2269}, {1007, 2270}, {1008, 2271}, {1165, 2272},
                                        {1030, 2275}, {1029, 2274}, {1031, 2276}, {1032, 2277},
                                        {1103, 2278}, {1111, 2280}, {1113, 2281}, {1105, 2279}};
  Steps steps;
  for (const auto& [id, text] : kHelp) steps += Helps(id, text);
  Register(New(u"B", {Click(IDC_BAR_FONT_SERIAL_ON), steps, [](Desk& desk) {
                        EXPECT_NE(desk.Text(IDC_HELP_TEXT).find(u"-9999から9999"),
                                  std::u16string::npos);
                      }}));
}

// The library itself, found in the driver directory of the printer's version.
TEST_F(BarDialogTest, TheRealLibraryKnowsEveryKind) {
  machine().UnregisterModule(u"QM610rBAR.DLL");
  machine().InstallModule(machine().driverDirectory() + u"\\3\\QM610rBAR.DLL",
                          Built("QM610rBAR.so"));
  const std::vector<std::u16string> names = {u"UPC-A",
                                             u"UPC-E",
                                             u"JAN-8",
                                             u"JAN-13",
                                             u"CODE39",
                                             u"CODE93",
                                             u"CODE128",
                                             u"UCC/EAN128",
                                             u"ITF(Interleaved 2of5)",
                                             u"NW-7",
                                             u"カスタマバーコード",
                                             u"RSS(GS1 DataBar)",
                                             u"QRコード(モデル1)",
                                             u"QRコード(モデル2)",
                                             u"マイクロQRコード",
                                             u"PDF417",
                                             u"MaxiCode",
                                             u"DataMatrix(ECC200)",
                                             u"マイクロPDF417"};
  Steps steps;
  for (int row = 0; row < 19; ++row) {
    steps += New(u"Kind " + names[static_cast<size_t>(row)],
                 {ExpectItems(IDC_BAR_FONT_KIND, names), Select(IDC_BAR_FONT_KIND, row),
                  Click(IDC_BAR_FONT_DETAIL), Click(IDOK), ExpectTitle(kRegisterTitle)});
  }
  constexpr int kCellSize = 1003;
  steps += New(u"QR", {Select(IDC_BAR_FONT_KIND, kQr1), Click(IDC_BAR_FONT_DETAIL),
                       Replace(kCellSize, u"9"), Click(IDOK)});
  const Records stored = Register(steps);
  ASSERT_EQ(stored.size(), 20u);
  for (size_t row = 0; row < 19; ++row) {
    EXPECT_EQ(stored[row].Word(132), kKinds[row]);
    EXPECT_EQ(stored[row].Word(146), kKinds[row]);
  }
  EXPECT_EQ(stored[19].Word(146 + 14), 9);
}

}  // namespace
}  // namespace fonts
