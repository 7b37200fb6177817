// Edits paired with up-downs: ranges, texts, typing rules and range messages, for every dialog of
// the driver.
#pragma once

#include <windows.h>

#include <cstdint>
#include <span>

namespace kestrel {

// One row of a NumericFieldTable: an edit, its up-down and its static range.
struct NumericField {
  uint32_t edit;
  uint32_t spin;
  uint16_t measured;  // 1: a measured value, 0: a plain number
  uint16_t reserved;
  int16_t minimum;
  int16_t maximum;
  uint16_t unit;  // of minimum and maximum
};

// The rows of a dialog (by template id); empty for a dialog without numeric fields.
std::span<const NumericField> NumericFieldTable(int dialogId);

// A dialog window and its template id, as every operation here needs both.
struct FieldDialog {
  HWND window;
  int id;
};

enum RangeSide : int { kInside = 0, kBelow = 1, kAbove = 2 };

// Sets range, position (raised to the minimum), text limit and text of a field; attach joins the
// up-down to the edit.
void InitField(FieldDialog dialog, int edit, int minimum, int maximum, int value, int unit,
               bool attach);
// Sets range and position of an up-down alone; the edit's text is not touched.
void SetSpin(HWND dialog, int spin, int edit, int minimum, int maximum, int position, bool attach);
// The field's text read in a unit; 0 for a dialog without numeric fields.
int ReadField(FieldDialog dialog, int edit, int unit);
// The field's text against the up-down's current range.
RangeSide CheckFieldRange(FieldDialog dialog, int edit, int unit);
// Current range and position of an up-down.
void SpinRange(HWND dialog, int spin, int* minimum, int* maximum);
int SpinPosition(HWND dialog, int spin);
// The edit shows the up-down's position in a unit.
void SpinToEdit(FieldDialog dialog, int spin, int unit);
// An arrow of a measured field was pressed: the up-down steps within its range and the edit shows
// it. The dialog refuses the up-down's own step then, so that nothing is ever pending between them.
void StepField(FieldDialog dialog, int spin, int step, int unit);
// The edit shows its own value anew.
void ReformatField(FieldDialog dialog, int edit, int unit);
// Changes a field from a unit to another: converts its static range and its value and fills it
// again.
void ChangeFieldUnit(FieldDialog dialog, int edit, int oldUnit, int newUnit, int dpi);

// Typing rules, over plain text.
bool IsMeasureTyping(const WCHAR* text, int unit);
bool IsPlainTyping(const WCHAR* text);
// A measured field's text changed: false and the last good text when a character is not allowed,
// else the up-down follows.
bool OnMeasureTyped(FieldDialog dialog, int edit, int unit);
// A plain number's text changed: false and the up-down's position again when a character is not
// allowed.
bool OnPlainTyped(FieldDialog dialog, int edit);

// The range message of a field found outside its range: shows it, moves the focus to the field,
// sets the dialog's message result to TRUE. Always answers false (not valid).
bool ReportRange(HWND dialog, int edit, RangeSide side, UINT belowId, UINT aboveId, int minimum,
                 int maximum, int unit);

// Shrinks a control to nothing at its place and disables it.
void HideControl(HWND dialog, int control);

// Disables the dialog's LockedControlList when there is no permission to change settings.
void LockControls(HWND dialog, int dialogId, bool permission);

}  // namespace kestrel
