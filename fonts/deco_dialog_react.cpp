#include <algorithm>

#include "driver/text.h"
#include "fonts/deco_dialog_data.h"
#include "fonts/font_sizes.h"
#include "paper/fields/measured_value.h"
#include "resources/resource.h"

namespace kestrel {
namespace {

bool IsSizeEdit(int control) {
  return control == IDC_DECO_FONT_WIDTH || control == IDC_DECO_FONT_HEIGHT;
}

int SpinOfSize(int edit) {
  return edit == IDC_DECO_FONT_WIDTH ? IDC_DECO_FONT_WIDTH_SPIN : IDC_DECO_FONT_HEIGHT_SPIN;
}

int16_t& SizeOf(DecoDialog& dialog, int edit) {
  return edit == IDC_DECO_FONT_WIDTH ? dialog.font().SizeX : dialog.font().SizeY;
}

void ShowDecoHelp(DecoDialog& dialog, int control) {
  const int unit = IsSizeEdit(control) ? dialog.font().Unit : static_cast<int>(kPlain);
  ShowHelp(dialog.window, kDecoHelp, control, IDC_HELP_TEXT, unit, dialog.dpi);
}

void OnResidentFont(DecoDialog& dialog) {
  const auto rows = ResidentFontTable(dialog.dpi);
  const auto row = static_cast<size_t>(
      SendDlgItemMessageW(dialog.window, IDC_DECO_FONT_RESIDENT, CB_GETCURSEL, 0, 0));
  if (row >= rows.size()) return;
  dialog.row = rows[row];
  TakeRowDefaults(dialog.font(), dialog.row, false);
  FillSizeList(dialog, 0);
  RefreshDecoDialog(dialog);
  RedrawPreview(dialog);
}

void OnSize(DecoDialog& dialog) {
  ComputeSelectedSize(dialog, SelectedSizeEntry(dialog));
  RefreshDecoDialog(dialog);
  RedrawPreview(dialog);
}

void OnUnit(DecoDialog& dialog) {
  const auto unit = static_cast<uint16_t>(CheckedRadio(dialog.window, kUnitRadios));
  if (unit == dialog.font().Unit) return;
  ChangeFontUnit(dialog.font(), unit, dialog.dpi);
  RefreshDecoDialog(dialog);
}

void OnMagnification(DecoDialog& dialog, int edit) {
  if (!OnPlainTyped(dialog.fields(), edit)) return;
  const auto value = static_cast<int16_t>(ReadField(dialog.fields(), edit, kPlain));
  (edit == IDC_DECO_FONT_EXPAND_X ? dialog.font().ExpandX : dialog.font().ExpandY) = value;
  ComputeSelectedSize(dialog, SelectedSizeEntry(dialog));
  RefreshDecoDialog(dialog, true);
  RedrawPreview(dialog);
}

// A free width or height: the field follows the font, and the font the field.
void OnSizeField(DecoDialog& dialog, int edit, int notification) {
  int16_t& size = SizeOf(dialog, edit);
  if (notification == EN_CHANGE) {
    if (!OnMeasureTyped(dialog.fields(), edit, dialog.font().Unit)) return;
    size = static_cast<int16_t>(ReadField(dialog.fields(), edit, dialog.font().Unit));
  } else if (notification == EN_SETFOCUS || notification == EN_KILLFOCUS) {
    const InitialisingScope scope(dialog);
    WCHAR text[kMeasureTextLength];
    FormatMeasure(text, size, dialog.font().Unit);
    SetDlgItemTextW(dialog.window, edit, text);
  } else {
    return;
  }
  RedrawPreview(dialog);
}

void OnEdit(DecoDialog& dialog, int control, int notification) {
  if (IsSizeEdit(control)) {
    OnSizeField(dialog, control, notification);
  } else if (notification == EN_UPDATE && control == IDC_DECO_FONT_NAME) {
    GetDlgItemTextW(dialog.window, control, dialog.font().DecoFontName, kFontNameLength);
  } else if (notification == EN_UPDATE &&
             (control == IDC_DECO_FONT_EXPAND_X || control == IDC_DECO_FONT_EXPAND_Y)) {
    OnMagnification(dialog, control);
  } else if (notification == EN_CHANGE && SerialFieldOf(kDecoSerial, control) >= 0) {
    OnPlainTyped(dialog.fields(), control);
  }
}

// Decoration and serial numbering are never both off.
void OnSwitch(DecoDialog& dialog, int control) {
  DecoFontInfo& font = dialog.font();
  if (control == IDC_DECO_FONT_SERIAL_ON) font.Range = 1;
  if (control == IDC_DECO_FONT_SERIAL_OFF && font.Decorate == 1) font.Range = 0;
  if (control == IDC_DECO_FONT_DECORATE_ON) font.Decorate = 1;
  if (control == IDC_DECO_FONT_DECORATE_OFF && font.Range == 1) font.Decorate = 0;
  RefreshDecoDialog(dialog);
  EnableSerialFields(dialog.window, kDecoSerial, font.Range == 1);
}

bool Contains(RadioGroup group, int control) {
  return std::find(group.begin(), group.end(), control) != group.end();
}

void OnRadio(DecoDialog& dialog, int control) {
  DecoFontInfo& font = dialog.font();
  HWND window = dialog.window;
  const auto value = [window](RadioGroup group) {
    return static_cast<uint16_t>(CheckedRadio(window, group));
  };
  if (Contains(kRotateRadios, control)) {
    font.Rotate = static_cast<uint16_t>(90 * value(kRotateRadios));
  } else if (Contains(kReverseRadios, control)) {
    font.ColorRevolution = value(kReverseRadios);
  } else if (Contains(kSmoothRadios, control)) {
    font.Smoothing = value(kSmoothRadios);
  } else if (Contains(kBoldRadios, control)) {
    font.Bold = value(kBoldRadios);
  } else if (Contains(kOutlineRadios, control)) {
    font.OutlineStyle = value(kOutlineRadios);
  } else if (Contains(kPitchRadios, control)) {
    font.Pitch = static_cast<uint16_t>(1 + value(kPitchRadios));
    RedrawPreview(dialog);
  } else if (Contains(kUnitRadios, control)) {
    OnUnit(dialog);
  } else if (Contains(kSerialRadios, control) || Contains(kDecorateRadios, control)) {
    OnSwitch(dialog, control);
  }
}

}  // namespace

void OnDecoCommand(DecoDialog& dialog, int control, int notification) {
  const bool list = control == IDC_DECO_FONT_RESIDENT || control == IDC_DECO_FONT_SIZE;
  const bool edit = control == IDC_DECO_FONT_NAME || IsSizeEdit(control) ||
                    control == IDC_DECO_FONT_EXPAND_X || control == IDC_DECO_FONT_EXPAND_Y ||
                    SerialFieldOf(kDecoSerial, control) >= 0;
  if (list) {
    if (notification == CBN_SETFOCUS) ShowDecoHelp(dialog, control);
    if (notification != CBN_SELCHANGE) return;
    control == IDC_DECO_FONT_RESIDENT ? OnResidentFont(dialog) : OnSize(dialog);
  } else if (edit) {
    if (notification == EN_SETFOCUS) ShowDecoHelp(dialog, control);
    OnEdit(dialog, control, notification);
  } else if (notification == BN_CLICKED) {
    ShowDecoHelp(dialog, control);
    OnRadio(dialog, control);
  }
}

bool OnDecoSpin(DecoDialog& dialog, int spin, int step) {
  const bool width = spin == IDC_DECO_FONT_WIDTH_SPIN;
  if (!width && spin != IDC_DECO_FONT_HEIGHT_SPIN) return false;
  const int edit = width ? IDC_DECO_FONT_WIDTH : IDC_DECO_FONT_HEIGHT;
  int minimum = 0;
  int maximum = 0;
  SpinRange(dialog.window, SpinOfSize(edit), &minimum, &maximum);
  const int position = std::clamp(SpinPosition(dialog.window, spin) + step, minimum, maximum);
  SizeOf(dialog, edit) = static_cast<int16_t>(position);
  const InitialisingScope scope(dialog);
  SetSpin(dialog.window, spin, edit, minimum, maximum, position, false);
  SpinToEdit(dialog.fields(), spin, dialog.font().Unit);
  RedrawPreview(dialog);
  return true;
}

}  // namespace kestrel
