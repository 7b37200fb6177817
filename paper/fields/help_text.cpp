#include "paper/fields/help_text.h"

#include "paper/fields/measured_value.h"
#include "sheets/messages.h"

namespace kestrel {
namespace {

constexpr size_t kHelpLength = 511;     // UTF-16 units of a loaded text with the terminator
constexpr int kFormattedLength = 1025;  // wsprintfW writes at most 1024 units and the terminator
constexpr int kUsualGap = 30;           // tenths of a millimetre
constexpr int kFirstColumnsDpi = 203;

// A limit, formatted in the unit of the help text.
struct LimitText {
  WCHAR text[kMeasureTextLength];
  LimitText(int value, int from, int unit, int dpi) {
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

void FormatHelp(WCHAR (&out)[kFormattedLength], const WCHAR* text, const HelpRow& row, int unit,
                int dpi) {
  const bool first = dpi == kFirstColumnsDpi;
  const int from = row.kind == kHelpDotRange || row.kind == kHelpDotRangeUnits ? kDot : kMillimetre;
  const LimitText minimum(first ? row.min203 : row.min305, from, unit, dpi);
  const LimitText maximum(first ? row.max203 : row.max305, from, unit, dpi);
  const WCHAR* name = UnitName(unit);
  const LimitText usual(kUsualGap, kMillimetre, unit, dpi);
  const LimitText zero(0, unit, unit, dpi);
  if (row.kind == kHelpDotRange) {
    wsprintfW(out, text, minimum.text, maximum.text);
  } else if (row.kind == kHelpZero) {
    wsprintfW(out, text, zero.text, name);
  } else {
    // wsprintfW omits the usual value when the text has no placeholder for it.
    wsprintfW(out, text, minimum.text, name, maximum.text, name, usual.text, name);
  }
}

}  // namespace

void ShowHelp(HWND dialog, HelpTextTable rows, int control, int helpBox, int unit, int dpi) {
  const HelpRow* row = FindRow(rows, control);
  if (row == nullptr || row->text == 0) return;
  WCHAR text[kHelpLength];
  // For an unknown id the text is empty, which clears the box.
  LoadMessageText(row->text, text, kHelpLength);
  if (row->kind == kHelpPlain) {
    SetDlgItemTextW(dialog, helpBox, text);
    return;
  }
  WCHAR formatted[kFormattedLength];
  FormatHelp(formatted, text, *row, unit, dpi);
  SetDlgItemTextW(dialog, helpBox, formatted);
}

}  // namespace kestrel
