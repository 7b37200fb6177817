// Edits paired with up-downs: ranges, texts, typing rules and range messages for every dialog of
// the driver.
#pragma once

#include <windows.h>

#include <span>

namespace kestrel {

// A row of a NumericFieldTable: an edit, its up-down and the range that ChangeFieldUnit converts.
struct NumericField {
  int edit;
  int spin;
  int minimum;
  int maximum;
  int unit;  // of minimum and maximum; kPlain for a number without a unit
};
// Each dialog defines its own table.
using NumericFieldTable = std::span<const NumericField>;

// A dialog window and its fields.
struct FieldDialog {
  HWND window;
  NumericFieldTable fields;
};

// Returns the edit of an up-down, or 0 when the fields do not include the up-down.
int EditOfSpin(FieldDialog dialog, int spin);

enum RangeSide : int { kInside = 0, kBelow = 1, kAbove = 2 };

// Sets range, position, text limit and text of a field. A value below the minimum becomes the
// minimum; a value above the maximum is shown, for the range check to find. attach makes the edit
// the buddy of the up-down. Ignores an edit outside the fields.
void InitField(FieldDialog dialog, int edit, int minimum, int maximum, int value, int unit,
               bool attach);
// Sets range and position of an up-down without changing the text of its edit.
void SetSpin(HWND dialog, int spin, int edit, int minimum, int maximum, int position, bool attach);
// Parses the text of an edit in a unit; returns 0 for a dialog without numeric fields.
int ReadField(FieldDialog dialog, int edit, int unit);
// Checks the text of a field against the current range of its up-down.
RangeSide CheckFieldRange(FieldDialog dialog, int edit, int unit);
// Queries the current range of an up-down.
void SpinRange(HWND dialog, int spin, int* minimum, int* maximum);
int SpinPosition(HWND dialog, int spin);
// Writes the position of an up-down into its edit.
void SpinToEdit(FieldDialog dialog, int spin, int unit);
// Handles UDN_DELTAPOS of a measured field: moves the position within its range and writes it into
// the edit. Returns true when the fields include the up-down; the dialog then has to reject the
// up-down's own step, which would write a number without a point.
bool StepField(FieldDialog dialog, int spin, int step, int unit);
// Parses the text of a field and rewrites it in the format of its unit.
void ReformatField(FieldDialog dialog, int edit, int unit);
// Converts the static range and the value of a field to another unit and initializes the field with
// them.
void ChangeFieldUnit(FieldDialog dialog, int edit, int oldUnit, int newUnit, int dpi);

// Checks the characters of a measured value: digits, one "." for millimetres and inches, spaces
// before the first of these.
bool IsMeasureTyping(const WCHAR* text, int unit);
// Checks the characters of a plain number: digits and "-".
bool IsPlainTyping(const WCHAR* text);
// Handles a changed text of a measured field: sets the position of the up-down. Returns false and
// writes the previous position into the edit when the text has a character that is not allowed.
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

// Shows a range message with its limit, and with the unit when the text has a placeholder for it.
void ShowBound(HWND dialog, UINT message, int bound, int unit);
// Checks a field on OK. Outside its range the function shows the message with the exceeded limit,
// moves the focus to the field, sets the dialog's message result to TRUE and returns false. Inside
// the range it sets the position of the up-down to the checked number and returns true.
bool AcceptField(FieldDialog dialog, int edit, int minimum, int maximum, int unit, UINT belowId,
                 UINT aboveId);

}  // namespace kestrel
