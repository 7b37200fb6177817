// The dialog of decorative fonts as a person uses it.
#include "deco_walk.h"
#include "fonts/resident_fonts.h"

namespace fonts {
namespace {

using DecoDialogTest = FontTest;

constexpr char kFresh[] =
    "0 5*9 0, (5/1..30) x (9/1..54), 1/1..6 x 1/1..6, 2 (0) 0 0 (0) (0) (0) {1}";

// What a resident font looks like when it is chosen.
std::string Chosen(int row, const std::string& sizes, int width, int height, bool proportional,
                   bool emphasis) {
  const auto side = [](int dots) {
    return "(" + std::to_string(dots) + "/1.." + std::to_string(6 * dots) + ")";
  };
  return std::to_string(row) + " " + sizes + " 0, " + side(width) + " x " + side(height) +
         ", 1/1..6 x 1/1..6, 2 " + (proportional ? "0" : "(0)") + " 0 0 (0) " +
         (emphasis ? "0" : "(0)") + " (0) {1}";
}

TEST_F(DecoDialogTest, EveryResidentFontOffersItsOwn) {
  struct Font {
    const char16_t* name;
    const char* sizes;
    bool proportional, emphasis;
    int code, width, height;
  };
  const char kanji[] = "16*16 24*24 22*22";
  std::vector<Font> fonts = {
      {u"X20", "5*9", false, false, 1, 5, 9},
      {u"X21", "17*17", true, false, 2, 17, 17},
      {u"X22", "24*24", true, false, 256, 24, 24},
      {u"X23", "48*48", true, false, 4, 48, 48},
      {u"X24", "48*48", true, false, 4, 48, 48},
      {u"OCR-A", "15*22", false, false, 8, 15, 22},
      {u"OCR-B", "20*24", false, false, 32, 20, 24},
      {u"POP", "80*133", true, false, 2048, 80, 133},
      {u"漢字(横書)", kanji, false, true, 128, 16, 16},
      {u"漢字(縦書)", kanji, false, true, 128, 16, 16},
  };
  for (int density : {203, 305}) {
    if (density == 305) {
      fonts[kOcrA] = {u"OCR-A", "22*33", false, false, 16, 22, 33};
      fonts[kOcrB] = {u"OCR-B", "30*36", false, false, 64, 30, 36};
    }
    SetDensity(density);
    ForgetFonts();
    Steps steps;
    Records expected;
    for (int row = 0; const Font& font : fonts) {
      const std::u16string name = u"My " + std::u16string(font.name);
      steps += NewDeco(
          name,
          {Looks(kFresh), NumberingLooks(kSerialOff), ExpectText(IDC_DECO_FONT_NAME, u""),
           Select(IDC_DECO_FONT_RESIDENT, kKanjiDown), Select(IDC_DECO_FONT_RESIDENT, font.name),
           Looks(Chosen(row++, font.sizes, font.width, font.height, font.proportional,
                        font.emphasis))});
      expected.push_back(Deco(name, font.name, font.code, font.width, font.height));
    }
    EXPECT_EQ(Register(steps), expected);
  }
}

// A cell times its magnifications, in the font's unit. A change of units goes from dots to inches
// by way of tenths of a millimetre; a size that is computed anew converts at once.
TEST_F(DecoDialogTest, MultipliesAndConvertsTheChosenCell) {
  const auto kanji = [](const std::string& middle) { return "8 16*16 24*24 22*22 2, " + middle; };
  const Steps across = {
      Select(IDC_DECO_FONT_RESIDENT, kKanjiAcross),
      Select(IDC_DECO_FONT_SIZE, 2),
      Looks(kanji("(22/1..132) x (22/1..132), 1/1..6 x 1/1..6, 2 (0) 0 0 (0) 0 (0) {1}")),
      Replace(IDC_DECO_FONT_EXPAND_X, u"2"),
      Spin(IDC_DECO_FONT_EXPAND_Y_SPIN, 2),
      Looks(kanji("(44/1..264) x (66/1..396), 2/1..6 x 3/1..6, 2 (0) 0 0 (0) 0 (0) {1}")),
      Replace(IDC_DECO_FONT_EXPAND_X, u"6"),
      Looks(kanji("(132/1..792) x (66/1..396), 6/1..6 x 3/1..6, 2 (0) 0 0 (0) (0) (0) {1}")),
      Replace(IDC_DECO_FONT_EXPAND_X, u"5"),
      Replace(IDC_DECO_FONT_EXPAND_Y, u"6"),
      Looks(kanji("(110/1..660) x (132/1..792), 5/1..6 x 6/1..6, 2 (0) 0 0 (0) (0) (0) {1}")),
      Replace(IDC_DECO_FONT_EXPAND_Y, u"5"),
      Looks(kanji("(110/1..660) x (110/1..660), 5/1..6 x 5/1..6, 2 (0) 0 0 (0) 0 (0) {1}"))};
  const Steps units = {
      Select(IDC_DECO_FONT_RESIDENT, kX23),
      Click(IDC_DECO_FONT_MM),
      Looks("3 48*48 0, (6.0/1..360) x (6.0/1..360), 1/1..6 x 1/1..6, 0 0 0 0 (0) (0) (0) {1}"),
      Click(IDC_DECO_FONT_DOT),
      ExpectText(IDC_DECO_FONT_WIDTH, u"48"),
      Click(IDC_DECO_FONT_MM)};
  const Steps inches = {Select(IDC_DECO_FONT_RESIDENT, kX21), Click(IDC_DECO_FONT_INCH),
                        ExpectText(IDC_DECO_FONT_WIDTH, u"0.083")};
  EXPECT_EQ(Register({NewDeco(u"K", across), NewDeco(u"mm", units), NewDeco(u"inch", inches),
                      NewDeco(u"inch2", {inches, Replace(IDC_DECO_FONT_EXPAND_Y, u"4"),
                                         ExpectText(IDC_DECO_FONT_WIDTH, u"0.084"),
                                         ExpectText(IDC_DECO_FONT_HEIGHT, u"0.335")})}),
            (Records{Deco(u"K", u"漢字(横書)", 512, 110, 110).Put(202, {5, 5}),
                     Deco(u"mm", u"X23", 4, 60, 60).Put(206, 0),
                     Deco(u"inch", u"X21", 2, 83, 83).Put(206, 1),
                     Deco(u"inch2", u"X21", 2, 84, 335).Put(204, {4, 1})}));
}

// At 6 an arrow stops, a typed number stays to be seen, whatever shows the font anew.
TEST_F(DecoDialogTest, MagnificationsBeyondTheirRange) {
  const struct {
    int field;
    const char16_t *wrong, *message;
  } kCases[] = {{IDC_DECO_FONT_EXPAND_X, u"7", u"幅倍率は 6 以下にして下さい。"},
                {IDC_DECO_FONT_EXPAND_X, u"", u"幅倍率は 1 以上にして下さい。"},
                {IDC_DECO_FONT_EXPAND_Y, u"70", u"高さ倍率は 6 以下にして下さい。"},
                {IDC_DECO_FONT_EXPAND_Y, u"0", u"高さ倍率は 1 以上にして下さい。"}};
  Steps steps = {Spin(IDC_DECO_FONT_EXPAND_X_SPIN, 9),
                 ExpectText(IDC_DECO_FONT_EXPAND_X, u"6"),
                 Replace(IDC_DECO_FONT_EXPAND_Y, u"70"),
                 Click(IDC_DECO_FONT_MM),
                 Select(IDC_DECO_FONT_SIZE, 0),
                 Click(IDC_DECO_FONT_SERIAL_ON),
                 ExpectText(IDC_DECO_FONT_EXPAND_Y, u"70"),
                 Click(IDC_DECO_FONT_SERIAL_OFF),
                 Replace(IDC_DECO_FONT_EXPAND_Y, u"1"),
                 Replace(IDC_DECO_FONT_NAME, u"N")};
  for (const auto& c : kCases) {
    steps += {Replace(c.field, c.wrong),
              Refused(std::u16string(u"フォントサイズ\n") + c.message, c.field, kRegisterTitle),
              Replace(c.field, u"2x"), ExpectText(c.field, u"2")};
  }
  // What was checked is what is stored.
  steps += {Click(IDC_DECO_FONT_DOT), Put(IDC_DECO_FONT_EXPAND_X, u"3-1")};
  EXPECT_EQ(Register(NewDeco(u"N", steps)), Records{Deco(u"N").Put(198, {15, 18, 3, 2})});
}

TEST_F(DecoDialogTest, DecorationAndSerialNumberingAreNeverBothOff) {
  const auto look = [](const char* decoration) {
    return Looks(std::string(kFresh, sizeof kFresh - 4) + decoration);
  };
  const auto refuses = [](int id) { return [=](Desk& desk) { EXPECT_FALSE(desk.Click(id)); }; };
  constexpr char kUndecorated[] =
      "0 (5*9 0), (5/1..30) x (9/1..54), (1/1..6) x (1/1..6), (2) (0) (0) (0) (0) (0) (0) 0";
  constexpr char kNumbers[] = "0 1/1..9999 1/-9999..9999 1/1..99 0/0..99";
  EXPECT_EQ(
      Register(NewDeco(
          u"S",
          {Click(IDC_DECO_FONT_SERIAL_ON), look("1"), NumberingLooks(std::string("1 ") + kNumbers),
           Click(IDC_DECO_FONT_DECORATE_OFF), Looks(kUndecorated),
           NumberingLooks(std::string("{1} ") + kNumbers), refuses(IDC_DECO_FONT_SERIAL_OFF),
           Click(IDC_DECO_FONT_DECORATE_ON), Click(IDC_DECO_FONT_SERIAL_OFF), look("{1}"),
           NumberingLooks(kSerialOff), refuses(IDC_DECO_FONT_DECORATE_OFF),
           Replace(IDC_DECO_FONT_NAME, u"S"), SerialWalk(kDecoSerial, kRegisterTitle),
           Click(IDC_DECO_FONT_HEXADECIMAL), Click(IDC_DECO_FONT_DECORATE_OFF)})),
      Records{Deco(u"S").Put(194, 0).Put(220, {1, 1, 5, 0, 12, 8})});
}

TEST_F(DecoDialogTest, ReadsEveryRadioButton) {
  const std::vector<int> groups[] = {kUnits,      kPitches,  kRotations, kReversals,
                                     kSmoothings, kEmphases, kOutlines};
  for (int pass = 0; pass < 10; ++pass) {
    SCOPED_TRACE(pass);
    // A font that offers everything: one without cells, as other printers have.
    Store({Deco(u"FREE", u"OUTLINE", 1024, 100, 200).Put(206, {2, 2, 90, 1, 1, 1, 7})});
    Steps steps;
    const auto value = [pass](const std::vector<int>& group) {
      return pass % static_cast<int>(group.size());
    };
    for (const auto& group : groups) {
      steps += {Click(group[static_cast<size_t>(value(group))]),
                [&](Desk& desk) { EXPECT_EQ(Radios(desk, group), std::to_string(value(group))); }};
    }
    const Records changed = Register(ChangeDeco(steps));
    Record expected = changed.at(0);
    expected.Put(206, {value(kUnits), 1 + value(kPitches), 90 * value(kRotations),
                       value(kReversals), value(kSmoothings), value(kEmphases), value(kOutlines)});
    EXPECT_EQ(changed, Records{expected});
    // What was stored is what is shown.
    EXPECT_EQ(Register(ChangeDeco()), Records{expected});
  }
}

// Another resident font takes back the decoration, not the serial numbering and the name.
TEST_F(DecoDialogTest, AnotherResidentFontStartsAnew) {
  Store({Deco(u"A name of some length", u"X21", 2, 252, 84)
             .Put(202, {3, 1, 1, 2, 90, 1, 0, 0, 0, 1, 1, 5})});
  EXPECT_EQ(
      Register(ChangeDeco(
          {Looks("1 17*17 0, (0.251/1..1506) x (0.084/1..504), 3/1..6 x 1/1..6, 1 1 1 1 (0) (0) "
                 "(0) 1"),
           Click(IDC_DECO_FONT_DECORATE_OFF), Replace(IDC_DECO_FONT_NAME, u"A"),
           Select(IDC_DECO_FONT_RESIDENT, kX22), ExpectText(IDC_DECO_FONT_NAME, u"A"),
           Looks("2 24*24 0, (24/1..144) x (24/1..144), 1/1..6 x 1/1..6, 2 0 0 0 (0) (0) (0) 1")})),
      Records{Deco(u"A", u"X22", 256, 24, 24).Put(220, {1, 1, 5})});
}

// The name goes before the numbers.
TEST_F(DecoDialogTest, NamesAreRefusedWithTheirMessage) {
  Store({Deco(u"Deco"), Bar(u"Bar")});
  EXPECT_EQ(Register(NewDeco(kFullName, {Replace(IDC_DECO_FONT_EXPAND_X, u"7"),
                                         NameWalk(IDC_DECO_FONT_NAME, kRegisterTitle),
                                         Replace(IDC_DECO_FONT_EXPAND_X, u"1")})),
            (Records{Deco(u"Deco"), Deco(kFullName), Bar(u"Bar")}));
}

// What a row and the magnifications allow; no printer has every one of these rows.
TEST(FontOffers, FollowRowAndMagnifications) {
  for (int x = 1; x <= 6; ++x) {
    for (int y = 1; y <= 6; ++y) {
      kestrel::DecoFontInfo font = {};
      font.ExpandX = static_cast<int16_t>(x);
      font.ExpandY = static_cast<int16_t>(y);
      for (int capability : {0, 1, 3, 5}) {
        kestrel::DecoFontInfo row = {};
        row.Smoothing = row.Bold = static_cast<uint16_t>(capability);
        const kestrel::FontOffers offers = kestrel::OffersOf(row, font);
        EXPECT_EQ(offers.smoothing, capability == 1 || (capability == 3 && x >= 3 && y >= 3));
        EXPECT_EQ(offers.emphasis, capability == 5 && x <= 5 && y <= 5);
      }
    }
  }
}

TEST_F(DecoDialogTest, HelpFollowsTheControlInUse) {
  const std::pair<int, UINT> kHelp[] = {
      {1144, 2290}, {1135, 2291}, {1003, 2293}, {1002, 2292}, {1107, 2296}, {1109, 2297},
      {1139, 2298}, {1141, 2299}, {1142, 2300}, {1143, 2301}, {1136, 2302}, {1137, 2303},
      {1011, 2304}, {1009, 2305}, {1010, 2306}, {1012, 2307}, {1013, 2308}, {1014, 2309},
      {1015, 2310}, {1016, 2311}, {1017, 2312}, {1018, 2313}, {1019, 2314}, {1025, 2315},
      {1026, 2316}, {1020, 2317}, {1027, 2318}, {1028, 2319}, {1022, 2320}, {1023, 2321},
      {1024, 2322}, {1021, 2323}, {1148, 2422}, {1147, 2421}, {1145, 2324}, {1146, 2325},
      {1149, 2326}, {1151, 2327}, {1153, 2328}, {1155, 2329}};
  Store({Deco(u"FREE", u"OUTLINE", 1024, 100, 200).Put(206, {2, 2, 90, 1, 1, 1, 7}).Put(220, 1)});
  Steps steps;
  for (const auto& [id, text] : kHelp) steps += Helps(id, text);
  const auto help = [](std::u16string text) { return ExpectText(IDC_HELP_TEXT, std::move(text)); };
  Register(ChangeDeco({steps, Focus(IDC_DECO_FONT_WIDTH),
                       help(u"文字の幅を設定します。（範囲は、27dotから550dotです。）"),
                       Click(IDC_DECO_FONT_MM), Focus(IDC_DECO_FONT_HEIGHT),
                       help(u"文字の高さを設定します。（範囲は、6.3mmから125.0mmです。）"),
                       Select(IDC_DECO_FONT_RESIDENT, kX20), Focus(IDC_DECO_FONT_EXPAND_X),
                       help(u"文字幅の倍率を設定します。(範囲は、1から6です。）"),
                       Focus(IDC_DECO_FONT_EXPAND_Y),
                       help(u"文字高さの倍率を設定します。(範囲は、1から6です。）")}));
}

}  // namespace
}  // namespace fonts
