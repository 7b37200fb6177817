// The help box of a dialog: a text about the control in use, with the range of its field.
#pragma once

#include <windows.h>

#include <cstdint>
#include <span>

namespace kestrel {

enum HelpKind : uint16_t {
  kHelpPlain = 0,          // no placeholder
  kHelpDotRange = 2,       // range in dots, two numbers
  kHelpTenthsRange = 3,    // range in 0.1 mm, each limit with its unit
  kHelpDotRangeUnits = 4,  // range in dots, each limit with its unit
  kHelpTenthsUsual = 5,    // as kHelpTenthsRange, and the usual gap with its unit
  kHelpZero = 7,           // the value 0 with its unit
};

// A row of a HelpTextTable. Each dialog defines its own table.
struct HelpRow {
  uint32_t control;
  uint16_t text;           // string id; 0: no help
  uint16_t kind;           // HelpKind
  int16_t min203, max203;  // for 203 dpi
  int16_t min305, max305;  // for every other density
};
using HelpTextTable = std::span<const HelpRow>;

// Returns a row whose text has no placeholder.
constexpr HelpRow Plain(int control, int text) {
  return {static_cast<uint32_t>(control), static_cast<uint16_t>(text), kHelpPlain, 0, 0, 0, 0};
}
// Returns a row with the same range for every density.
constexpr HelpRow Ranged(int control, int text, HelpKind kind, int minimum, int maximum) {
  const auto low = static_cast<int16_t>(minimum);
  const auto high = static_cast<int16_t>(maximum);
  return {static_cast<uint32_t>(control), static_cast<uint16_t>(text), kind, low, high, low, high};
}

// Shows the help text of a control in helpBox, a static control, with the range converted to unit
// at a head density in dots per inch. Leaves the box unchanged for a control without a row or with
// text 0.
void ShowHelp(HWND dialog, HelpTextTable rows, int control, int helpBox, int unit, int dpi);

// The initial texts of the help boxes: of the operation, device and utility pages; of the paper
// page; of the create-font page and the font dialogs.
inline constexpr WCHAR kFirstHelpPosition[] =
    TEXT("ここにマウスカーソル位置についての説明が表示されます。");
inline constexpr WCHAR kFirstHelpCursor[] =
    TEXT("ここにマウスカーソルのある 入力項目についての説明が表示されます。");
inline constexpr WCHAR kFirstHelpFonts[] =
    TEXT("ここにﾏｳｽｶｰｿﾙのある 入力項目についての説明が表示されます。");

}  // namespace kestrel
