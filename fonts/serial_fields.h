// The serial-numbering group that both font dialogs show: a mode and four numbers.
#pragma once

#include <windows.h>

#include <cstdint>

#include "paper/fields/numeric_field.h"

namespace kestrel {

constexpr int kSerialFieldCount =
    4;  // same-issue count, step, digits taking part, low-order digits left out

// The controls of the group in one dialog.
struct SerialControls {
  int on, off;
  int hexadecimal, decimal;
  int edits[kSerialFieldCount];
  int spins[kSerialFieldCount];
};

struct SerialValues {
  uint16_t mode;  // 1 hexadecimal
  int16_t numbers[kSerialFieldCount];
};

// Ranges and values of the four fields; joins the up-downs to their edits.
void FillSerialFields(HWND dialog, const SerialControls& controls, const SerialValues& values);
// The mode radios and the four fields can be used only while serial numbering is on.
void EnableSerialFields(HWND dialog, const SerialControls& controls, bool on);
// The field of an edit, -1 when the control is none of them.
int SerialFieldOf(const SerialControls& controls, int edit);
// Whether the four fields are in their ranges; the first that is not is reported and gets the
// focus.
bool CheckSerialFields(FieldDialog dialog, const SerialControls& controls);
// The four numbers as their up-downs hold them. Leaves the mode.
void ReadSerialNumbers(HWND dialog, const SerialControls& controls, SerialValues& values);

}  // namespace kestrel
