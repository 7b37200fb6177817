// What the files of the registration dialog share. Only they include this.
#pragma once

#include <windows.h>

#include "paper/fields/numeric_field.h"
#include "resources/resource.h"
#include "sheets/driver_ui_data.h"

namespace kestrel {

constexpr NumericField Measured(int edit, int spin, SizeLimit range) {
  return {edit, spin, range.minimum, range.maximum, kMillimetre};
}
inline constexpr NumericField kRegisterFields[] = {
    Measured(IDC_PAPER_REGISTER_WIDTH, IDC_PAPER_REGISTER_WIDTH_SPIN, kLabelWidths),
    Measured(IDC_PAPER_REGISTER_LENGTH, IDC_PAPER_REGISTER_LENGTH_SPIN, kLabelLengths),
    Measured(IDC_PAPER_REGISTER_GAP, IDC_PAPER_REGISTER_GAP_SPIN, kGaps),
    Measured(IDC_PAPER_REGISTER_PRINTABLE_LEFT, IDC_PAPER_REGISTER_PRINTABLE_LEFT_SPIN,
             {0, kLabelWidths.maximum}),
    Measured(IDC_PAPER_REGISTER_PRINTABLE_TOP, IDC_PAPER_REGISTER_PRINTABLE_TOP_SPIN,
             {0, kLabelLengths.maximum}),
    Measured(IDC_PAPER_REGISTER_PRINTABLE_WIDTH, IDC_PAPER_REGISTER_PRINTABLE_WIDTH_SPIN,
             kPrintableWidths),
    Measured(IDC_PAPER_REGISTER_PRINTABLE_HEIGHT, IDC_PAPER_REGISTER_PRINTABLE_HEIGHT_SPIN,
             kPrintableHeights),
};
inline FieldDialog RegisterFields(HWND dialog) { return {dialog, kRegisterFields}; }

// The number that a size field edits and the limit of that.
struct SizeField {
  int edit;
  int16_t PaperInfo::*size;
  SizeLimit PaperLimits::*limit;
};
inline constexpr SizeField kSizeFields[] = {
    {IDC_PAPER_REGISTER_WIDTH, &PaperInfo::LabelWidth, &PaperLimits::width},
    {IDC_PAPER_REGISTER_LENGTH, &PaperInfo::LabelHeight, &PaperLimits::length},
    {IDC_PAPER_REGISTER_GAP, &PaperInfo::GapSize, &PaperLimits::gap},
    {IDC_PAPER_REGISTER_PRINTABLE_LEFT, &PaperInfo::PrintableLeft, &PaperLimits::printableLeft},
    {IDC_PAPER_REGISTER_PRINTABLE_TOP, &PaperInfo::PrintableTop, &PaperLimits::printableTop},
    {IDC_PAPER_REGISTER_PRINTABLE_WIDTH, &PaperInfo::PrintableWidth, &PaperLimits::printableWidth},
    {IDC_PAPER_REGISTER_PRINTABLE_HEIGHT, &PaperInfo::PrintableHeight,
     &PaperLimits::printableHeight},
};

// ---- register_dialog_fill.cpp ----

// Makes the working copy and its limits, and fills the controls.
void OpenPaperDialog(HWND dialog, DriverUiData& session);
// The unit buttons were clicked: converts working copy, limits and fields when the unit changed.
void OnUnitClicked(HWND dialog, DriverUiData& session);
// Lets a registered paper be chosen and copies it into the working copy and the controls.
void CopyReferencePaper(HWND dialog, DriverUiData& session);
// What the picture box shows has changed.
void RepaintPicture(HWND dialog);
// The darkness level is offered unless the grade follows the printer's setting.
void EnableDarknessList(HWND dialog, const DriverUiData& session);

// ---- register_dialog_store.cpp ----

// Checks the typed sizes and reads everything but the name into the working copy, with the
// printable area that follows. False after a refusal, whose message was shown.
bool ReadPaper(HWND dialog, DriverUiData& session);
// All that OK does: false when the dialog stays open.
bool StorePaper(HWND dialog, DriverUiData& session);

}  // namespace kestrel
