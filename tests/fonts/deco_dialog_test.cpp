// The dialog of decorative fonts as a person uses it.
#include "deco_walk.h"

namespace fonts {
namespace {

using platform::Desk;
using support::Click;
using support::ExpectChecked;
using support::ExpectEnabled;
using support::ExpectItems;
using support::ExpectRange;
using support::ExpectSelected;
using support::ExpectText;
using support::ExpectTitle;
using support::Focus;
using support::Replace;
using support::Select;
using support::Spin;

const std::vector<int> kPitch = {IDC_DECO_FONT_PITCH_FIXED, IDC_DECO_FONT_PITCH_PROPORTIONAL};
const std::vector<int> kBold = {IDC_DECO_FONT_BOLD_ON, IDC_DECO_FONT_BOLD_OFF};
const std::vector<int> kSmooth = {IDC_DECO_FONT_SMOOTH_ON, IDC_DECO_FONT_SMOOTH_OFF};
const std::vector<int> kReverse = {IDC_DECO_FONT_REVERSE_ON, IDC_DECO_FONT_REVERSE_OFF};
const std::vector<int> kUnit = {IDC_DECO_FONT_MM, IDC_DECO_FONT_INCH, IDC_DECO_FONT_DOT};
const std::vector<int> kRotate = {IDC_DECO_FONT_ROTATE_0, IDC_DECO_FONT_ROTATE_90,
                                  IDC_DECO_FONT_ROTATE_180, IDC_DECO_FONT_ROTATE_270};
const std::vector<int> kOutline = {
    IDC_DECO_FONT_OUTLINE_STANDARD,      IDC_DECO_FONT_OUTLINE_HOLLOW,
    IDC_DECO_FONT_OUTLINE_GRAY1,         IDC_DECO_FONT_OUTLINE_GRAY2,
    IDC_DECO_FONT_OUTLINE_GRAY3,         IDC_DECO_FONT_OUTLINE_SHADOW,
    IDC_DECO_FONT_OUTLINE_HOLLOW_SHADOW, IDC_DECO_FONT_OUTLINE_MIRROR,
    IDC_DECO_FONT_OUTLINE_ITALIC,        IDC_DECO_FONT_OUTLINE_HOLLOW_SHADOW_ITALIC};
const std::vector<int> kMagnification = {IDC_DECO_FONT_EXPAND_X, IDC_DECO_FONT_EXPAND_X_SPIN,
                                         IDC_DECO_FONT_EXPAND_Y, IDC_DECO_FONT_EXPAND_Y_SPIN};
const std::vector<int> kFreeSize = {IDC_DECO_FONT_WIDTH, IDC_DECO_FONT_WIDTH_SPIN,
                                    IDC_DECO_FONT_HEIGHT, IDC_DECO_FONT_HEIGHT_SPIN};
const std::vector<int> kSerial = {IDC_DECO_FONT_HEXADECIMAL,   IDC_DECO_FONT_DECIMAL,
                                  IDC_DECO_FONT_PRINT_NUM,     IDC_DECO_FONT_PRINT_NUM_SPIN,
                                  IDC_DECO_FONT_INCREMENT,     IDC_DECO_FONT_INCREMENT_SPIN,
                                  IDC_DECO_FONT_ACTIVE_DIGITS, IDC_DECO_FONT_ACTIVE_DIGITS_SPIN,
                                  IDC_DECO_FONT_LOW_DIGITS,    IDC_DECO_FONT_LOW_DIGITS_SPIN};

using DecoDialogTest = FontTest;

TEST_F(DecoDialogTest, ANewFontStartsOnX20) {
  const Steps start = {
      ExpectItems(IDC_DECO_FONT_RESIDENT, {u"X20", u"X21", u"X22", u"X23", u"X24", u"OCR-A",
                                           u"OCR-B", u"POP", u"漢字(横書)", u"漢字(縦書)"}),
      ExpectSelected(IDC_DECO_FONT_RESIDENT, kX20),
      ExpectItems(IDC_DECO_FONT_SIZE, {u"5*9"}),
      ExpectSelected(IDC_DECO_FONT_SIZE, 0),
      ExpectText(IDC_DECO_FONT_NAME, u""),
      ExpectChecked({IDC_DECO_FONT_DECORATE_ON, IDC_DECO_FONT_DOT, IDC_DECO_FONT_PITCH_FIXED,
                     IDC_DECO_FONT_ROTATE_0, IDC_DECO_FONT_REVERSE_OFF, IDC_DECO_FONT_SMOOTH_OFF,
                     IDC_DECO_FONT_BOLD_OFF, IDC_DECO_FONT_OUTLINE_STANDARD,
                     IDC_DECO_FONT_SERIAL_OFF, IDC_DECO_FONT_DECIMAL}),
      ExpectRange(IDC_DECO_FONT_EXPAND_X_SPIN, 1, 6, 1),
      ExpectRange(IDC_DECO_FONT_EXPAND_Y_SPIN, 1, 6, 1),
      ExpectRange(IDC_DECO_FONT_WIDTH_SPIN, 1, 30, 5),
      ExpectRange(IDC_DECO_FONT_HEIGHT_SPIN, 1, 54, 9),
      ExpectRange(IDC_DECO_FONT_PRINT_NUM_SPIN, 1, 9999, 1),
      ExpectRange(IDC_DECO_FONT_INCREMENT_SPIN, -9999, 9999, 1),
      ExpectRange(IDC_DECO_FONT_ACTIVE_DIGITS_SPIN, 1, 99, 1),
      ExpectRange(IDC_DECO_FONT_LOW_DIGITS_SPIN, 0, 99, 0),
      ExpectEnabled({IDC_DECO_FONT_DECORATE_OFF}, false),
      ExpectEnabled({IDC_DECO_FONT_SERIAL_OFF, IDC_DECO_FONT_SIZE}, true),
      ExpectEnabled(kUnit, true),
      ExpectEnabled(kRotate, true),
      ExpectEnabled(kReverse, true),
      ExpectEnabled(kMagnification, true),
      ExpectEnabled(kPitch, false),
      ExpectEnabled(kBold, false),
      ExpectEnabled(kSmooth, false),
      ExpectEnabled(kOutline, false),
      ExpectEnabled(kFreeSize, false),
      ExpectEnabled(kSerial, false),
  };
  EXPECT_EQ(Register(NewDeco(u"New", start)), Records{Deco(u"New")});
}

TEST_F(DecoDialogTest, EveryResidentFontOffersItsOwn) {
  struct Font {
    const char16_t* name;
    std::vector<std::u16string> sizes;
    bool proportional, emphasis;
    int code, width, height;
  };
  const std::vector<std::u16string> kanji = {u"16*16", u"24*24", u"22*22"};
  std::vector<Font> fonts = {
      {u"X20", {u"5*9"}, false, false, 1, 5, 9},
      {u"X21", {u"17*17"}, true, false, 2, 17, 17},
      {u"X22", {u"24*24"}, true, false, 256, 24, 24},
      {u"X23", {u"48*48"}, true, false, 4, 48, 48},
      {u"X24", {u"48*48"}, true, false, 4, 48, 48},
      {u"OCR-A", {u"15*22"}, false, false, 8, 15, 22},
      {u"OCR-B", {u"20*24"}, false, false, 32, 20, 24},
      {u"POP", {u"80*133"}, true, false, 2048, 80, 133},
      {u"漢字(横書)", kanji, false, true, 128, 16, 16},
      {u"漢字(縦書)", kanji, false, true, 128, 16, 16},
  };
  for (int density : {203, 305}) {
    SCOPED_TRACE(density);
    if (density == 305) {
      fonts[kOcrA] = {u"OCR-A", {u"22*33"}, false, false, 16, 22, 33};
      fonts[kOcrB] = {u"OCR-B", {u"30*36"}, false, false, 64, 30, 36};
    }
    SetDensity(density);
    ForgetFonts();
    Steps steps;
    Records expected;
    for (size_t i = 0; i < fonts.size(); ++i) {
      const Font& font = fonts[i];
      const std::u16string name = u"My " + std::u16string(font.name);
      const Steps choose = {Select(IDC_DECO_FONT_RESIDENT, static_cast<int>(i)),
                            ExpectItems(IDC_DECO_FONT_SIZE, font.sizes),
                            ExpectSelected(IDC_DECO_FONT_SIZE, 0),
                            ExpectEnabled(kPitch, font.proportional),
                            ExpectEnabled(kBold, font.emphasis),
                            ExpectEnabled(kSmooth, false),
                            ExpectEnabled(kOutline, false),
                            ExpectRange(IDC_DECO_FONT_WIDTH_SPIN, 1, 6 * font.width, font.width)};
      steps = steps + NewDeco(name, choose);
      expected.push_back(Deco(name, font.name, font.code, font.width, font.height));
    }
    EXPECT_EQ(Register(steps), expected);
  }
}

TEST_F(DecoDialogTest, MultipliesTheChosenCell) {
  Record expected = Deco(u"K", u"漢字(横書)", 512, 44, 66);
  expected.Put(202, {2, 3});
  EXPECT_EQ(
      Register(NewDeco(
          u"K", {Select(IDC_DECO_FONT_RESIDENT, kKanjiAcross), Select(IDC_DECO_FONT_SIZE, 2),
                 Replace(IDC_DECO_FONT_EXPAND_X, u"2"), Spin(IDC_DECO_FONT_EXPAND_Y_SPIN, 2),
                 ExpectText(IDC_DECO_FONT_EXPAND_Y, u"3"), ExpectText(IDC_DECO_FONT_WIDTH, u"44"),
                 ExpectText(IDC_DECO_FONT_HEIGHT, u"66"),
                 ExpectRange(IDC_DECO_FONT_WIDTH_SPIN, 1, 264, 44)})),
      Records{expected});
}

// At 6 an arrow stops, a typed number stays to be seen.
TEST_F(DecoDialogTest, MagnificationsBeyondTheirRange) {
  EXPECT_EQ(
      Register(NewDeco(
          u"N",
          Steps{Spin(IDC_DECO_FONT_EXPAND_X_SPIN, 9), ExpectText(IDC_DECO_FONT_EXPAND_X, u"6"),
                Replace(IDC_DECO_FONT_EXPAND_X, u"70"), ExpectText(IDC_DECO_FONT_WIDTH, u"350"),
                // Nothing that shows the font anew hides the number.
                Click(IDC_DECO_FONT_MM), Select(IDC_DECO_FONT_SIZE, 0),
                Click(IDC_DECO_FONT_SERIAL_ON), ExpectText(IDC_DECO_FONT_EXPAND_X, u"70"),
                Replace(IDC_DECO_FONT_NAME, u"N")} +
              Refused(u"フォントサイズ\n幅倍率は 6 以下にして下さい。", IDC_DECO_FONT_EXPAND_X) +
              Steps{Replace(IDC_DECO_FONT_EXPAND_X, u"")} +
              Refused(u"フォントサイズ\n幅倍率は 1 以上にして下さい。", IDC_DECO_FONT_EXPAND_X) +
              Steps{// A letter leaves what was typed before it.
                    Replace(IDC_DECO_FONT_EXPAND_X, u"2x"),
                    ExpectText(IDC_DECO_FONT_EXPAND_X, u"2"), Click(IDC_DECO_FONT_DOT),
                    Click(IDC_DECO_FONT_SERIAL_OFF)})),
      Records{Deco(u"N").Put(198, 10).Put(202, 2)});
}

// From dots to inches and back by way of tenths of a millimetre when the unit changes; a size that
// is computed anew converts at once.
TEST_F(DecoDialogTest, ConvertsSizesBetweenUnits) {
  const Records stored = Register(
      NewDeco(u"X23", {Select(IDC_DECO_FONT_RESIDENT, kX23), Click(IDC_DECO_FONT_MM),
                       ExpectText(IDC_DECO_FONT_WIDTH, u"6.0"),
                       ExpectRange(IDC_DECO_FONT_WIDTH_SPIN, 1, 360, 60), Click(IDC_DECO_FONT_DOT),
                       ExpectText(IDC_DECO_FONT_WIDTH, u"48"), Click(IDC_DECO_FONT_MM)}) +
      NewDeco(u"Inch", {Select(IDC_DECO_FONT_RESIDENT, kX21), Click(IDC_DECO_FONT_INCH),
                        ExpectText(IDC_DECO_FONT_WIDTH, u"0.083")}) +
      NewDeco(u"Inch2",
              {Select(IDC_DECO_FONT_RESIDENT, kX21), Click(IDC_DECO_FONT_INCH),
               Replace(IDC_DECO_FONT_EXPAND_Y, u"4"), ExpectText(IDC_DECO_FONT_WIDTH, u"0.084"),
               ExpectText(IDC_DECO_FONT_HEIGHT, u"0.335")}));
  Record inch = Deco(u"Inch", u"X21", 2, 83, 83);
  Record inch2 = Deco(u"Inch2", u"X21", 2, 84, 335);
  EXPECT_EQ(stored, (Records{Deco(u"X23", u"X23", 4, 60, 60).Put(206, 0), inch.Put(206, 1),
                             inch2.Put(204, {4, 1})}));
}

TEST_F(DecoDialogTest, EmphasisDependsOnBothMagnifications) {
  Steps steps = {Select(IDC_DECO_FONT_RESIDENT, kKanjiDown)};
  const struct {
    const char16_t *x, *y;
    bool emphasis;
  } kCases[] = {{u"5", u"5", true}, {u"6", u"1", false}, {u"1", u"6", false}, {u"5", u"1", true}};
  for (const auto& c : kCases) {
    steps = steps + Steps{Replace(IDC_DECO_FONT_EXPAND_X, c.x),
                          Replace(IDC_DECO_FONT_EXPAND_Y, c.y), ExpectEnabled(kBold, c.emphasis)};
  }
  Register(NewDeco(u"K", steps));
}

TEST_F(DecoDialogTest, DecorationAndSerialNumberingAreNeverBothOff) {
  Record expected = Deco(u"S");
  expected.Put(194, 0).Put(220, {1, 1, 12, -345, 67, 8});
  const Steps off = {
      Click(IDC_DECO_FONT_SERIAL_ON),
      ExpectEnabled(kSerial, true),
      ExpectEnabled({IDC_DECO_FONT_DECORATE_OFF, IDC_DECO_FONT_SERIAL_OFF}, true),
      Click(IDC_DECO_FONT_DECORATE_OFF),
      ExpectEnabled({IDC_DECO_FONT_SERIAL_OFF, IDC_DECO_FONT_SIZE}, false),
      ExpectEnabled(kUnit, false),
      ExpectEnabled(kRotate, false),
      ExpectEnabled(kPitch, false),
      ExpectEnabled(kReverse, false),
      ExpectEnabled(kMagnification, false),
      ExpectEnabled(kSerial, true),
      [](Desk& desk) { EXPECT_FALSE(desk.Click(IDC_DECO_FONT_SERIAL_OFF)); },
      Click(IDC_DECO_FONT_DECORATE_ON),
      ExpectEnabled({IDC_DECO_FONT_SERIAL_OFF, IDC_DECO_FONT_SIZE}, true),
      Click(IDC_DECO_FONT_SERIAL_OFF),
      ExpectEnabled(kSerial, false),
      [](Desk& desk) { EXPECT_FALSE(desk.Click(IDC_DECO_FONT_DECORATE_OFF)); },
      Click(IDC_DECO_FONT_SERIAL_ON),
      Click(IDC_DECO_FONT_HEXADECIMAL),
      Replace(IDC_DECO_FONT_PRINT_NUM, u"12"),
      Replace(IDC_DECO_FONT_INCREMENT, u"-345"),
      Replace(IDC_DECO_FONT_ACTIVE_DIGITS, u"67"),
      Spin(IDC_DECO_FONT_LOW_DIGITS_SPIN, 8),
      Click(IDC_DECO_FONT_DECORATE_OFF),
      ExpectChecked({IDC_DECO_FONT_HEXADECIMAL}),
  };
  EXPECT_EQ(Register(NewDeco(u"S", off)), Records{expected});
}

TEST_F(DecoDialogTest, ReadsEveryRadioGroup) {
  Record expected = Deco(u"R", u"X21", 2, 17, 17);
  expected.Put(208, {2, 180, 1});
  Record kanji = Deco(u"K", u"漢字(横書)", 128, 16, 16);
  kanji.Put(208, {1, 270, 0, 0, 1});
  EXPECT_EQ(
      Register(NewDeco(u"R", {Select(IDC_DECO_FONT_RESIDENT, kX21),
                              Click(IDC_DECO_FONT_PITCH_PROPORTIONAL),
                              Click(IDC_DECO_FONT_ROTATE_180), Click(IDC_DECO_FONT_REVERSE_ON)}) +
               NewDeco(u"K", {Select(IDC_DECO_FONT_RESIDENT, kKanjiAcross),
                              Click(IDC_DECO_FONT_ROTATE_270), Click(IDC_DECO_FONT_BOLD_ON)})),
      (Records{expected, kanji}));
}

// Another resident font takes back the decoration, not the serial numbering and the name.
TEST_F(DecoDialogTest, AnotherResidentFontStartsAnew) {
  Record expected = Deco(u"A", u"X22", 256, 24, 24);
  expected.Put(220, {1, 1, 5});
  EXPECT_EQ(
      Register(NewDeco(
          u"A", {Replace(IDC_DECO_FONT_NAME, u"Typed"), Select(IDC_DECO_FONT_RESIDENT, kX21),
                 Click(IDC_DECO_FONT_PITCH_PROPORTIONAL), Click(IDC_DECO_FONT_ROTATE_90),
                 Click(IDC_DECO_FONT_REVERSE_ON), Click(IDC_DECO_FONT_INCH),
                 Replace(IDC_DECO_FONT_EXPAND_X, u"3"), Click(IDC_DECO_FONT_SERIAL_ON),
                 Click(IDC_DECO_FONT_HEXADECIMAL), Replace(IDC_DECO_FONT_PRINT_NUM, u"5"),
                 Click(IDC_DECO_FONT_DECORATE_OFF), Select(IDC_DECO_FONT_RESIDENT, kX22),
                 ExpectText(IDC_DECO_FONT_NAME, u"Typed"), ExpectText(IDC_DECO_FONT_EXPAND_X, u"1"),
                 ExpectChecked({IDC_DECO_FONT_DECORATE_ON, IDC_DECO_FONT_DOT,
                                IDC_DECO_FONT_ROTATE_0, IDC_DECO_FONT_SERIAL_ON}),
                 ExpectText(IDC_DECO_FONT_PRINT_NUM, u"5")})),
      Records{expected});
}

// Nothing of the former, longer name is stored behind the new one.
TEST_F(DecoDialogTest, AShorterNameLeavesNothingBehind) {
  Store({Deco(u"A name of some length")});
  EXPECT_EQ(Register(ChangeDeco({Replace(IDC_DECO_FONT_NAME, u"A")})), Records{Deco(u"A")});
}

TEST_F(DecoDialogTest, CancelKeepsTheList) {
  Store({Deco(u"A")});
  const Steps change = {Replace(IDC_DECO_FONT_NAME, u"Other"), Select(IDC_DECO_FONT_RESIDENT, kPop),
                        Click(IDC_DECO_FONT_SERIAL_ON)};
  const auto close = [](Desk& desk) { EXPECT_TRUE(desk.Close()); };
  const auto escape = [](Desk& desk) { EXPECT_TRUE(desk.Escape()); };
  EXPECT_EQ(Register(Steps{Click(IDC_CREATE_FONT_DECO_EDIT)} + change +
                     Steps{Click(IDCANCEL), Click(IDC_CREATE_FONT_DECO_EDIT)} + change +
                     Steps{close, Click(IDC_CREATE_FONT_DECO_NEW)} + change +
                     Steps{escape, ExpectItems(IDC_CREATE_FONT_DECO_LIST, {u"A"})}),
            Records{Deco(u"A")});
}

TEST_F(DecoDialogTest, HelpNamesTheRanges) {
  Store({Deco(u"FREE", u"OUTLINE", 1024, 100, 200)});
  const auto help = [](std::u16string text) { return ExpectText(IDC_HELP_TEXT, text); };
  Register(ChangeDeco(
      {Focus(IDC_DECO_FONT_WIDTH), help(u"文字の幅を設定します。（範囲は、27dotから550dotです。）"),
       Click(IDC_DECO_FONT_MM), Focus(IDC_DECO_FONT_HEIGHT),
       help(u"文字の高さを設定します。（範囲は、6.3mmから125.0mmです。）"),
       Click(IDC_DECO_FONT_SERIAL_ON), Focus(IDC_DECO_FONT_INCREMENT),
       [](Desk& desk) {
         EXPECT_NE(desk.Text(IDC_HELP_TEXT).find(u"-9999から9999"), std::u16string::npos);
       },
       Select(IDC_DECO_FONT_RESIDENT, kX20), Focus(IDC_DECO_FONT_EXPAND_X),
       help(u"文字幅の倍率を設定します。(範囲は、1から6です。）")}));
}

}  // namespace
}  // namespace fonts
