// The controls of the decorative font dialog: their ids and ranges, and the functions that show a
// font in them and store a font from them. Only the dialog includes this file.
#pragma once

#include <windows.h>

#include <span>

#include "fonts/font_record.h"
#include "fonts/serial_fields.h"
#include "paper/fields/open_list_state.h"
#include "resources/resource.h"

namespace kestrel {

constexpr int kSides = 2;  // of a size: 0 width, 1 height

constexpr NumberRange kMagnifications = {1, 6};
constexpr NumberRange kFreeSizes[kSides] = {{27, 550}, {50, 999}};  // dots

// A magnification has no unit, so that a change of units never converts its range here; OK checks
// it against kMagnifications.
inline constexpr NumericField kDecoFields[] = {
    {IDC_DECO_FONT_EXPAND_X, IDC_DECO_FONT_EXPAND_X_SPIN, 0, 12, kPlain},
    {IDC_DECO_FONT_EXPAND_Y, IDC_DECO_FONT_EXPAND_Y_SPIN, 0, 12, kPlain},
    {IDC_DECO_FONT_WIDTH, IDC_DECO_FONT_WIDTH_SPIN, kFreeSizes[0].minimum, kFreeSizes[0].maximum,
     kDot},
    {IDC_DECO_FONT_HEIGHT, IDC_DECO_FONT_HEIGHT_SPIN, kFreeSizes[1].minimum, kFreeSizes[1].maximum,
     kDot},
    SerialField(kSameIssue, IDC_DECO_FONT_PRINT_NUM, IDC_DECO_FONT_PRINT_NUM_SPIN),
    SerialField(kStep, IDC_DECO_FONT_INCREMENT, IDC_DECO_FONT_INCREMENT_SPIN),
    SerialField(kActiveDigits, IDC_DECO_FONT_ACTIVE_DIGITS, IDC_DECO_FONT_ACTIVE_DIGITS_SPIN),
    SerialField(kLowDigits, IDC_DECO_FONT_LOW_DIGITS, IDC_DECO_FONT_LOW_DIGITS_SPIN),
};
constexpr int kMagnificationEdits[] = {IDC_DECO_FONT_EXPAND_X, IDC_DECO_FONT_EXPAND_Y};
constexpr int kMagnificationSpins[] = {IDC_DECO_FONT_EXPAND_X_SPIN, IDC_DECO_FONT_EXPAND_Y_SPIN};
constexpr int kSizeEdits[] = {IDC_DECO_FONT_WIDTH, IDC_DECO_FONT_HEIGHT};
constexpr int kSizeSpins[] = {IDC_DECO_FONT_WIDTH_SPIN, IDC_DECO_FONT_HEIGHT_SPIN};
constexpr SerialControls kDecoSerial = {IDC_DECO_FONT_SERIAL_ON, IDC_DECO_FONT_SERIAL_OFF,
                                        IDC_DECO_FONT_HEXADECIMAL, IDC_DECO_FONT_DECIMAL,
                                        NumericFieldTable(kDecoFields).last(kSerialNumbers)};

// Radio buttons in the order of their values.
using RadioGroup = std::span<const int>;
constexpr int kDecorateRadios[] = {IDC_DECO_FONT_DECORATE_OFF, IDC_DECO_FONT_DECORATE_ON};
constexpr int kUnitRadios[] = {IDC_DECO_FONT_MM, IDC_DECO_FONT_INCH, IDC_DECO_FONT_DOT};
constexpr int kPitchRadios[] = {IDC_DECO_FONT_PITCH_FIXED, IDC_DECO_FONT_PITCH_PROPORTIONAL};
constexpr int kRotateRadios[] = {IDC_DECO_FONT_ROTATE_0, IDC_DECO_FONT_ROTATE_90,
                                 IDC_DECO_FONT_ROTATE_180, IDC_DECO_FONT_ROTATE_270};
constexpr int kReverseRadios[] = {IDC_DECO_FONT_REVERSE_OFF, IDC_DECO_FONT_REVERSE_ON};
constexpr int kSmoothRadios[] = {IDC_DECO_FONT_SMOOTH_OFF, IDC_DECO_FONT_SMOOTH_ON};
constexpr int kBoldRadios[] = {IDC_DECO_FONT_BOLD_OFF, IDC_DECO_FONT_BOLD_ON};
constexpr int kOutlineRadios[] = {
    IDC_DECO_FONT_OUTLINE_STANDARD,      IDC_DECO_FONT_OUTLINE_HOLLOW,
    IDC_DECO_FONT_OUTLINE_GRAY1,         IDC_DECO_FONT_OUTLINE_GRAY2,
    IDC_DECO_FONT_OUTLINE_GRAY3,         IDC_DECO_FONT_OUTLINE_SHADOW,
    IDC_DECO_FONT_OUTLINE_HOLLOW_SHADOW, IDC_DECO_FONT_OUTLINE_MIRROR,
    IDC_DECO_FONT_OUTLINE_ITALIC,        IDC_DECO_FONT_OUTLINE_HOLLOW_SHADOW_ITALIC};
constexpr int kSerialRadios[] = {IDC_DECO_FONT_SERIAL_OFF, IDC_DECO_FONT_SERIAL_ON};
// Returns the index of the checked radio button; the last index when none is checked.
int CheckedRadio(HWND dialog, RadioGroup group);

struct DecoDialog {
  FontStore& store;
  int dpi;
  HWND window;
  DecoFontInfo row;  // of the resident font: the sizes and styles that it supports
  OpenListState list = {};
  DecoFontInfo fontBefore = {};  // font and row at the time when the list was opened
  DecoFontInfo rowBefore = {};

  DecoFontInfo& font() { return store.WorkFont.Deco; }
  int16_t& size(int side) { return side == 0 ? font().SizeX : font().SizeY; }
  int16_t& magnification(int side) { return side == 0 ? font().ExpandX : font().ExpandY; }
  FieldDialog fields() const { return {window, kDecoFields}; }
};

// Fills the lists, sets the limits and shows the work font: the stored one, its copy or a new one,
// as FontEditMode and DecoReference of the store say.
void OpenDecoDialog(HWND window, DecoDialog& dialog);
// Bases the font on another resident font and takes over the defaults of its row.
void ChooseResidentFont(DecoDialog& dialog, const DecoFontInfo& row);
// Restores the font and the row that a choice in an open list (of fonts or sizes) replaced.
void RestoreFont(DecoDialog& dialog, int list);
// Sets Size, SizeX and SizeY from the selected cell and the magnifications. Does nothing for a row
// without cells.
void ComputeSelectedSize(DecoDialog& dialog);
// Sets every control from the font and the row. keepMagnifications leaves the name and the
// magnification fields unchanged while the user types into one of them.
void RefreshDecoDialog(DecoDialog& dialog, bool keepMagnifications = false);
void RedrawPreview(const DecoDialog& dialog);
// Builds the work font from the controls. Returns false after a message, with the focus on the
// field that failed, when the name or a number is invalid.
bool StoreDecoFont(HWND window, DecoDialog& dialog);

}  // namespace kestrel
