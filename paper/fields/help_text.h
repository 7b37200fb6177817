// The help box of a dialog: a text that describes the control in use, with its range filled in.
#pragma once

#include <windows.h>

#include <cstdint>
#include <span>

namespace kestrel {

enum HelpKind : uint16_t {
  kHelpPlain = 0,
  kHelpDotRange = 2,       // range in dots, two numbers
  kHelpTenthsRange = 3,    // range in 0.1 mm, each with its unit
  kHelpDotRangeUnits = 4,  // range in dots, each with its unit
  kHelpTenthsUsual = 5,    // range in 0.1 mm and the usual gap
  kHelpTenthsUsualToo = 6,
  kHelpZero = 7,  // the value 0 and its unit
};

// One row of a HelpTextTable; each dialog keeps its own rows beside itself.
struct HelpRow {
  uint32_t control;
  uint16_t text;           // string id; 0: no help
  uint16_t kind;           // HelpKind
  int16_t min203, max203;  // for 203 dpi
  int16_t min305, max305;  // for every other density
};
using HelpTextTable = std::span<const HelpRow>;

// A row that is shown as it is, and one with the same range for every density.
constexpr HelpRow Plain(int control, int text) {
  return {static_cast<uint32_t>(control), static_cast<uint16_t>(text), kHelpPlain, 0, 0, 0, 0};
}
constexpr HelpRow Ranged(int control, int text, HelpKind kind, int minimum, int maximum) {
  const auto low = static_cast<int16_t>(minimum);
  const auto high = static_cast<int16_t>(maximum);
  return {static_cast<uint32_t>(control), static_cast<uint16_t>(text), kind, low, high, low, high};
}

// Shows the help of a control in the help box (a static). A control without a row, or with text 0,
// leaves the box.
void ShowHelp(HWND dialog, HelpTextTable rows, int control, int helpBox, int unit, int dpi);

// What help boxes show before any control was used: on pages 110, 122 and 153; on page 111; on page
// 129 and in the font dialogs.
inline constexpr WCHAR kFirstHelpPosition[] =
    TEXT("ここにマウスカーソル位置についての説明が表示されます。");
inline constexpr WCHAR kFirstHelpCursor[] =
    TEXT("ここにマウスカーソルのある 入力項目についての説明が表示されます。");
inline constexpr WCHAR kFirstHelpFonts[] =
    TEXT("ここにﾏｳｽｶｰｿﾙのある 入力項目についての説明が表示されます。");

}  // namespace kestrel
