// Edits paired with up-downs: ranges, texts, typing rules and range messages, for every dialog of
// the driver.
#pragma once

#include <windows.h>

#include <span>

namespace kestrel {

// One row of a NumericFieldTable: an edit, its up-down and the range that a change of units
// converts.
struct NumericField {
  int edit;
  int spin;
  int minimum;
  int maximum;
  int unit;  // of minimum and maximum; kPlain for a number without a unit
};
// Each dialog keeps its own rows beside itself.
using NumericFieldTable = std::span<const NumericField>;

// A dialog window and its fields, as every operation here needs both.
struct FieldDialog {
  HWND window;
  NumericFieldTable fields;
};

// The edit of an up-down; 0 when it is none of the dialog's.
int EditOfSpin(FieldDialog dialog, int spin);

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
// it. True when the up-down is one of the dialog's: the dialog then refuses the up-down's own step,
// so that nothing is ever pending between the two.
bool StepField(FieldDialog dialog, int spin, int step, int unit);
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
// The changed text of a plain field.
struct TypedNumber {
  bool isRejected;  // the text was replaced, or the dialog has no such field
  bool isNumber;    // the text is a whole number (ParseWholeNumber)
  int value;        // the number, which may be outside the field's range
};
// Handles a changed text of a plain field and returns the number in it. Rejects a text with
// anything but digits and "-" and replaces it by the field's last number within its range; the edit
// notifies that change before the function returns. The up-down adopts a number of the range. The
// text is checked before the up-down's position is queried, because the up-down reads the edit by
// rules of its own.
TypedNumber OnPlainTyped(FieldDialog dialog, int edit);

// A message over dialog that names a bound in a unit, and the unit where the text has a place for
// it.
void ShowBound(HWND dialog, UINT message, int bound, int unit);
// A field as OK takes it. Outside its range a message shows the bound that it misses, the focus
// moves to the field, the dialog's message result is TRUE and the answer false. Inside, the up-down
// gets the number, so that what was checked is what is stored.
bool AcceptField(FieldDialog dialog, int edit, int minimum, int maximum, int unit, UINT belowId,
                 UINT aboveId);

}  // namespace kestrel
