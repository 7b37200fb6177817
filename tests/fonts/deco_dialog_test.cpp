// The dialog of decorative fonts, with fonts of this printer and of others.
#include "font_fixture.h"
#include "fonts/resident_fonts.h"

namespace fonts {
namespace {

constexpr int kResident = IDC_DECO_FONT_RESIDENT, kSize = IDC_DECO_FONT_SIZE,
              kWidth = IDC_DECO_FONT_WIDTH, kWidthSpin = IDC_DECO_FONT_WIDTH_SPIN,
              kHeight = IDC_DECO_FONT_HEIGHT, kHeightSpin = IDC_DECO_FONT_HEIGHT_SPIN,
              kExpandX = IDC_DECO_FONT_EXPAND_X, kExpandXSpin = IDC_DECO_FONT_EXPAND_X_SPIN,
              kExpandY = IDC_DECO_FONT_EXPAND_Y, kExpandYSpin = IDC_DECO_FONT_EXPAND_Y_SPIN,
              kMm = IDC_DECO_FONT_MM, kInchRadio = IDC_DECO_FONT_INCH, kDots = IDC_DECO_FONT_DOT,
              kDecorateOn = IDC_DECO_FONT_DECORATE_ON, kDecorateOff = IDC_DECO_FONT_DECORATE_OFF;
// Radio buttons in the order of their values.
const std::vector<int> kUnits = {kMm, kInchRadio, kDots};
const std::vector<int> kPitches = {IDC_DECO_FONT_PITCH_FIXED, IDC_DECO_FONT_PITCH_PROPORTIONAL};
const std::vector<int> kRotations = {IDC_DECO_FONT_ROTATE_0, IDC_DECO_FONT_ROTATE_90,
                                     IDC_DECO_FONT_ROTATE_180, IDC_DECO_FONT_ROTATE_270};
const std::vector<int> kReversals = {IDC_DECO_FONT_REVERSE_OFF, IDC_DECO_FONT_REVERSE_ON};
const std::vector<int> kSmoothings = {IDC_DECO_FONT_SMOOTH_OFF, IDC_DECO_FONT_SMOOTH_ON};
const std::vector<int> kEmphases = {IDC_DECO_FONT_BOLD_OFF, IDC_DECO_FONT_BOLD_ON};
const std::vector<int> kOutlines = {
    IDC_DECO_FONT_OUTLINE_STANDARD,      IDC_DECO_FONT_OUTLINE_HOLLOW,
    IDC_DECO_FONT_OUTLINE_GRAY1,         IDC_DECO_FONT_OUTLINE_GRAY2,
    IDC_DECO_FONT_OUTLINE_GRAY3,         IDC_DECO_FONT_OUTLINE_SHADOW,
    IDC_DECO_FONT_OUTLINE_HOLLOW_SHADOW, IDC_DECO_FONT_OUTLINE_MIRROR,
    IDC_DECO_FONT_OUTLINE_ITALIC,        IDC_DECO_FONT_OUTLINE_HOLLOW_SHADOW_ITALIC};
const std::vector<int> kMagnifications = {kExpandX, kExpandXSpin, kExpandY, kExpandYSpin},
                       kFreeSize = {kWidth, kWidthSpin, kHeight, kHeightSpin};

class DecoDialogTest : public FontTest {};

// A scalable font, as other printers have it.
Font Scalable(int width, int height) {
  return Deco(u"S", u"OUTLINE", kSizeScalable, width, height);
}

TEST_F(DecoDialogTest, NewFontHasSizesAndStylesOfItsResidentFont) {
  const struct {
    int headDensity, row;
    const char16_t* name;
    int sizeCode, width, height;
    bool isProportional, canBeEmphasized;
  } kFonts[] = {{203, 0, u"X20", kSize5x9, 5, 9, false, false},
                {203, 1, u"X21", kSize17x17, 17, 17, true, false},
                {203, 2, u"X22", kSize24x24, 24, 24, true, false},
                {203, 3, u"X23", kSize48x48, 48, 48, true, false},
                {203, 4, u"X24", kSize48x48, 48, 48, true, false},
                {203, 5, u"OCR-A", kSize15x22, 15, 22, false, false},
                {203, 6, u"OCR-B", kSize20x24, 20, 24, false, false},
                {203, 7, u"POP", kSize80x133, 80, 133, true, false},
                {203, 8, u"漢字(横書)", kSize16x16, 16, 16, false, true},
                {203, 9, u"漢字(縦書)", kSize16x16, 16, 16, false, true},
                {305, 5, u"OCR-A", kSize22x33, 22, 33, false, false},
                {305, 6, u"OCR-B", kSize30x36, 30, 36, false, false},
                {600, 5, u"OCR-A", kSize15x22, 15, 22, false, false}};
  for (const auto& font : kFonts) {
    SCOPED_TRACE(font.row);
    const std::string cell = std::to_string(font.width) + "*" + std::to_string(font.height);
    std::vector<std::u16string> sizes = {std::u16string(cell.begin(), cell.end())};
    if (font.row >= 8) sizes = {u"16*16", u"24*24", u"22*22"};
    SetDensity(font.headDensity);
    Store({});
    ExpectStored({Deco(u"A", font.name, font.sizeCode, font.width, font.height)},
                 New(kDeco, u"A",
                     {Select(kResident, font.name), ExpectSelected(kResident, font.row),
                      ExpectItems(kSize, sizes), ExpectSelected(kSize, 0),
                      ExpectEnabled(kPitches, font.isProportional),
                      ExpectEnabled(kEmphases, font.canBeEmphasized), ExpectEnabled(kReversals),
                      ExpectEnabled(kMagnifications), ExpectEnabled(kFreeSize, false),
                      ExpectEnabled(kOutlines, false), ExpectEnabled(kSmoothings, false)}));
  }
}

TEST_F(DecoDialogTest, SizeIsCellTimesMagnificationInTheUnitOfTheFont) {
  ExpectStored(
      {Deco(u"K", u"漢字(横書)", kSize22x22, 132, 66).Magnified(6, 3)},
      New(kDeco, u"K",
          {Select(kResident, 8), Select(kSize, 2), Replace(kExpandX, u"5"), Spin(kExpandYSpin, 2),
           ExpectRange(kWidthSpin, 1, 660, 110), ExpectRange(kHeightSpin, 1, 396, 66),
           ExpectEnabled(kEmphases), Replace(kExpandX, u"6"), ExpectEnabled(kEmphases, false)}));
  // The cell is converted to inches directly, a size that is shown by way of millimetres.
  Store({});
  ExpectStored(
      {Deco(u"I", u"X21", kSize17x17, 84, 335).Magnified(1, 4).With(&DecoFontInfo::Unit, kInch)},
      New(kDeco, u"I",
          {Select(kResident, 1), Click(kInchRadio), ExpectText(kWidth, u"0.083"),
           Replace(kExpandY, u"4"), ExpectText(kWidth, u"0.084")}));
}

// Smoothing from a magnification of 3 belongs to no resident font of this printer.
TEST(StylesSupportedBy, SmoothingAndEmphasisDependOnMagnification) {
  DecoFontInfo row = {};
  row.Smoothing = kFromThree;
  row.Bold = kUpToFive;
  const auto styles = [&](int16_t expandX, int16_t expandY) {
    return StylesSupportedBy(row, Font().Magnified(expandX, expandY).Deco);
  };
  EXPECT_TRUE(styles(3, 5).smoothing && styles(5, 3).emphasis);
  EXPECT_FALSE(styles(2, 6).smoothing || styles(6, 2).smoothing);
  EXPECT_FALSE(styles(6, 1).emphasis || styles(1, 6).emphasis);
}

TEST_F(DecoDialogTest, DecorationAndSerialNumberingCannotBothBeOff) {
  const std::vector<int> decoration = {kSize, kMm, kRotations[0], kReversals[0], kExpandX};
  ExpectStored(
      {Deco(u"A").With(&DecoFontInfo::Decorate, 0).Numbered(true, false, kNewNumbers)},
      New(kDeco, u"A",
          {ExpectEnabled({kDecorateOff}, false), Click(kDeco.serialOn), Click(kDecorateOff),
           ExpectEnabled(decoration, false), ExpectEnabled({kDeco.serialOff}, false),
           Click(kDecorateOn), Click(kDeco.serialOff), ExpectEnabled({kDecorateOff}, false),
           ExpectEnabled(decoration), Click(kDeco.serialOn), Click(kDecorateOff)}));
}

// The font is scalable and has every style, so that every radio button is enabled.
TEST_F(DecoDialogTest, EveryRadioButtonIsStoredAndShown) {
  const struct {
    uint16_t DecoFontInfo::*field;
    std::vector<int> radios, values;
  } kGroups[] = {{&DecoFontInfo::Unit, kUnits, {kMillimetre, kInch, kDot}},
                 {&DecoFontInfo::Pitch, kPitches, {1, 2}},
                 {&DecoFontInfo::Rotate, kRotations, {0, 90, 180, 270}},
                 {&DecoFontInfo::ColorRevolution, kReversals, {0, 1}},
                 {&DecoFontInfo::Smoothing, kSmoothings, {0, 1}},
                 {&DecoFontInfo::Bold, kEmphases, {0, 1}},
                 {&DecoFontInfo::OutlineStyle, kOutlines, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9}}};
  for (size_t i = 0; i < kOutlines.size(); ++i) {
    Store({Scalable(100, 200)
               .With(&DecoFontInfo::Pitch, 2)
               .With(&DecoFontInfo::Smoothing, 1)
               .With(&DecoFontInfo::Bold, 1)});
    Steps clicks, checks;
    for (const auto& group : kGroups) {
      const int radio = group.radios[i % group.radios.size()];
      clicks += Click(radio);
      checks += ExpectChecked({radio});
    }
    // The dialog refreshes its controls from the font when decoration is turned on.
    Ok(kFontTab, {Change(kDeco, {clicks, Click(kDecorateOn), checks}), Change(kDeco, checks)});
    const DecoFontInfo stored = Stored().at(0).Deco;
    for (const auto& [field, radios, values] : kGroups)
      EXPECT_EQ(stored.*field, values[i % values.size()]) << radios[0];
  }
}

TEST_F(DecoDialogTest, MagnificationOutsideOneToSixIsShownAndRejected) {
  const Font stored = Deco(u"N").Magnified(9, 0);
  ExpectChange(
      kDeco, stored, Deco(u"N", u"X20", kSize5x9, 30, 54).Magnified(6, 6),
      {ExpectText(kExpandX, u"9"), ExpectText(kExpandY, u"0"), ExpectRange(kHeightSpin, 1, 1, 1),
       Spin(kExpandXSpin, 9), ExpectText(kExpandX, u"6"), Replace(kExpandY, u"70"),
       Select(kSize, 0), ExpectText(kExpandY, u"70"),
       ExpectRejected(kDeco.ChangeTitle(), u"フォントサイズ\n",
                      {{kExpandX, u"幅倍率", u"", u"0", u"1", u"6", u"7"},
                       {kExpandY, u"高さ倍率", u"", u"0", u"1", u"6", u"7"}})});
}

// The limits are 27 to 550 and 50 to 999 dots, converted to the unit.
TEST_F(DecoDialogTest, ScalableFontHasFreeWidthAndHeight) {
  const auto rejected = [](const std::vector<FieldLimits>& fields) {
    return ExpectRejected(kDeco.ChangeTitle(), u"フォントサイズ\n", fields);
  };
  const Steps inDots = rejected({{kWidth, u"幅", u"dot ", u"26", u"27", u"550", u"551"},
                                 {kHeight, u"高さ", u"dot ", u"49", u"50", u"999", u"1000"}});
  // The focus formats the text from the font.
  const Steps left = {Focus(kHeight), ExpectText(kWidth, u"68.5")};
  ExpectChange(
      kDeco, Scalable(100, 200), Scalable(1500, 280).With(&DecoFontInfo::Unit, kInch),
      {ExpectItems(kSize, {}), ExpectEnabled(kMagnifications, false), ExpectEnabled(kFreeSize),
       ExpectEnabled(kOutlines), inDots, Click(kMm), Spin(kWidthSpin, -3), left,
       Paste(kWidth, u"9"), Focus(kHeight), ExpectText(kWidth, u"9.0"), Replace(kHeight, u"0"),
       Replace(kHeight, u"7.1"), Click(kInchRadio), Replace(kWidth, u"1.5")});
}

// The defaults of a resident font reset the decoration, but neither numbering nor the typed name.
TEST_F(DecoDialogTest, FontOfAnotherPrinterStaysUntilAResidentFontIsChosen) {
  const std::array<int16_t, 4> numbers = {5, -2, 3, 4};
  const Font other = Deco(u"A", u"X99", kSize22x22, 251, 84)
                         .Magnified(2, 3)
                         .With(&DecoFontInfo::Unit, kInch)
                         .With(&DecoFontInfo::Pitch, 2)
                         .With(&DecoFontInfo::Smoothing, 1)
                         .With(&DecoFontInfo::Bold, 1);
  for (Font font : {other, Scalable(60, 90).With(&DecoFontInfo::OutlineStyle, 7),
                    Deco(u"A", u"NEW", 0, 77, 88), Deco(u"A", u"NEW", 4096, 77, 88)}) {
    font.Numbered(true, true, numbers);
    ExpectChange(kDeco, font, font, ExpectSelected(kResident, -1));
    ExpectChange(kDeco, font, Deco(u"B", u"X21", kSize17x17, 17, 17).Numbered(true, true, numbers),
                 {Replace(kDeco.name, u"B"), Click(kDecorateOff), Select(kResident, 1)});
  }
}

TEST_F(DecoDialogTest, InvalidRecordIsCorrectedByOk) {
  // a size and magnifications outside their limits, a cell that the resident font lacks
  ExpectChange(kDeco, Deco(u"A", u"X99", kSize22x22, -44, 0), Deco(u"A", u"X99", kSize22x22, 1, 1));
  ExpectChange(kDeco, Deco(u"A", u"漢字(横書)", kSize48x48, 48, 48),
               Deco(u"A", u"漢字(横書)", kSize16x16, 16, 16));
  // decoration and numbering both off, an unknown unit, numbers outside their limits
  ExpectChange(kDeco, Deco(u"A").With(&DecoFontInfo::Decorate, 0), Deco(u"A"));
  ExpectChange(kDeco, Deco(u"A").With(&DecoFontInfo::Unit, 9), Deco(u"A"));
  ExpectChange(kDeco, Deco(u"A").Numbered(false, false, {0, 20000, 100, -1}),
               Deco(u"A").Numbered(false, false, {1, 9999, 99, 0}));
}

// Each arrow key in the open list applies a row's defaults.
TEST_F(DecoDialogTest, EscInOpenListRestoresFont) {
  const Font font = Deco(u"K", u"漢字(横書)", kSize22x22, 132, 66).Magnified(6, 3);
  ExpectChange(kDeco, font, font,
               {MoveInOpenList(kResident, -1), Key(VK_DOWN), Escape(), ExpectText(kSize, u"22*22"),
                MoveInOpenList(kSize, -2), Escape(), ExpectText(kSize, u"22*22")});
}

// After an arrow key to another row, a click on the old one closes the list. The platform does not
// define the order of the two notifications of that click.
TEST_F(DecoDialogTest, ClickOnOldRowRestoresFontInEitherOrderOfNotifications) {
  const Font font = Deco(u"A", u"X21", kSize17x17, 34, 51).Magnified(2, 3);
  const auto notify = [](int list, int notification) {
    return [=](Desk& desk) {
      SendMessageW(desk.Top(), WM_COMMAND, MAKEWPARAM(list, notification), 0);
    };
  };
  const auto select = [](WPARAM row) {
    return [=](Desk& desk) { SendDlgItemMessageW(desk.Top(), kResident, CB_SETCURSEL, row, 0); };
  };
  const Steps up = {select(0), notify(kResident, CBN_SELCHANGE)},
              down = {select(1), notify(kResident, CBN_SELCHANGE)};
  for (const auto& [first, second] :
       {std::pair(CBN_SELCHANGE, CBN_CLOSEUP), std::pair(CBN_CLOSEUP, CBN_SELCHANGE)}) {
    const Steps clicked = {
        notify(kResident, CBN_SETFOCUS), notify(kResident, CBN_DROPDOWN), up, select(1),
        notify(kResident, first),        notify(kResident, second)};
    ExpectChange(kDeco, font, font, clicked);
    // A selection in the closed list is a new one and has the row's defaults.
    ExpectChange(kDeco, font, Deco(u"A", u"X21", kSize17x17, 17, 17), {clicked, up, down});
  }
}

}  // namespace
}  // namespace fonts
