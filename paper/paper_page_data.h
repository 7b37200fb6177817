// What the files of the paper page share: its fields, filling it, and what its controls do. Only
// they include this.
#pragma once

#include <windows.h>

#include <cstdint>

#include "driver/settings_block.h"
#include "paper/fields/numeric_field.h"
#include "resources/resource.h"
#include "sheets/driver_ui_data.h"

namespace kestrel {

constexpr int16_t kEyeMarkSensor = 0;  // value of nSensor

// The range of an offset field, in dots.
struct SpinRangeRow {
  int edit;
  SizeLimit range;
};
inline constexpr SpinRangeRow SpinRangeTable[] = {
    {IDC_PAPER_VERT_BASE, {-300, 300}}, {IDC_PAPER_HORZ_BASE, {-300, 300}},
    {IDC_PAPER_CUT_OFFSET, {-99, 99}},  {IDC_PAPER_PEEL_OFFSET, {-40, 99}},
    {IDC_PAPER_TEAR_OFFSET, {-99, 99}}, {IDC_PAPER_PITCH_OFFSET, {-40, 99}},
};
constexpr SizeLimit OffsetRange(int edit) {
  for (const SpinRangeRow& row : SpinRangeTable) {
    if (row.edit == edit) return row.range;
  }
  return {};
}

// Which up-down goes with which edit. No field of the page changes its unit: the ranges are those
// above.
constexpr NumericField Offset(int edit, int spin) {
  return {edit, spin, OffsetRange(edit).minimum, OffsetRange(edit).maximum, kPlain};
}
inline constexpr NumericField kPaperFields[] = {
    {IDC_PAPER_VERT_BASE, IDC_PAPER_VERT_BASE_SPIN, -999, 999, kPlain},
    {IDC_PAPER_HORZ_BASE, IDC_PAPER_HORZ_BASE_SPIN, -800, 800, kPlain},
    Offset(IDC_PAPER_CUT_OFFSET, IDC_PAPER_CUT_OFFSET_SPIN),
    Offset(IDC_PAPER_PEEL_OFFSET, IDC_PAPER_PEEL_OFFSET_SPIN),
    Offset(IDC_PAPER_TEAR_OFFSET, IDC_PAPER_TEAR_OFFSET_SPIN),
    Offset(IDC_PAPER_PITCH_OFFSET, IDC_PAPER_PITCH_OFFSET_SPIN),
};
inline FieldDialog PaperFields(HWND page) { return {page, kPaperFields}; }

// An offset field with its up-down and the setting it edits.
struct OffsetField {
  int edit;
  int spin;
  int16_t PrivateDevMode::*setting;
};
inline constexpr OffsetField kOffsetFields[] = {
    {IDC_PAPER_VERT_BASE, IDC_PAPER_VERT_BASE_SPIN, &PrivateDevMode::nVertBase},
    {IDC_PAPER_HORZ_BASE, IDC_PAPER_HORZ_BASE_SPIN, &PrivateDevMode::nHorzBase},
    {IDC_PAPER_PEEL_OFFSET, IDC_PAPER_PEEL_OFFSET_SPIN, &PrivateDevMode::nPeelOffset},
    {IDC_PAPER_TEAR_OFFSET, IDC_PAPER_TEAR_OFFSET_SPIN, &PrivateDevMode::nTearOffset},
    {IDC_PAPER_PITCH_OFFSET, IDC_PAPER_PITCH_OFFSET_SPIN, &PrivateDevMode::nPitchOffset},
};
// Null for any other control.
const OffsetField* FindOffsetField(int edit);

// ---- paper_page_fill.cpp ----

// Fills every control from the working block; creating attaches the up-downs to their edits.
void FillPaperPage(HWND page, DriverUiData& session, bool creating);
// Lists the papers anew and selects an entry.
void ListPapers(HWND page, DriverUiData& session, int entry);
// Range, position and text of an offset field from its setting.
void FillOffset(HWND page, DriverUiData& session, const OffsetField& field, bool attach);
// The offset that a field shows, limited to its range; the stored one when the text is no whole
// number.
int16_t TypedOffset(HWND page, const PrivateDevMode& settings, const OffsetField& field);
// The preview copy follows the selected entry, and the picture box shows it.
void ShowSelectedPaper(HWND page, DriverUiData& session);
// The picture box shows something else.
void ShowPicture(HWND page, PaperPageState& state, PaperPicture picture);
// Chooses the picture of orientation and rotation.
void ChooseOrientationPicture(DriverUiData& session);

// ---- paper_page_actions.cpp ----

void RegisterPaper(HWND page, DriverUiData& session);
// Edits the selected paper.
void EditPaper(HWND page, DriverUiData& session);
void EditFreePaper(HWND page, DriverUiData& session);
void DeleteSelectedPaper(HWND page, DriverUiData& session);
void OnPaperSelected(HWND page, DriverUiData& session);
// Orientation and rotation as they are chosen.
void ReadOrientation(HWND page, PrivateDevMode& settings);
void OnOrientationClicked(HWND page, DriverUiData& session);
void OnOffsetNotified(HWND page, DriverUiData& session, const OffsetField& field, int notification);

}  // namespace kestrel
