#include "paper/fields/help_text.h"

#include "paper/fields/measured_value.h"
#include "sheets/messages.h"

namespace kestrel {
namespace {

constexpr size_t kHelpLength = 511;  // units of a loaded text, terminator included
constexpr int kFilledLength = 1025;  // the most that wsprintfW writes, and its terminator
constexpr int kUsualGap = 30;        // tenths of a millimetre
constexpr int kDensityOfFirstColumns = 203;

// A bound as the help shows it.
struct BoundText {
  WCHAR text[kMeasureTextLength];
  BoundText(int value, int from, int unit, int dpi) {
    FormatMeasure(text, ConvertMeasure(value, from, unit, dpi), unit);
  }
};

const HelpRow* FindRow(HelpTextTable rows, int control) {
  for (const HelpRow& row : rows) {
    if (row.control == 0) break;
    if (row.control == static_cast<uint32_t>(control)) return &row;
  }
  return nullptr;
}

void FillText(WCHAR (&out)[kFilledLength], const WCHAR* text, const HelpRow& row, int unit,
              int dpi) {
  const bool first = dpi == kDensityOfFirstColumns;
  const int from = row.kind == kHelpDotRange || row.kind == kHelpDotRangeUnits ? kDot : kMillimetre;
  const BoundText minimum(first ? row.min203 : row.min305, from, unit, dpi);
  const BoundText maximum(first ? row.max203 : row.max305, from, unit, dpi);
  const WCHAR* name = UnitName(unit);
  const BoundText usual(kUsualGap, kMillimetre, unit, dpi);
  const BoundText zero(0, unit, unit, dpi);
  if (row.kind == kHelpDotRange) {
    wsprintfW(out, text, minimum.text, maximum.text);
  } else if (row.kind == kHelpZero) {
    wsprintfW(out, text, zero.text, name);
  } else {
    // A text that names no usual value leaves it out.
    wsprintfW(out, text, minimum.text, name, maximum.text, name, usual.text, name);
  }
}

}  // namespace

void ShowHelp(HWND dialog, HelpTextTable rows, int control, int helpBox, int unit, int dpi) {
  const HelpRow* row = FindRow(rows, control);
  if (row == nullptr || row->text == 0) return;
  WCHAR text[kHelpLength];
  // A text that the string table lacks empties the box.
  LoadMessageText(row->text, text, kHelpLength);
  if (row->kind == kHelpPlain) {
    SetDlgItemTextW(dialog, helpBox, text);
    return;
  }
  WCHAR filled[kFilledLength];
  FillText(filled, text, *row, unit, dpi);
  SetDlgItemTextW(dialog, helpBox, filled);
}

}  // namespace kestrel
