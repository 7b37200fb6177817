#include <algorithm>

#include "driver/text.h"
#include "fonts/deco_dialog_data.h"
#include "fonts/font_sizes.h"
#include "paper/fields/measured_value.h"
#include "resources/resource.h"

namespace kestrel {
namespace {

constexpr int kMagnificationEdits[] = {IDC_DECO_FONT_EXPAND_X, IDC_DECO_FONT_EXPAND_Y};
constexpr int kMagnificationSpins[] = {IDC_DECO_FONT_EXPAND_X_SPIN, IDC_DECO_FONT_EXPAND_Y_SPIN};
constexpr int kSizeEdits[] = {IDC_DECO_FONT_WIDTH, IDC_DECO_FONT_HEIGHT};
constexpr int kSizeSpins[] = {IDC_DECO_FONT_WIDTH_SPIN, IDC_DECO_FONT_HEIGHT_SPIN};

constexpr int kMaxMagnification = 6;
constexpr int kMagnificationTextLimit = 2;
constexpr WPARAM kSerialTextLimits[kSerialFieldCount] = {4, 5, 2, 2};
constexpr int kLargest = 32767;  // an up-down's position is kept to 16 bits

void Enable(HWND dialog, RadioGroup controls, bool on) {
  for (int control : controls) EnableWindow(GetDlgItem(dialog, control), on);
}

// A resident font that this printer does not have, as a backup of another may bring: what the font
// is stays settable, and its name and size stay until another is chosen.
DecoFontInfo RowOfUnknownFont(const DecoFontInfo& font, const DecoFontInfo& fallback) {
  DecoFontInfo row = fallback;
  CopyText(row.ResiFontName, font.ResiFontName);
  row.Pitch = font.Pitch == 2 ? 1 : 0;
  row.Smoothing = font.Smoothing != 0 ? kAlways : 0;
  row.Bold = font.Bold != 0 ? kUpToFive : 0;
  row.Size = font.Size;
  if ((font.Size & kSizeScalable) != 0) row.OutlineStyle = 0;
  return row;
}

// The range of the width (0) or the height (1) in the font's unit, and its value.
void FillSizeField(DecoDialog& dialog, int side) {
  constexpr int kFreeRange[2][2] = {{27, 550}, {50, 999}};  // dots
  const DecoFontInfo& font = dialog.font();
  const int value = side == 0 ? font.SizeX : font.SizeY;
  int minimum = 1;
  int maximum = std::clamp(value * kMaxMagnification, minimum, kLargest);
  if (dialog.scalable()) {
    minimum = ConvertMeasure(kFreeRange[side][0], kDot, font.Unit, dialog.dpi);
    maximum = ConvertMeasure(kFreeRange[side][1], kDot, font.Unit, dialog.dpi);
  }
  InitField(dialog.fields(), kSizeEdits[side], minimum, maximum, value, font.Unit, false);
}

// A magnification beyond its range stays to be seen, and to be found by the range check.
void ShowMagnifications(DecoDialog& dialog, bool attach) {
  const int values[] = {dialog.font().ExpandX, dialog.font().ExpandY};
  for (int side = 0; side < 2; ++side) {
    SetSpin(dialog.window, kMagnificationSpins[side], kMagnificationEdits[side], 1,
            kMaxMagnification, values[side], attach);
    if (SpinPosition(dialog.window, kMagnificationSpins[side]) == values[side]) continue;
    WCHAR text[kMeasureTextLength];
    FormatMeasure(text, values[side], kPlain);
    SetDlgItemTextW(dialog.window, kMagnificationEdits[side], text);
  }
}

void ShowRadios(DecoDialog& dialog) {
  const DecoFontInfo& font = dialog.font();
  HWND window = dialog.window;
  CheckRadio(window, kDecorateRadios, font.Decorate != 0);
  CheckRadio(window, kUnitRadios, std::min<int>(font.Unit, kDot));
  CheckRadio(window, kPitchRadios, font.Pitch == 2);
  CheckRadio(window, kRotateRadios, font.Rotate % 360 / 90);
  CheckRadio(window, kReverseRadios, font.ColorRevolution == 1);
  CheckRadio(window, kSmoothRadios, font.Smoothing == 1);
  CheckRadio(window, kBoldRadios, font.Bold == 1);
  const bool fixedCells = dialog.row.OutlineStyle == kFixedCells;
  CheckRadio(window, kOutlineRadios, fixedCells ? 0 : std::min<int>(font.OutlineStyle, 9));
  CheckRadio(window, kSerialRadios, font.Range == 1);
}

void EnableCapabilities(DecoDialog& dialog) {
  const DecoFontInfo& font = dialog.font();
  const DecoFontInfo& row = dialog.row;
  HWND window = dialog.window;
  if (row.Pitch == 1) {
    Enable(window, kPitchRadios, true);
  } else {
    CheckRadio(window, kPitchRadios, 0);
    Enable(window, kPitchRadios, false);
  }
  Enable(window, kReverseRadios, row.ColorRevolution == 1);
  if (row.Bold == 0) Enable(window, kBoldRadios, false);
  if (row.Bold == kUpToFive) Enable(window, kBoldRadios, font.ExpandX <= 5 && font.ExpandY <= 5);
  const bool smooth = row.Smoothing == kAlways ||
                      (row.Smoothing == kFromThree && font.ExpandX >= 3 && font.ExpandY >= 3);
  Enable(window, kSmoothRadios, smooth);
  const bool fixedCells = row.OutlineStyle == kFixedCells;
  Enable(window, kOutlineRadios, !fixedCells);
  Enable(window, kSizeEdits, !fixedCells);
  Enable(window, kSizeSpins, !fixedCells);
  Enable(window, kMagnificationEdits, fixedCells);
  Enable(window, kMagnificationSpins, fixedCells);
}

// The row of the font's resident font, selected in the list with the font's size; none is selected
// for one that the printer lacks. Whether the printer has it.
bool SelectResidentFont(DecoDialog& dialog) {
  const auto rows = ResidentFontTable(dialog.dpi);
  const int row = ResidentFontRow(rows, dialog.font().ResiFontName);
  dialog.row = row >= 0 ? rows[static_cast<size_t>(row)] : RowOfUnknownFont(dialog.font(), rows[0]);
  SendDlgItemMessageW(dialog.window, IDC_DECO_FONT_RESIDENT, CB_SETCURSEL, static_cast<WPARAM>(row),
                      0);
  FillSizeList(dialog, EntryOfCell(dialog.row.Size, dialog.font().Size));
  return row >= 0;
}

void StartNewFont(DecoDialog& dialog) {
  dialog.work() = {};
  dialog.row = ResidentFontTable(dialog.dpi)[0];
  TakeRowDefaults(dialog.font(), dialog.row, true);
  dialog.font().Range = 0;
  SendDlgItemMessageW(dialog.window, IDC_DECO_FONT_RESIDENT, CB_SETCURSEL, 0, 0);
  FillSizeList(dialog, 0);
  ComputeSelectedSize(dialog, 0);
}

}  // namespace

void CheckRadio(HWND dialog, RadioGroup group, int index) {
  for (size_t i = 0; i < group.size(); ++i) {
    CheckDlgButton(dialog, group[i], static_cast<int>(i) == index ? BST_CHECKED : BST_UNCHECKED);
  }
}

int CheckedRadio(HWND dialog, RadioGroup group) {
  const int last = static_cast<int>(group.size()) - 1;
  for (int i = 0; i < last; ++i) {
    if (IsDlgButtonChecked(dialog, group[static_cast<size_t>(i)]) == BST_CHECKED) return i;
  }
  return last;
}

void OpenDecoDialog(DecoDialog& dialog) {
  const InitialisingScope scope(dialog);
  HWND window = dialog.window;
  FontStore& store = *dialog.store;
  SetDlgItemTextW(window, IDC_HELP_TEXT, kFirstHelpFonts);
  for (const DecoFontInfo& row : ResidentFontTable(dialog.dpi)) {
    SendDlgItemMessageW(window, IDC_DECO_FONT_RESIDENT, CB_ADDSTRING, 0,
                        reinterpret_cast<LPARAM>(row.ResiFontName));
  }
  SendDlgItemMessageW(window, IDC_DECO_FONT_NAME, EM_LIMITTEXT, kFontNameLength - 1, 0);
  for (int edit : kMagnificationEdits) {
    SendDlgItemMessageW(window, edit, EM_LIMITTEXT, kMagnificationTextLimit, 0);
  }
  for (int field = 0; field < kSerialFieldCount; ++field) {
    SendDlgItemMessageW(window, kDecoSerial.edits[field], EM_LIMITTEXT, kSerialTextLimits[field],
                        0);
  }
  ShowMagnifications(dialog, true);
  for (int side = 0; side < 2; ++side) {
    SetSpin(window, kSizeSpins[side], kSizeEdits[side], 1, 1, 1, true);
  }

  const bool change = store.FontEditMode == 1;
  if (change || store.DecoReference) {
    const bool known = SelectResidentFont(dialog);
    if (change && known && !dialog.scalable()) {
      ComputeSelectedSize(dialog, SelectedSizeEntry(dialog));
    }
    if (!change) {
      dialog.work().FontName[0] = 0;
      dialog.font().DecoFontName[0] = 0;
    }
    // A foreign record may have both off, which no font can keep.
    if (dialog.font().Decorate == 0 && dialog.font().Range != 1) dialog.font().Decorate = 1;
  } else {
    StartNewFont(dialog);
  }
  SetWindowTextW(window, change ? TEXT("装飾フォントの変更") : TEXT("装飾フォントの登録"));
  RefreshDecoDialog(dialog);

  const DecoFontInfo& font = dialog.font();
  FillSerialFields(
      window, kDecoSerial,
      {font.Mode, {font.PrintNum, font.Incriment, font.ActivateData, font.NegativeData}});
  EnableSerialFields(window, kDecoSerial, font.Range == 1);
}

void FillSizeList(DecoDialog& dialog, int entry) {
  SendDlgItemMessageW(dialog.window, IDC_DECO_FONT_SIZE, CB_RESETCONTENT, 0, 0);
  for (int i = 0;; ++i) {
    const FontCell* cell = CellAt(dialog.row.Size, i);
    if (cell == nullptr) break;
    SendDlgItemMessageW(dialog.window, IDC_DECO_FONT_SIZE, CB_ADDSTRING, 0,
                        reinterpret_cast<LPARAM>(cell->label));
  }
  SendDlgItemMessageW(dialog.window, IDC_DECO_FONT_SIZE, CB_SETCURSEL, static_cast<WPARAM>(entry),
                      0);
}

int SelectedSizeEntry(const DecoDialog& dialog) {
  const LRESULT entry = SendDlgItemMessageW(dialog.window, IDC_DECO_FONT_SIZE, CB_GETCURSEL, 0, 0);
  return std::max(static_cast<int>(entry), 0);
}

void ComputeSelectedSize(DecoDialog& dialog, int entry) {
  const FontCell* cell = CellAt(dialog.row.Size, entry);
  if (cell != nullptr) ComputeFontSize(dialog.font(), cell->code, dialog.dpi);
}

void RefreshDecoDialog(DecoDialog& dialog, bool keepMagnifications) {
  const InitialisingScope scope(dialog);
  const DecoFontInfo& font = dialog.font();
  HWND window = dialog.window;
  if (!keepMagnifications) {
    SetDlgItemTextW(window, IDC_DECO_FONT_NAME, font.DecoFontName);
    ShowMagnifications(dialog, false);
  }
  ShowRadios(dialog);
  EnableWindow(GetDlgItem(window, IDC_DECO_FONT_DECORATE_OFF), font.Range == 1);
  EnableWindow(GetDlgItem(window, IDC_DECO_FONT_SERIAL_OFF), font.Decorate == 1);
  FillSizeField(dialog, 0);
  FillSizeField(dialog, 1);

  const bool decorate = font.Decorate != 0;
  EnableWindow(GetDlgItem(window, IDC_DECO_FONT_SIZE), decorate);
  Enable(window, kUnitRadios, decorate);
  Enable(window, kRotateRadios, decorate);
  if (decorate) {
    EnableCapabilities(dialog);
    return;
  }
  for (RadioGroup group : {kPitchRadios, kReverseRadios, kSmoothRadios, kBoldRadios, kOutlineRadios,
                           RadioGroup(kMagnificationEdits), RadioGroup(kMagnificationSpins),
                           RadioGroup(kSizeEdits), RadioGroup(kSizeSpins)}) {
    Enable(window, group, false);
  }
}

void RedrawPreview(const DecoDialog& dialog) {
  InvalidateRect(GetDlgItem(dialog.window, IDC_DECO_FONT_PREVIEW), nullptr, TRUE);
}

}  // namespace kestrel
