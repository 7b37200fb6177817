// The dialog of barcode fonts, and what it asks of the detail library.
#include "font_fixture.h"
#include "tests/support/bin_dir.h"

namespace fonts {
namespace {

constexpr int kKindList = IDC_BAR_FONT_KIND, kDetail = IDC_BAR_FONT_DETAIL;
enum KindRow : int { kUpca = 0, kQr1 = 12 };

Step Error(std::u16string text) {
  return CloseMessage(text, MB_OK, u"VELA Kestrel Graphics Mode Driver");
}
const Step kNoLibrary = Error(u"LoadLibrary Error!!"), kNoEntry = Error(u"GetProcAddress Error!!");
Steps Lists(size_t number, int selected) {
  return {ExpectItems(kKindList, {number, u"種45678901234567890123456789012"}),
          ExpectSelected(kKindList, selected)};
}
Steps Detail(int row) { return {Select(kKindList, row), Click(kDetail)}; }

TEST_F(FontTest, ReadsItsControls) {
  const std::u16string full = u"1234567890123456789012345678901";
  const Record numbered =
      Bar(full, 100, kInitial).Put(130, {0x4008, 100, 1, 1, 5, 0, 12, 8}).Put(160, {9});
  const auto asked = [](Desk&) {
    EXPECT_EQ(FakeLibrary::calls, "I0@305");
    EXPECT_EQ(platform::Machine::Current().OpenModules(), 1) << "kept";
  };
  SetDensity(305);
  Store({});
  Gives({numbered}, New(kBar, full + u"2",
                        {Lists(19, kUpca), ExpectText(kBar.name, u""),
                         ExpectChecked({IDC_BAR_FONT_STRING_FONT}), Looks(kBarSerial, kSerialOff),
                         asked, Replace(kBar.name, u"B"), SerialWalk(kBarSerial, Registers(kBar)),
                         Describes(13, {1029}), Click(1029), Focus(kKindList),
                         ExpectText(IDC_HELP_TEXT, u"バーコード種を選択します。"),
                         Click(IDC_BAR_FONT_FILE_FONT), Click(IDC_BAR_FONT_HEXADECIMAL)}));
  // The same font shown again, with the numbering switched off: its numbers stay, and are checked.
  // Nothing of a former, longer name is left.
  Gives(
      {Bar(u"C", 100, kInitial).Put(130, {0x2008, 100, 0, 1, 5, 0, 12, 8}).Put(160, {9})},
      Change(kBar, {ExpectChecked({IDC_BAR_FONT_FILE_FONT}),
                    Looks(kBarSerial, "1 1 5/1..9999 0/-9999..9999 12/1..99 8/0..99"), Click(1030),
                    Looks(kBarSerial, "0 (1) (5/1..9999) (0/-9999..9999) (12/1..99) (8/0..99)"),
                    Replace(kBar.name, u"C"), Put(1103, u"0"), Click(IDOK), Click(IDOK),
                    ExpectTitle(Changes(kBar)), Put(1103, u"5"), Click(IDC_BAR_FONT_STRING_FONT)}));
}

// With the library itself, found in the driver directory of the printer's version. The kind decides
// whether the numbering may be switched, from the first notification on; what is chosen stays. A
// kind chosen without its details gets the library's; what lies behind its 40 bytes stays.
TEST_F(FontTest, EveryKindHasItsRow) {
  constexpr int kKinds[] = {100,  200,  300,  400,  500,  600,  700,  800,  900, 1200,
                            1300, 2500, 1400, 1500, 1600, 1700, 1900, 2000, 2100};
  machine().UnregisterModule(u"QM610rBAR.DLL");
  machine().InstallModule(machine().driverDirectory() + u"\\3\\QM610rBAR.DLL",
                          Built("QM610rBAR.so"));
  const auto looks = [](int row) { return Looks({kBarSerial[0]}, row < kQr1 ? "1" : "(1)"); };
  const auto font = [&](int row) {
    return Bar(u"B", kKinds[row]).Put(134, {1}).Put(186, {7, 7, 7}).Put(230, {7});
  };
  for (int row = 0; row < 19; ++row) {
    SCOPED_TRACE(row);
    const int next = (row + 1) % 19;
    Store({font(row)});
    Gives({font(row)}, Change(kBar, {ExpectSelected(kKindList, row), looks(kUpca), Focus(kKindList),
                                     looks(row)}));
    Ok(kFontTab, Change(kBar, {Select(kKindList, next), looks(next)}));
    const Records chosen = Stored();
    EXPECT_EQ(chosen.at(0).words[73], kKinds[next]);
    Record expected = font(next);
    std::copy_n(&chosen[0].words[73], 20, &expected.words[73]);
    EXPECT_EQ(chosen, Records{expected});
    Gives(chosen, Change(kBar, {Click(kDetail), Click(IDOK)}));
  }
}

TEST_F(FontTest, DetailsThroughTheLibrary) {
  const Steps upca = Select(kKindList, kUpca);
  const Record stored = Bar(u"B"), qr = Bar(u"B", 1400, kInitial);
  // A font of a kind, a library without an entry point, and what its Init and ShowDlg answer.
  const auto gives = [&](int kind, const char* missing, int16_t init, int16_t show,
                         const Record& expected, const char* calls, const Steps& steps,
                         const Steps& atOk = {}) {
    SCOPED_TRACE(testing::Message() << kind << missing << init << show << calls);
    Store({Bar(u"B", kind)});
    FakeLibrary::Install(machine(), missing, init, show);
    Gives({expected}, Change(kBar, steps, atOk));
    EXPECT_EQ(FakeLibrary::calls, calls);
  };
  gives(100, "", 0, 1, Bar(u"B").Put(160, {9}), "S20", Detail(kUpca));
  gives(100, "", 0, 0, stored, "S20", Detail(kUpca));
  gives(100, "", 0, 2, stored, "S20", Detail(kUpca));
  gives(100, "", 0, 1, Record(qr).Put(160, {9}), "I0S16448", Detail(kQr1));
  gives(100, "", 1, 0, stored, "I0S16448", {Detail(kQr1), upca});
  gives(100, "", 1, 0, qr, "I0S16448I20", Detail(kQr1));
  gives(100, "GetBarNameUPCA", 0, 1, stored, "", {kNoEntry, Lists(0, -1), Click(kDetail)});
  gives(100, "GetBarNameRSS", 0, 1, stored, "", {kNoEntry, Lists(11, kUpca)});
  gives(100, "ShowDlgUPCA", 1, 1, stored, "", {Detail(kUpca), kNoEntry});
  // Without ShowDlg the answer is that of Init.
  gives(100, "ShowDlgQR1", 1, 1, qr, "I0", {Detail(kQr1), kNoEntry});
  gives(100, "ShowDlgQR1", 0, 1, stored, "I0", {Detail(kQr1), kNoEntry, upca});
  gives(100, "InitQR1", 1, 1, stored, "", {Detail(kQr1), kNoEntry, upca});
  gives(100, "InitQR1", 1, 1, Bar(u"B", 1400), "", Select(kKindList, kQr1), kNoEntry);
  // Kinds that are not listed, or that have no row.
  gives(1400, "GetBarNameRSS", 0, 1, Bar(u"B", 1400), "",
        {kNoEntry, Lists(11, -1), Click(kDetail)});
  gives(1000, "InitUPCA", 0, 1, stored, "", Lists(19, kUpca), kNoEntry);
  machine().UnregisterModule(u"QM610rBAR.DLL");
  Gives({stored, Bar(u"N", 100, 0)}, {Change(kBar, {kNoLibrary, Lists(0, -1)}),
                                      New(kBar, u"N", {kNoLibrary, kNoLibrary, Click(kDetail)})});
}

}  // namespace
}  // namespace fonts
