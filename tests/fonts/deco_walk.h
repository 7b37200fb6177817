// Steps in the dialog of decorative fonts, opened from the font page, and how it looks.
#pragma once

#include "font_fixture.h"

namespace fonts {

constexpr char16_t kRegisterTitle[] = u"装飾フォントの登録";
constexpr char16_t kChangeTitle[] = u"装飾フォントの変更";

// The rows of the list of resident fonts.
enum ResidentRow : int { kX20, kX21, kX22, kX23, kOcrA = 5, kOcrB, kPop, kKanjiAcross, kKanjiDown };

// Radio buttons, in the order of their values.
const std::vector<int> kUnits = {1141, 1142, 1143}, kPitches = {1136, 1137},
                       kRotations = {1011, 1009, 1010, 1012}, kReversals = {1014, 1013},
                       kSmoothings = {1016, 1015}, kEmphases = {1018, 1017},
                       kOutlines = {1019, 1025, 1026, 1020, 1027, 1028, 1022, 1023, 1024, 1021},
                       kDecorations = {1003, 1002};
const SerialIds kDecoSerial = {
    {1148, 1147}, {1146, 1145}, {1149, 1151, 1153, 1155}, {1150, 1152, 1154, 1156}};

// "row sizes@selected width x height, magnifications, unit … outline, decoration".
inline std::string DecoLook(Desk& desk) {
  std::string sizes;
  const auto list = desk.Control(IDC_DECO_FONT_SIZE);
  for (const auto& item : list.items) {
    for (char16_t unit : item) sizes.push_back(static_cast<char>(unit));
    sizes.push_back(' ');
  }
  std::string look = std::to_string(desk.Control(IDC_DECO_FONT_RESIDENT).selection) + " " +
                     Usable(desk, {IDC_DECO_FONT_SIZE}, sizes + std::to_string(list.selection)) +
                     ", " + Number(desk, 1107, 1108) + " x " + Number(desk, 1109, 1110) + ", " +
                     Number(desk, 1157, 1158) + " x " + Number(desk, 1159, 1160) + ",";
  for (const auto* radios : {&kUnits, &kPitches, &kRotations, &kReversals, &kSmoothings, &kEmphases,
                             &kOutlines, &kDecorations}) {
    look += " " + Radios(desk, *radios);
  }
  return look;
}
inline Step Looks(std::string look) {
  return [=](Desk& desk) { EXPECT_EQ(DecoLook(desk), look); };
}
inline Step NumberingLooks(std::string look) {
  return [=](Desk& desk) { EXPECT_EQ(SerialLook(desk, kDecoSerial), look); };
}

// A new font: what is done in the dialog, and its name. OK must be taken.
inline Steps NewDeco(std::u16string name, const Steps& steps = {}) {
  return {Click(IDC_CREATE_FONT_DECO_NEW),
          ExpectTitle(kRegisterTitle),
          steps,
          Replace(IDC_DECO_FONT_NAME, std::move(name)),
          Click(IDOK),
          ExpectTitle(u"クリエイトフォント")};
}
// The first font changed, and kept under its name.
inline Steps ChangeDeco(const Steps& steps = {}) {
  return {Click(IDC_CREATE_FONT_DECO_EDIT), ExpectTitle(kChangeTitle), steps, Click(IDOK),
          ExpectTitle(u"クリエイトフォント")};
}

}  // namespace fonts
