// The dialogs of decorative and barcode fonts, with fonts of this printer and of others.
#include "font_fixture.h"
#include "fonts/resident_fonts.h"
#include "tests/support/bin_dir.h"

namespace fonts {
namespace {

constexpr int kResident = 1135, kSize = 1139, kWidth = 1107, kHeight = 1109, kX = 1157, kY = 1159,
              kMm = 1141, kInch = 1142, kDot = 1143, kPlain = 1003, kDecorated = 1002,
              kSerialOn = 1147, kSerialNo = 1148;

// The controls of decoration: size list, width, height, magnifications, then the radio buttons in
// the order of their values, from the unit to decoration itself.
const std::vector<int> kOutlines = {1019, 1025, 1026, 1020, 1027, 1028, 1022, 1023, 1024, 1021};
const Groups kControls = {{kSize},
                          {kWidth, 1108},
                          {kHeight, 1110},
                          {kX, 1158},
                          {kY, 1160},
                          {kMm, kInch, kDot},
                          {1136, 1137},
                          {1011, 1009, 1010, 1012},
                          {1014, 1013},
                          {1016, 1015},
                          {1018, 1017},
                          kOutlines,
                          {kPlain, kDecorated}};
Step ExpectDecoration(std::string state) { return ExpectGroups(kControls, state); }
constexpr char kNewFont[] = "5*9 0 (5/1..30) (9/1..54) 1/1..6 1/1..6 2 (0) 0 0 (0) (0) (0) {1}";

class DecoDialogTest : public FontTest {};
class BarDialogTest : public FontTest {};

TEST_F(DecoDialogTest, NewFontHasSizesAndStylesOfItsResidentFont) {
  const std::tuple<int, int, const char16_t*, int, int, int, const char*> kFonts[] = {
      {203, 1, u"X21", 2, 17, 17, "0 (0)"},          {203, 2, u"X22", 256, 24, 24, "0 (0)"},
      {203, 3, u"X23", 4, 48, 48, "0 (0)"},          {203, 4, u"X24", 4, 48, 48, "0 (0)"},
      {203, 5, u"OCR-A", 8, 15, 22, "(0) (0)"},      {203, 6, u"OCR-B", 32, 20, 24, "(0) (0)"},
      {203, 7, u"POP", 2048, 80, 133, "0 (0)"},      {203, 8, u"漢字(横書)", 128, 16, 16, "(0) 0"},
      {203, 9, u"漢字(縦書)", 128, 16, 16, "(0) 0"}, {305, 5, u"OCR-A", 16, 22, 33, "(0) (0)"},
      {305, 6, u"OCR-B", 64, 30, 36, "(0) (0)"}};
  for (const auto& [density, row, name, code, width, height, pitchAndEmphasis] : kFonts) {
    const std::string sizes = std::to_string(width) + "*" + std::to_string(height) +
                              (row < 8 ? " 0 " : " 24*24 22*22 0 ");
    SetDensity(density);
    Store({});
    ExpectStored(
        {Deco(u"A", name, code, width, height)},
        New(kDeco, u"A",
            {Select(kResident, name), ExpectSelected(kResident, row),
             ExpectGroups({{kSize}, {1136, 1137}, {1018, 1017}}, sizes + pitchAndEmphasis)}));
  }
}

// The size is computed at the printer's density. A change of units converts dots to inches by way
// of tenths of a millimetre; a computation from the cell does not.
TEST_F(DecoDialogTest, SizeIsCellTimesMagnificationInFontUnit) {
  const auto kanji = [](const std::string& state) {
    return ExpectDecoration("16*16 24*24 22*22 2 " + state + " (0) {1}");
  };
  const Steps across = {Select(kResident, 8), Select(kSize, 2)},
              inches = {Select(kResident, 1), Click(kInch)};
  ExpectStored(
      {Deco(u"K", u"漢字(横書)", 512, 132, 66).Put(202, {6, 3}),
       Deco(u"mm", u"X23", 4, 60, 60).Put(206, {0}), Deco(u"inch", u"X21", 2, 83, 83).Put(206, {1}),
       Deco(u"inch2", u"X21", 2, 84, 335).Put(204, {4, 1})},
      {New(kDeco, u"K",
           {across, kanji("(22/1..132) (22/1..132) 1/1..6 1/1..6 2 (0) 0 0 (0) 0"),
            Replace(kX, u"2"), Spin(1160, 2),
            kanji("(44/1..264) (66/1..396) 2/1..6 3/1..6 2 (0) 0 0 (0) 0"), Replace(kX, u"6"),
            kanji("(132/1..792) (66/1..396) 6/1..6 3/1..6 2 (0) 0 0 (0) (0)")}),
       New(kDeco, u"mm",
           {Select(kResident, 3), Click(kMm), ExpectText(kWidth, u"6.0"), Click(kDot),
            ExpectText(kWidth, u"48"), Click(kMm)}),
       New(kDeco, u"inch", inches), New(kDeco, u"inch2", {inches, Replace(kY, u"4")})});
  // Every density except 305 has the fonts of 203.
  for (const auto& [density, width, height] : {std::array{600, 6, 9}, {204, 19, 27}, {0, 15, 22}}) {
    SetDensity(density);
    Store({});
    ExpectStored({Deco(u"A", u"OCR-A", 8, width, height).Put(206, {0})},
                 New(kDeco, u"A", {Select(kResident, 5), Click(kMm)}));
  }
}

TEST_F(DecoDialogTest, DecorationAndSerialNumberingCannotBothBeOff) {
  Steps limits;
  for (const auto& [edit, units] : {std::pair{1149, 4}, {1151, 5}, {1153, 2}, {1155, 2}})
    limits += ExpectEach({edit}, &platform::ControlView::textLimit, units);
  const auto isDisabled = [](int id) { return [=](Desk& desk) { EXPECT_FALSE(desk.Click(id)); }; };
  const auto numbers = [limits](const std::string& off) {
    return Steps{limits,
                 ExpectGroups(kDecoSerial, off + " 0 1/1..9999 1/-9999..9999 1/1..99 0/0..99")};
  };
  ExpectStored(
      {Deco(u"S").Put(194, {0}).Put(220, {1, 1, 5, 0, 12, 8})},
      New(kDeco, u"S",
          {ExpectText(kDeco.name, u""), ExpectSelected(kResident, 0), ExpectDecoration(kNewFont),
           Click(kSerialOn), numbers("1"), ExpectGroups({{kPlain, kDecorated}}, "1"), Click(kPlain),
           ExpectDecoration(
               "(5*9 0) (5/1..30) (9/1..54) (1/1..6) (1/1..6) (2) (0) (0) (0) (0) (0) (0) 0"),
           numbers("{1}"), isDisabled(kSerialNo), Click(kDecorated), Click(kSerialNo),
           ExpectDecoration(kNewFont), ExpectGroups(kDecoSerial, kSerialOff), isDisabled(kPlain),
           Replace(kDeco.name, u"S"), TestSerialNumbers(kDecoSerial, RegisterTitle(kDeco)),
           Click(IDC_DECO_FONT_HEXADECIMAL), Click(kPlain)}));
}

TEST_F(DecoDialogTest, EveryRadioButtonIsStored) {
  // A scalable font, as other printers have it, supports every style.
  const Record free =
      Deco(u"FREE", u"OUTLINE", 1024, 100, 200).Put(206, {2, 2, 90, 1, 1, 1, 7}).Put(220, {1});
  const std::vector<int> on = {kDecorated, kSerialOn};
  Store({free});
  Ok(kFontTab,
     Change(kDeco, {ExpectHelp(2296, {kWidth, kHeight, kSize, kMm,  kInch, kDot, 1136, 1137, 1011,
                                      1009,   1010,    1012,  1013, 1014,  1015, 1016, 1017, 1018,
                                      1019,   1025,    1026,  1020, 1027,  1028, 1022, 1023, 1024,
                                      1021,   1145,    1146,  1149, 1151,  1153, 1155},
                               on,
                               {u"27", u"dot", u"550", u"dot", u"50", u"dot", u"999", u"dot", u"1",
                                u"9999", u"-9999", u"9999", u"1", u"99", u"0", u"99"}),
                    ExpectHelp(2421, {kSerialOn, kSerialNo}, on, {}), Click(kMm), Focus(kHeight),
                    ExpectText(IDC_HELP_TEXT,
                               u"文字の高さを設定します。（範囲は、6.3mmから125.0mmです。）"),
                    Select(kResident, 0),
                    ExpectHelp(2290, {IDC_DECO_FONT_NAME, kResident, kDecorated, kPlain, kX, kY},
                               on, {u"1", u"6", u"1", u"6"})}));
  const Groups radios(kControls.begin() + 6, kControls.end() - 1);
  for (int pass = 0; pass < 10; ++pass) {
    Record expected = free;
    Steps clicks;
    std::string state;
    for (size_t i = 0; i < radios.size(); ++i) {
      const int value = pass % static_cast<int>(radios[i].size());
      clicks += Click(radios[i][static_cast<size_t>(value)]);
      state += (i == 0 ? "" : " ") + std::to_string(value);
      expected.Put(208 + 2 * i, {i == 0 ? value + 1 : i == 1 ? 90 * value : value});
    }
    Store({free});
    ExpectStored({expected},
                 Change(kDeco, {clicks, Click(kMm), Click(kDot), ExpectGroups(radios, state)}));
    ExpectStored({expected}, Change(kDeco));
  }
}

// Rows of every capability, also of those that no printer has.
TEST(SupportedStyles, DependOnRowAndMagnifications) {
  for (int i = 0; i < 6 * 36; ++i) {
    const int capability = i / 36, x = 1 + i % 6, y = 1 + i / 6 % 6;
    kestrel::DecoFontInfo font = {}, row = {};
    font.ExpandX = static_cast<int16_t>(x);
    font.ExpandY = static_cast<int16_t>(y);
    row.Smoothing = row.Bold = static_cast<uint16_t>(capability);
    const kestrel::SupportedStyles styles = kestrel::StylesSupportedBy(row, font);
    EXPECT_EQ(styles.smoothing, capability == 1 || (capability == 3 && x >= 3 && y >= 3));
    EXPECT_EQ(styles.emphasis, capability == 5 && x <= 5 && y <= 5);
  }
}

// A backup file may contain the kinds 1000 and 1100.
TEST(BarcodeFields, UnlistedKindsHaveLayoutOfCode39OrNone) {
  for (const int kind : {1000, 1100}) {
    EXPECT_EQ(kestrel::BarcodeFields(kind).data(), kestrel::BarcodeFields(500).data()) << kind;
  }
  for (const int kind : {0, 1800, 2200, 2300, 2400}) {
    EXPECT_TRUE(kestrel::BarcodeFields(kind).empty()) << kind;
  }
}

TEST_F(DecoDialogTest, StoredFontIsShownAndChangedOnlyByOk) {
  // Cancel leaves the stored font; the steps and OK change it to the expected one.
  const auto changes = [&](const Record& stored, const Record& expected, const Steps& steps = {}) {
    SCOPED_TRACE(testing::PrintToString(stored));
    Store({stored});
    ExpectStored({stored}, {Click(kDeco.change), Click(IDCANCEL)});
    ExpectStored({expected}, Change(kDeco, steps));
  };
  const auto rejected = [](const std::vector<Bounds>& fields) {
    return ExpectRejected(ChangeTitle(kDeco), u"フォントサイズ\n", fields);
  };
  const auto selected = [](Desk& desk) {
    EXPECT_EQ(SendDlgItemMessageW(desk.Top(), kWidth, EM_GETSEL, 0, 0), MAKELONG(0, 3));
  };
  // An arrow stops at 6. The dialog shows a magnification outside 1 to 6 unchanged after every
  // refresh. OK stores the numbers that it checked.
  changes(Deco(u"N").Put(202, {9, 0}).Put(208, {2}), Deco(u"N").Put(198, {15, 18, 3, 2}),
          {ExpectDecoration("5*9 0 (45/1..270) (1/1..1) 9/1..6 0/1..6 2 (0) 0 0 (0) (0) (0) {1}"),
           Spin(1158, 9), ExpectText(kX, u"6"), Replace(kY, u"70"), Click(kMm), Select(kSize, 0),
           Click(kSerialOn), ExpectText(kY, u"70"), Click(kSerialNo),
           rejected({{kX, u"幅倍率", u"", u"", u"1", u"6", u"7", u"2"},
                     {kY, u"高さ倍率", u"", u"0", u"1", u"6", u"70", u"2"}}),
           Click(kDot), Put(kX, u"3-1")});
  // Another resident font resets the decoration, but not the serial numbering and the name.
  changes(
      Deco(u"A name of some length", u"X21", 2, 252, 84)
          .Put(202, {3, 1, 1, 2, 90, 1, 0, 0, 0, 1, 1, 5}),
      Deco(u"A", u"X22", 256, 24, 24).Put(220, {1, 1, 5}),
      {ExpectDecoration(
           "17*17 0 (0.251/1..1506) (0.084/1..504) 3/1..6 1/1..6 1 1 1 1 (0) (0) (0) 1"),
       Click(kPlain), Replace(kDeco.name, u"A"), Select(kResident, 2), ExpectText(kDeco.name, u"A"),
       ExpectDecoration("24*24 0 (24/1..144) (24/1..144) 1/1..6 1/1..6 2 0 0 0 (0) (0) (0) 1")});
  // A scalable font has a free width and height within limits that are converted to the unit. A
  // field that Tab selects stays selected after it formats its text.
  changes(
      Deco(u"FREE", u"OUTLINE", 1024, 100, 200),
      Deco(u"FREE", u"OUTLINE", 1024, 1500, 280).Put(206, {1}),
      {ExpectDecoration(" 100/27..550 200/50..999 (1/1..6) (1/1..6) 2 (0) 0 0 (0) (0) 0 {1}"),
       rejected({{kWidth, u"幅", u"dot ", u"26", u"27", u"550", u"551", u"549"},
                 {kHeight, u"高さ", u"dot ", u"49", u"50", u"999", u"1000", u"999"}}),
       Spin(1108, 2), ExpectText(kWidth, u"550"), Click(kMm),
       ExpectDecoration(" 68.8/34..688 125.0/63..1250 (1/1..6) (1/1..6) 0 (0) 0 0 (0) (0) 0 {1}"),
       rejected({{kWidth, u"幅", u"mm ", u"3.3", u"3.4", u"68.8", u"68.9", u"12.5"},
                 {kHeight, u"高さ", u"mm ", u"6.2", u"6.3", u"125.0", u"125.1", u"7.0"}}),
       Spin(1110, 1), ExpectText(kHeight, u"7.1"), Paste(kWidth, u"9"), Focus(kHeight),
       ExpectText(kWidth, u"9.0"), Tab(true), selected, Click(kInch),
       rejected({{kWidth, u"幅", u"inch ", u"0.132", u"0.133", u"2.709", u"2.710", u"1.500"}})});
  // A font that the printer lacks does not change until the user chooses another resident font.
  for (const Record& font : {Deco(u"A", u"X99", 512, 44, 66).Put(202, {2, 3, 2, 2, 90, 1, 1, 1}),
                             Deco(u"A", u"OUTLINE", 1024, 60, 90).Put(206, {0}).Put(218, {7}),
                             Deco(u"A", u"NEW", 4096, 77, 88), Deco(u"A", u"NEW", 0, 77, 88),
                             Deco(u"A", u"NEW", 896, 77, 88), Deco(u"A").Put(130, {0, 0, 0})}) {
    changes(font, font, ExpectSelected(kResident, -1));
    changes(font, Deco(u"A", u"X21", 2, 17, 17), Select(kResident, 1));
  }
  // Invalid records: sizes and magnifications outside their limits, a cell that the resident font
  // lacks, decoration and numbering both off, serial numbers outside their limits, an unknown unit.
  changes(Deco(u"A", u"X99", 512, -44, 0), Deco(u"A", u"X99", 512, 1, 1));
  changes(Deco(u"A", u"OUTLINE", 1024, 60, 90).Put(202, {9, 0}),
          Deco(u"A", u"OUTLINE", 1024, 60, 90).Put(202, {6, 1}));
  changes(Deco(u"A", u"X21", 512, 44, 44), Deco(u"A", u"X21", 2, 17, 17));
  changes(Deco(u"A", u"漢字(横書)", 4, 48, 48), Deco(u"A", u"漢字(横書)", 128, 16, 16));
  changes(Deco(u"A").Put(194, {0}), Deco(u"A"));
  changes(Deco(u"A").Put(224, {0, 20000, 100, -1}), Deco(u"A").Put(224, {1, 9999, 99, 0}));
  changes(Deco(u"A").Put(206, {9}), Deco(u"A"));
  for (int filling : {0xFFFF, 0x7FFF, 0x8000, 0x0101}) {
    Record garbage;
    garbage.fill(static_cast<uint16_t>(filling));
    changes(garbage.Put(64, {0}), Deco(u"A").Put(220, {1, 0, 5, 0, 12, 8}),
            {ExpectText(kDeco.name, std::u16string(31, garbage[0])), Click(kMm), Click(kInch),
             Select(kResident, 0), Replace(kDeco.name, u"A"),
             TestSerialNumbers(kDecoSerial, ChangeTitle(kDeco)), Click(IDC_DECO_FONT_DECIMAL)});
  }
}

// Expects the characters of the preview, each as "character x y heightxwidth" of its font.
Step ExpectPreview(std::string expected, std::u16string face = u"ＭＳ ゴシック") {
  return [=](Desk& desk) {
    const auto drawing = desk.Control(IDC_DECO_FONT_PREVIEW).drawing;
    std::ostringstream drawn;
    const auto& [left, top, right, bottom] = drawing.at(0).rect;
    for (const platform::DrawOp& op : drawing) {
      drawn << static_cast<char>(op.text.at(0)) << ' ' << op.at.x << ' ' << op.at.y << ' '
            << op.fontHeight << 'x' << op.fontWidth << ' ';
      EXPECT_EQ(
          std::tuple(op.text.size(), op.face, op.textColour, op.background, op.opaque, right - left,
                     bottom - top),
          std::tuple(1u, face, RGB(255, 255, 0), RGB(20, 20, 20), &op == drawing.data(), 123, 117));
    }
    EXPECT_EQ(drawn.str(), expected + " ");
  };
}

// Each arrow key in the open list applies a row's defaults.
TEST_F(DecoDialogTest, EscInOpenListRestoresFont) {
  const std::pair<Record, int> kFonts[] = {
      {Deco(u"A", u"X21", 2, 251, 84).Put(202, {3, 1, 1, 2, 90, 1}), 0},
      {Deco(u"K", u"漢字(横書)", 512, 132, 66).Put(202, {6, 3}), 2},
      {Deco(u"U", u"X99", 512, 44, 66).Put(202, {2, 3, 2, 2, 90, 1, 1, 1}), 0}};
  for (const auto& [font, size] : kFonts) {
    Store({font});
    ExpectStored({font},
                 Change(kDeco, {MoveInOpenList(kResident, 1), Escape(), ExpectSelected(kSize, size),
                                MoveInOpenList(kResident, -1), Key(VK_DOWN), Escape(),
                                MoveInOpenList(kSize, -2), Escape(), ExpectSelected(kSize, size)}));
  }
}

// The platform's fonts are half as wide as high; a narrow character of a proportional font has a
// quarter. Some of the sizes exceed the box, others have a width of 1.
TEST_F(DecoDialogTest, PreviewShowsSizeAndPitch) {
  const Steps proportional = {Click(1137),
                              ExpectPreview("i 43 34 48x24 j 67 34 48x24", u"ＭＳ Ｐゴシック"),
                              Click(1136), ExpectPreview("i 37 34 48x24 j 61 34 48x24")};
  Store({Deco(u"FREE", u"OUTLINE", 1024, 60, 60)});
  Ok(kFontTab,
     {New(kDeco, u"A",
          {ExpectPreview("i 59 54 9x2 j 61 54 9x2"), Select(kResident, 3),
           ExpectPreview("i 37 34 48x24 j 61 34 48x24"), proportional, Click(kMm),
           Replace(kY, u"2"), ExpectPreview("i 37 10 96x24 j 61 10 96x24"), Select(kResident, 7),
           ExpectPreview("i 22 0 133x39 j 61 0 133x39"), Replace(kX, u"6"),
           ExpectPreview("i 0 0 133x238"), Select(kResident, 0), Replace(kX, u""),
           ExpectPreview("i 60 54 9x1 j 61 54 9x1"), Replace(kX, u"1")}),
      Change(kDeco, {ExpectPreview("i 31 28 60x30 j 61 28 60x30"), Replace(kHeight, u"100"),
                     ExpectPreview("i 31 8 100x30 j 61 8 100x30"), Spin(1108, 20),
                     ExpectPreview("i 21 8 100x40 j 61 8 100x40")})});
}

constexpr int kKindList = IDC_BAR_FONT_KIND, kDetail = IDC_BAR_FONT_DETAIL, kUpca = 0, kQr1 = 12;

constexpr char16_t kProduct[] = u"VELA Kestrel Graphics Mode Driver";
const Step kNoLibrary = CloseMessage(u"LoadLibrary Error!!", MB_OK, kProduct),
           kNoEntry = CloseMessage(u"GetProcAddress Error!!", MB_OK, kProduct);
Steps ExpectKinds(size_t number, int selected) {
  return {ExpectItems(kKindList, {number, u"種45678901234567890123456789012"}),
          ExpectSelected(kKindList, selected)};
}
Steps OpenDetail(int row) { return {Select(kKindList, row), Click(kDetail)}; }

TEST_F(BarDialogTest, EscInOpenKindListRestoresSerialRadios) {
  Store({Bar(u"B")});
  ExpectStored({Bar(u"B")},
               Change(kBar, {MoveInOpenList(kKindList, kQr1), ExpectGroups({kBarSerial[0]}, "(0)"),
                             Escape(), ExpectGroups({kBarSerial[0]}, "0")}));
}

TEST_F(BarDialogTest, EveryControlIsStored) {
  const std::u16string full = u"1234567890123456789012345678901";
  const Record numbered =
      Bar(full, 100, kInitial).Put(130, {0x4008, 100, 1, 1, 5, 0, 12, 8}).Put(160, {9});
  const auto initialised = [](Desk&) {
    EXPECT_EQ(FakeLibrary::calls, "I0@305");
    EXPECT_EQ(platform::Machine::Current().OpenModules(), 1) << "the library stays loaded";
  };
  SetDensity(305);
  ExpectStored(
      {numbered},
      New(kBar, full + u"2",
          {ExpectKinds(19, kUpca), ExpectText(kBar.name, u""),
           ExpectChecked({IDC_BAR_FONT_STRING_FONT}), ExpectGroups(kBarSerial, kSerialOff),
           initialised, Replace(kBar.name, u"B"),
           TestSerialNumbers(kBarSerial, RegisterTitle(kBar)),
           ExpectHelp(
               2269, {1049, 1007, 1008, 1165, 1059, 1029, 1030, 1031, 1032, 1103, 1105, 1111, 1113},
               {1029}, {u"1", u"9999", u"-9999", u"9999", u"1", u"99", u"0", u"99"}),
           Click(1029), Click(IDC_BAR_FONT_FILE_FONT), Click(IDC_BAR_FONT_HEXADECIMAL)}));
  // The same font with serial numbering turned off: its numbers remain and are checked. A shorter
  // name leaves nothing of the longer one.
  ExpectStored(
      {Bar(u"C", 100, kInitial).Put(130, {0x2008, 100, 0, 1, 5, 0, 12, 8}).Put(160, {9})},
      Change(kBar,
             {ExpectChecked({IDC_BAR_FONT_FILE_FONT}),
              ExpectGroups(kBarSerial, "1 1 5/1..9999 0/-9999..9999 12/1..99 8/0..99"), Click(1030),
              ExpectGroups(kBarSerial, "0 (1) (5/1..9999) (0/-9999..9999) (12/1..99) (8/0..99)"),
              Replace(kBar.name, u"C"), Put(1103, u"0"), Click(IDOK), Click(IDOK),
              ExpectTitle(ChangeTitle(kBar)), Put(1103, u"5"), Click(IDC_BAR_FONT_STRING_FONT)}));
}

// Uses the companion library. The first notification of the kind list enables the serial radios by
// kind. A kind that the user selects without opening its details gets the library's 40 bytes.
TEST_F(BarDialogTest, EveryKindStoresItsIdAndDefaults) {
  constexpr std::array kKinds = {100,  200,  300,  400,  500,  600,  700,  800,  900, 1200,
                                 1300, 2500, 1400, 1500, 1600, 1700, 1900, 2000, 2100};
  machine().UnregisterModule(u"QM610rBAR.DLL");
  machine().InstallModule(machine().driverDirectory() + u"\\3\\QM610rBAR.DLL",
                          Built("QM610rBAR.so"));
  const auto serialRadios = [](int row) {
    return ExpectGroups({kBarSerial[0]}, row < kQr1 ? "1" : "(1)");
  };
  const auto font = [&](int row) {
    return Bar(u"B", kKinds[row]).Put(134, {1}).Put(186, {7, 7, 7}).Put(230, {7});
  };
  const int count = static_cast<int>(kKinds.size());
  for (int row = 0; row < count; ++row) {
    SCOPED_TRACE(row);
    const int next = (row + 1) % count;
    Store({font(row)});
    Ok(kFontTab,
       Change(kBar, {ExpectSelected(kKindList, row), serialRadios(kUpca), Focus(kKindList),
                     serialRadios(row), Select(kKindList, next), serialRadios(next)}));
    const Records chosen = Stored();
    Record expected = font(next);
    std::copy_n(&chosen.at(0)[73], 20, &expected[73]);
    EXPECT_EQ(chosen, Records{expected});
    EXPECT_EQ(chosen[0][73], kKinds[next]);
    ExpectStored(chosen, Change(kBar, {Click(kDetail), Click(IDOK)}));
  }
}

TEST_F(BarDialogTest, DetailDialogFollowsLibraryResults) {
  const Steps upca = Select(kKindList, kUpca);
  const Record stored = Bar(u"B"), qr = Bar(u"B", 1400, kInitial);
  // ChangeTitle a font of a kind with a library that lacks an entry point and returns the given
  // results.
  const auto expect = [&](int kind, const char* missing, int16_t init, int16_t show,
                          const Record& expected, const char* calls, const Steps& steps,
                          const Steps& atOk = {}) {
    SCOPED_TRACE(testing::Message() << kind << missing << init << show << calls);
    Store({Bar(u"B", kind)});
    FakeLibrary::Install(machine(), missing, init, show);
    ExpectStored({expected}, Change(kBar, steps, atOk));
    EXPECT_EQ(FakeLibrary::calls, calls);
  };
  expect(100, "", 0, 1, Bar(u"B").Put(160, {9}), "S20", OpenDetail(kUpca));
  expect(100, "", 0, 0, stored, "S20", OpenDetail(kUpca));
  expect(100, "", 0, 2, stored, "S20", OpenDetail(kUpca));
  expect(100, "", 0, 1, Record(qr).Put(160, {9}), "I0S16448", OpenDetail(kQr1));
  expect(100, "", 1, 0, stored, "I0S16448", {OpenDetail(kQr1), upca});
  expect(100, "", 1, 0, qr, "I0S16448I20", OpenDetail(kQr1));
  expect(100, "GetBarNameUPCA", 0, 1, stored, "", {kNoEntry, ExpectKinds(0, -1), Click(kDetail)});
  expect(100, "GetBarNameRSS", 0, 1, stored, "", {kNoEntry, ExpectKinds(11, kUpca)});
  expect(100, "ShowDlgUPCA", 1, 1, stored, "", {OpenDetail(kUpca), kNoEntry});
  // The result is that of Init when ShowDlg is missing.
  expect(100, "ShowDlgQR1", 1, 1, qr, "I0", {OpenDetail(kQr1), kNoEntry});
  expect(100, "ShowDlgQR1", 0, 1, stored, "I0", {OpenDetail(kQr1), kNoEntry, upca});
  expect(100, "InitQR1", 1, 1, stored, "", {OpenDetail(kQr1), kNoEntry, upca});
  expect(100, "InitQR1", 1, 1, Bar(u"B", 1400), "", Select(kKindList, kQr1), kNoEntry);
  // Kinds that are missing in the list or in the table.
  expect(1400, "GetBarNameRSS", 0, 1, Bar(u"B", 1400), "",
         {kNoEntry, ExpectKinds(11, -1), Click(kDetail)});
  expect(1000, "InitUPCA", 0, 1, stored, "", ExpectKinds(19, kUpca), kNoEntry);
  machine().UnregisterModule(u"QM610rBAR.DLL");
  ExpectStored({stored, Bar(u"N", 100, 0)},
               {Change(kBar, {kNoLibrary, ExpectKinds(0, -1)}),
                New(kBar, u"N", {kNoLibrary, kNoLibrary, Click(kDetail)})});
}

}  // namespace
}  // namespace fonts
