#include "fonts/deco_controls.h"

#include <algorithm>

#include "driver/text.h"
#include "fonts/font_names.h"
#include "fonts/font_sizes.h"
#include "fonts/resident_fonts.h"
#include "paper/fields/measured_value.h"
#include "sheets/dialog_handlers.h"

namespace kestrel {

// ---- showing the font ----

namespace {

constexpr int kMagnificationTextLimit = 2;
constexpr int kSerialTextLimits[kSerialNumbers] = {4, 5, 2, 2};
constexpr int kMaxSpinPosition = 32767;  // an up-down stores its position in 16 bits

void Enable(HWND window, RadioGroup controls, bool on) {
  for (int control : controls) EnableWindow(GetDlgItem(window, control), on);
}

void CheckRadio(HWND dialog, RadioGroup group, int index) {
  for (int radio : group) {
    CheckDlgButton(dialog, radio, index-- == 0 ? BST_CHECKED : BST_UNCHECKED);
  }
}

void LimitText(HWND window, int edit, int units) {
  SendDlgItemMessageW(window, edit, EM_LIMITTEXT, static_cast<WPARAM>(units), 0);
}

// Returns a row for a resident font that this printer lacks; a backup of another printer may name
// one. The row supports the styles that the font already has, and its name and size, so that the
// font does not change until the user chooses another resident font.
DecoFontInfo FallbackFontInfo(const DecoFontInfo& font, const DecoFontInfo& base) {
  DecoFontInfo row = base;
  CopyText(row.ResiFontName, font.ResiFontName);
  row.Pitch = font.Pitch == 2 ? 1 : 0;
  row.Smoothing = font.Smoothing != 0 ? kAlways : 0;
  row.Bold = font.Bold != 0 ? kUpToFive : 0;
  row.Size = font.Size;
  if ((font.Size & kSizeScalable) != 0) row.OutlineStyle = 0;
  return row;
}

// Fills the size list with the cells of the row and selects an entry.
void FillSizeList(DecoDialog& dialog, int entry) {
  const auto send = [&](UINT message, int number, const WCHAR* text) {
    SendDlgItemMessageW(dialog.window, IDC_DECO_FONT_SIZE, message, static_cast<WPARAM>(number),
                        reinterpret_cast<LPARAM>(text));
  };
  send(CB_RESETCONTENT, 0, nullptr);
  for (int i = 0; const FontCell* cell = CellAt(dialog.row.Size, i); ++i) {
    send(CB_ADDSTRING, 0, cell->label);
  }
  send(CB_SETCURSEL, entry, nullptr);
}

// Shows a width or height and sets its range, both in the font's unit.
void FillSizeField(DecoDialog& dialog, int side) {
  const int unit = dialog.font().Unit;
  const int value = dialog.size(side);
  int minimum = 1;
  int maximum = std::clamp(value * kMagnifications.maximum, minimum, kMaxSpinPosition);
  if ((dialog.row.Size & kSizeScalable) != 0) {
    minimum = ConvertMeasure(kFreeSizes[side].minimum, kDot, unit, dialog.dpi);
    maximum = ConvertMeasure(kFreeSizes[side].maximum, kDot, unit, dialog.dpi);
  }
  InitField(dialog.fields(), kSizeEdits[side], minimum, maximum, value, unit, false);
}

// Shows a magnification outside its range unchanged, so that the range check at OK reports it.
void ShowMagnifications(DecoDialog& dialog, bool attach) {
  for (int side = 0; side < kSides; ++side) {
    const int value = dialog.magnification(side);
    SetSpin(dialog.window, kMagnificationSpins[side], kMagnificationEdits[side],
            kMagnifications.minimum, kMagnifications.maximum, value, attach);
    if (SpinPosition(dialog.window, kMagnificationSpins[side]) == value) continue;
    WCHAR text[kMeasureTextLength];
    FormatMeasure(text, value, kPlain);
    SetDlgItemTextW(dialog.window, kMagnificationEdits[side], text);
  }
}

void ShowRadios(HWND window, const DecoFontInfo& font, bool fixedCells) {
  CheckRadio(window, kDecorateRadios, font.Decorate != 0);
  CheckRadio(window, kUnitRadios, std::min<int>(font.Unit, kDot));
  CheckRadio(window, kPitchRadios, font.Pitch == 2);
  CheckRadio(window, kRotateRadios, font.Rotate % 360 / 90);
  CheckRadio(window, kReverseRadios, font.ColorRevolution == 1);
  CheckRadio(window, kSmoothRadios, font.Smoothing == 1);
  CheckRadio(window, kBoldRadios, font.Bold == 1);
  CheckRadio(window, kOutlineRadios, fixedCells ? 0 : std::min<int>(font.OutlineStyle, 9));
  CheckRadio(window, kSerialRadios, font.Range == 1);
}

void EnableControls(HWND window, const DecoFontInfo& font, const SupportedStyles& styles) {
  EnableWindow(GetDlgItem(window, IDC_DECO_FONT_DECORATE_OFF), font.Range == 1);
  EnableWindow(GetDlgItem(window, IDC_DECO_FONT_SERIAL_OFF), font.Decorate == 1);
  const bool decorate = font.Decorate != 0;
  EnableWindow(GetDlgItem(window, IDC_DECO_FONT_SIZE), decorate);
  Enable(window, kUnitRadios, decorate);
  Enable(window, kRotateRadios, decorate);
  Enable(window, kPitchRadios, decorate && styles.pitch);
  Enable(window, kReverseRadios, decorate && styles.reverse);
  Enable(window, kBoldRadios, decorate && styles.emphasis);
  Enable(window, kSmoothRadios, decorate && styles.smoothing);
  Enable(window, kMagnificationEdits, decorate && styles.fixedCells);
  Enable(window, kMagnificationSpins, decorate && styles.fixedCells);
  Enable(window, kOutlineRadios, decorate && !styles.fixedCells);
  Enable(window, kSizeEdits, decorate && !styles.fixedCells);
  Enable(window, kSizeSpins, decorate && !styles.fixedCells);
}

// Selects the font's resident font and its size in their lists and sets the dialog's row. Returns
// false, with no resident font selected, when the printer lacks the resident font.
bool SelectResidentFont(DecoDialog& dialog) {
  const auto rows = ResidentFontTable(dialog.dpi);
  const int row = FindResidentFont(rows, dialog.font().ResiFontName);
  dialog.row = row >= 0 ? rows[static_cast<size_t>(row)] : FallbackFontInfo(dialog.font(), rows[0]);
  SendDlgItemMessageW(dialog.window, IDC_DECO_FONT_RESIDENT, CB_SETCURSEL, static_cast<WPARAM>(row),
                      0);
  FillSizeList(dialog, FindCellEntry(dialog.row.Size, dialog.font().Size));
  return row >= 0;
}

void OpenStoredFont(DecoDialog& dialog) {
  DecoFontInfo& font = dialog.font();
  const bool known = SelectResidentFont(dialog);
  const bool change = dialog.store.FontEditMode == kChangeFont;
  // A copy keeps its size unless the resident font does not support it: no field would check it.
  if (known && (change || !IsSizeSupported(dialog.row, font.Size))) ComputeSelectedSize(dialog);
  if (!change) CopyText(font.DecoFontName, TEXT(""));
  // A record from another source may have both off; a font needs at least one of them.
  if (font.Decorate == 0 && font.Range != 1) font.Decorate = 1;
}

void StartNewFont(DecoDialog& dialog) {
  dialog.store.WorkFont = {};
  dialog.row = ResidentFontTable(dialog.dpi)[0];
  ApplyRowDefaults(dialog.font(), dialog.row, true);
  dialog.font().Range = 0;
  SendDlgItemMessageW(dialog.window, IDC_DECO_FONT_RESIDENT, CB_SETCURSEL, 0, 0);
  FillSizeList(dialog, 0);
  ComputeSelectedSize(dialog);
}

}  // namespace

void OpenDecoDialog(HWND window, DecoDialog& dialog) {
  dialog.window = window;
  SetDlgItemTextW(window, IDC_HELP_TEXT, kFirstHelpFonts);
  for (const DecoFontInfo& row : ResidentFontTable(dialog.dpi)) {
    SendDlgItemMessageW(window, IDC_DECO_FONT_RESIDENT, CB_ADDSTRING, 0,
                        reinterpret_cast<LPARAM>(row.ResiFontName));
  }
  LimitText(window, IDC_DECO_FONT_NAME, kFontNameLength - 1);
  for (int edit : kMagnificationEdits) LimitText(window, edit, kMagnificationTextLimit);
  const int* limit = kSerialTextLimits;
  for (const NumericField& field : kDecoSerial.fields) LimitText(window, field.edit, *limit++);
  ShowMagnifications(dialog, true);
  for (int side = 0; side < kSides; ++side) {
    SetSpin(window, kSizeSpins[side], kSizeEdits[side], 1, 1, 1, true);
  }

  const bool change = dialog.store.FontEditMode == kChangeFont;
  SetWindowTextW(window, change ? TEXT("装飾フォントの変更") : TEXT("装飾フォントの登録"));
  if (change || dialog.store.DecoReference) {
    OpenStoredFont(dialog);
  } else {
    StartNewFont(dialog);
  }
  RefreshDecoDialog(dialog);
  InitSerialFields(window, kDecoSerial, SerialNumberingOf(dialog.font()));
}

void ChooseResidentFont(DecoDialog& dialog, const DecoFontInfo& row) {
  dialog.row = row;
  ApplyRowDefaults(dialog.font(), row, false);
  FillSizeList(dialog, 0);
  RefreshDecoDialog(dialog);
}

void RestoreFont(DecoDialog& dialog, int list) {
  dialog.font() = dialog.fontBefore;
  dialog.row = dialog.rowBefore;
  if (list == IDC_DECO_FONT_RESIDENT) {
    FillSizeList(dialog, FindCellEntry(dialog.row.Size, dialog.font().Size));
  }
  RefreshDecoDialog(dialog);
}

void ComputeSelectedSize(DecoDialog& dialog) {
  const auto entry =
      static_cast<int>(SendDlgItemMessageW(dialog.window, IDC_DECO_FONT_SIZE, CB_GETCURSEL, 0, 0));
  const FontCell* cell = CellAt(dialog.row.Size, std::max(entry, 0));
  if (cell != nullptr) ComputeFontSize(dialog.font(), cell->code, dialog.dpi);
}

void RefreshDecoDialog(DecoDialog& dialog, bool keepMagnifications) {
  const SuppressCommands suppress(dialog.window);
  const DecoFontInfo& font = dialog.font();
  const SupportedStyles styles = StylesSupportedBy(dialog.row, font);
  if (!keepMagnifications) {
    SetDlgItemTextW(dialog.window, IDC_DECO_FONT_NAME, font.DecoFontName);
    ShowMagnifications(dialog, false);
  }
  ShowRadios(dialog.window, font, styles.fixedCells);
  if (font.Decorate != 0 && !styles.pitch) CheckRadio(dialog.window, kPitchRadios, 0);
  for (int side = 0; side < kSides; ++side) FillSizeField(dialog, side);
  EnableControls(dialog.window, font, styles);
  RedrawPreview(dialog);
}

void RedrawPreview(const DecoDialog& dialog) {
  InvalidateRect(GetDlgItem(dialog.window, IDC_DECO_FONT_PREVIEW), nullptr, TRUE);
}

// ---- storing the font ----

int CheckedRadio(HWND dialog, RadioGroup group) {
  const int last = static_cast<int>(group.size()) - 1;
  for (int i = 0; i < last; ++i) {
    if (IsDlgButtonChecked(dialog, group[static_cast<size_t>(i)]) == BST_CHECKED) return i;
  }
  return last;
}

namespace {

struct SizeMessages {
  UINT below, above;
};
constexpr SizeMessages kMagnificationMessages[kSides] = {{IDS_EXPAND_X_BELOW, IDS_EXPAND_X_ABOVE},
                                                         {IDS_EXPAND_Y_BELOW, IDS_EXPAND_Y_ABOVE}};
constexpr SizeMessages kFreeSizeMessages[kSides] = {{IDS_FONT_WIDTH_BELOW, IDS_FONT_WIDTH_ABOVE},
                                                    {IDS_FONT_HEIGHT_BELOW, IDS_FONT_HEIGHT_ABOVE}};

bool CheckMagnification(DecoDialog& dialog, int side) {
  const SizeMessages& messages = kMagnificationMessages[side];
  return AcceptField(dialog.fields(), kMagnificationEdits[side], kMagnifications.minimum,
                     kMagnifications.maximum, kPlain, messages.below, messages.above);
}

bool CheckFreeSize(DecoDialog& dialog, int side) {
  const int unit = dialog.font().Unit;
  const SizeMessages& messages = kFreeSizeMessages[side];
  return AcceptField(dialog.fields(), kSizeEdits[side],
                     ConvertMeasure(kFreeSizes[side].minimum, kDot, unit, dialog.dpi),
                     ConvertMeasure(kFreeSizes[side].maximum, kDot, unit, dialog.dpi), unit,
                     messages.below, messages.above);
}

bool CheckSizes(DecoDialog& dialog) {
  const bool free = dialog.font().Size == kSizeScalable;
  for (int side = 0; side < kSides; ++side) {
    if (!(free ? CheckFreeSize(dialog, side) : CheckMagnification(dialog, side))) return false;
  }
  return true;
}

void StoreRadios(HWND window, DecoFontInfo& font) {
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
}

}  // namespace

bool StoreDecoFont(HWND window, DecoDialog& dialog) {
  DecoFontInfo& font = dialog.font();
  WCHAR name[kFontNameLength];
  if (!ReadFontName(window, IDC_DECO_FONT_NAME, dialog.store, kDecorativeFont, name)) return false;
  if (!CheckSizes(dialog) || !CheckSerialFields(window, kDecoSerial)) return false;

  dialog.store.WorkFont.FontKind = kDecorativeFont;
  CopyText(dialog.store.WorkFont.FontName, name);
  CopyText(font.DecoFontName, name);
  CopyText(font.ResiFontName, dialog.row.ResiFontName);
  StoreRadios(window, font);
  for (int side = 0; side < kSides; ++side) {
    dialog.size(side) = static_cast<int16_t>(SpinPosition(window, kSizeSpins[side]));
    dialog.magnification(side) =
        static_cast<int16_t>(SpinPosition(window, kMagnificationSpins[side]));
  }
  StoreSerialFields(window, kDecoSerial, SerialNumberingOf(font));
  return true;
}

}  // namespace kestrel
