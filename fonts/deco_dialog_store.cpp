#include "fonts/deco_dialog_data.h"
#include "fonts/font_names.h"
#include "paper/fields/controls.h"
#include "paper/fields/measured_value.h"
#include "resources/resource.h"

namespace kestrel {
namespace {

struct CheckedField {
  int edit;
  int minimum;
  int maximum;
  UINT belowId;
  UINT aboveId;
};

constexpr CheckedField kMagnifications[] = {
    {IDC_DECO_FONT_EXPAND_X, 1, 6, IDS_EXPAND_X_BELOW, IDS_EXPAND_X_ABOVE},
    {IDC_DECO_FONT_EXPAND_Y, 1, 6, IDS_EXPAND_Y_BELOW, IDS_EXPAND_Y_ABOVE},
};
// In dots; shown in the font's unit.
constexpr CheckedField kFreeSizes[] = {
    {IDC_DECO_FONT_WIDTH, 27, 550, IDS_FONT_WIDTH_BELOW, IDS_FONT_WIDTH_ABOVE},
    {IDC_DECO_FONT_HEIGHT, 50, 999, IDS_FONT_HEIGHT_BELOW, IDS_FONT_HEIGHT_ABOVE},
};

bool CheckField(DecoDialog& dialog, const CheckedField& field, int unit) {
  const RangeSide side = CheckFieldRange(dialog.fields(), field.edit, unit);
  if (side == kInside) return true;
  const int minimum = ConvertMeasure(field.minimum, kDot, unit, dialog.dpi);
  const int maximum = ConvertMeasure(field.maximum, kDot, unit, dialog.dpi);
  return ReportRange(dialog.window, field.edit, side, field.belowId, field.aboveId, minimum,
                     maximum, unit);
}

bool CheckSizes(DecoDialog& dialog) {
  if (dialog.font().Size == kSizeScalable) {
    const int unit = dialog.font().Unit;
    return CheckField(dialog, kFreeSizes[0], unit) && CheckField(dialog, kFreeSizes[1], unit);
  }
  return CheckField(dialog, kMagnifications[0], kPlain) &&
         CheckField(dialog, kMagnifications[1], kPlain);
}

void ReadRadios(HWND window, DecoFontInfo& font) {
  const auto value = [window](RadioGroup group) {
    return static_cast<uint16_t>(CheckedRadio(window, group));
  };
  font.Decorate = value(kDecorateRadios);
  font.Unit = value(kUnitRadios);
  font.Pitch = static_cast<uint16_t>(1 + value(kPitchRadios));
  font.Rotate = static_cast<uint16_t>(90 * value(kRotateRadios));
  font.ColorRevolution = value(kReverseRadios);
  font.Smoothing = value(kSmoothRadios);
  font.Bold = value(kBoldRadios);
  font.OutlineStyle = value(kOutlineRadios);
  font.Range = value(kSerialRadios);
  font.Mode = IsDlgButtonChecked(window, IDC_DECO_FONT_DECIMAL) == BST_CHECKED ? 0 : 1;
}

void ReadNumbers(HWND window, DecoFontInfo& font) {
  const auto position = [window](int spin) {
    return static_cast<int16_t>(SpinPosition(window, spin));
  };
  font.SizeX = position(IDC_DECO_FONT_WIDTH_SPIN);
  font.SizeY = position(IDC_DECO_FONT_HEIGHT_SPIN);
  font.ExpandX = position(IDC_DECO_FONT_EXPAND_X_SPIN);
  font.ExpandY = position(IDC_DECO_FONT_EXPAND_Y_SPIN);
  SerialValues serial = {};
  ReadSerialNumbers(window, kDecoSerial, serial);
  font.PrintNum = serial.numbers[0];
  font.Incriment = serial.numbers[1];
  font.ActivateData = serial.numbers[2];
  font.NegativeData = serial.numbers[3];
}

}  // namespace

bool StoreDecoFont(DecoDialog& dialog) {
  HWND window = dialog.window;
  FontStore& store = *dialog.store;
  WCHAR name[kFontNameLength];
  GetDlgItemTextW(window, IDC_DECO_FONT_NAME, name, kFontNameLength);
  const int index = store.FontEditMode == 1 ? store.FontEditIndex : -1;
  if (!CheckFontName(window, store, name, index, kDecorativeFont)) {
    MoveFocus(window, IDC_DECO_FONT_NAME);
    return false;
  }
  if (!CheckSizes(dialog) || !CheckSerialFields(dialog.fields(), kDecoSerial)) return false;

  FontRecord& work = dialog.work();
  work.FontKind = kDecorativeFont;
  PutName(work.FontName, name);
  PutName(work.Deco.DecoFontName, name);
  PutName(work.Deco.ResiFontName, dialog.row.ResiFontName);
  ReadRadios(window, work.Deco);
  ReadNumbers(window, work.Deco);
  return true;
}

}  // namespace kestrel
