// The dialog of barcode fonts, and what it asks of the detail library.
#include "font_fixture.h"
#include "tests/support/bin_dir.h"

namespace fonts {
namespace {

constexpr int kKindList = IDC_BAR_FONT_KIND, kDetail = IDC_BAR_FONT_DETAIL;
enum KindRow : int { kUpca = 0, kCode128 = 6, kQr1 = 12 };

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
  const Record numbered = Bar(full, 100, kInitial).Put(130, {0x4008, 100, 1, 1, 5, 0, 12, 8});
  const auto asked = [](Desk&) {
    EXPECT_EQ(FakeLibrary::calls, "I0@305");
    EXPECT_EQ(platform::Machine::Current().OpenModules(), 1) << "kept";
  };
  SetDensity(305);
  Store({});
  Gives(
      {numbered},
      New(kBar, full + u"2",
          {Lists(19, kUpca), ExpectText(kBar.name, u""), ExpectChecked({IDC_BAR_FONT_STRING_FONT}),
           Looks(kBarSerial, kSerialOff), asked, Replace(kBar.name, u"B"),
           SerialWalk(kBarSerial, Registers(kBar)), Helps(2269, {1049, 1007, 1008, 1165}),
           Helps(2276, {1031, 1032, 1103, 1105, 1111, 1113}), Helps(2274, {1029, 1030}),
           Click(1029), Click(IDC_BAR_FONT_FILE_FONT), Click(IDC_BAR_FONT_HEXADECIMAL)}));
  // The same font shown again, with the numbering switched off: its numbers stay, and are checked.
  // Nothing of a former, longer name is left.
  Gives(
      {Bar(u"C", 100, kInitial).Put(130, {0x2008, 100, 0, 1, 5, 0, 12, 8}).Put(160, {9})},
      Change(kBar, {ExpectChecked({IDC_BAR_FONT_FILE_FONT}), Helps(2273, {kDetail}),
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

// A font of a kind with a library that lacks an entry point, what its Init and ShowDlg answer, and
// what comes of it.
TEST_F(FontTest, DetailsThroughTheLibrary) {
  const Steps upca = Select(kKindList, kUpca);
  const struct {
    int kind;
    const char* missing;
    int init, show;
    Steps steps;
    Record expected;
    const char* calls;
    Steps atOk = {};
  } kCases[] = {
      {100, "", 0, 1, Detail(kUpca), Bar(u"B").Put(160, {9}), "S20"},
      {100, "", 0, 0, Detail(kUpca), Bar(u"B"), "S20"},
      {100, "", 0, 2, Detail(kUpca), Bar(u"B"), "S20"},
      {100, "", 0, 1, Detail(kQr1), Bar(u"B", 1400, kInitial).Put(160, {9}), "I0S16448"},
      {100, "", 1, 0, {Detail(kQr1), upca}, Bar(u"B"), "I0S16448"},
      {100, "", 1, 0, Detail(kQr1), Bar(u"B", 1400, kInitial), "I0S16448I20"},
      {100, "GetBarNameUPCA", 0, 1, {kNoEntry, Lists(0, -1), Click(kDetail)}, Bar(u"B"), ""},
      {100, "GetBarNameRSS", 0, 1, {kNoEntry, Lists(11, kUpca)}, Bar(u"B"), ""},
      {100, "ShowDlgUPCA", 1, 1, {Detail(kUpca), kNoEntry}, Bar(u"B"), ""},
      // Without ShowDlg the answer is that of Init.
      {100, "ShowDlgCODE128", 1, 1, {Detail(kCode128), kNoEntry}, Bar(u"B", 700, kInitial), "I0"},
      {100, "ShowDlgCODE128", 0, 1, {Detail(kCode128), kNoEntry, upca}, Bar(u"B"), "I0"},
      {100, "InitCODE128", 1, 1, {Detail(kCode128), kNoEntry, upca}, Bar(u"B"), ""},
      {100, "InitCODE128", 1, 1, Select(kKindList, kCode128), Bar(u"B", 700), "", kNoEntry},
      // Kinds that it does not list, or that have no row.
      {1400, "GetBarNameRSS", 0, 1, {kNoEntry, Lists(11, -1), Click(kDetail)}, Bar(u"B", 1400), ""},
      {1000, "InitUPCA", 0, 1, Lists(19, kUpca), Bar(u"B"), "", kNoEntry},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(&c - kCases);
    Store({Bar(u"B", c.kind)});
    FakeLibrary::Install(machine(), c.missing, c.init, c.show);
    Gives({c.expected}, Change(kBar, c.steps, c.atOk));
    EXPECT_EQ(FakeLibrary::calls, c.calls);
  }
  machine().UnregisterModule(u"QM610rBAR.DLL");
  Store({Bar(u"Q", 1400)});
  Gives({Bar(u"Q", 1400), Bar(u"N", 100, 0)},
        {Change(kBar, {kNoLibrary, Lists(0, -1)}),
         New(kBar, u"N", {kNoLibrary, kNoLibrary, Click(kDetail)})});
}

}  // namespace
}  // namespace fonts
