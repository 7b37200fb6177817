// The serial numbering group of both font dialogs: a switch, a number base and four numbers.
#pragma once

#include <windows.h>

#include <cstdint>

#include "fonts/font_record.h"
#include "paper/fields/help_text.h"
#include "paper/fields/numeric_field.h"
#include "paper/paper_info.h"

namespace kestrel {

struct NumberRange {
  int minimum;
  int maximum;
};

// The four numbers in the order of their fields.
enum SerialNumber : int { kSameIssue, kStep, kActiveDigits, kLowDigits, kSerialNumbers };
constexpr NumberRange kSerialRanges[kSerialNumbers] = {{1, 9999}, {-9999, 9999}, {1, 99}, {0, 99}};

constexpr NumericField SerialField(SerialNumber number, int edit, int spin) {
  return {edit, spin, kSerialRanges[number].minimum, kSerialRanges[number].maximum, kPlain};
}
constexpr HelpRow SerialHelp(SerialNumber number, int edit, int text) {
  return Ranged(edit, text, kHelpDotRange, kSerialRanges[number].minimum,
                kSerialRanges[number].maximum);
}

// The controls of the group in a dialog.
struct SerialControls {
  int on, off;
  int hexadecimal, decimal;
  NumericFieldTable fields;  // in the order of SerialNumber
};

// The members of a font that the group edits.
struct SerialNumbering {
  uint16_t& range;  // 1 on, 0 off
  uint16_t& mode;   // 1 hexadecimal, 0 decimal
  int16_t* numbers[kSerialNumbers];
};
inline SerialNumbering SerialNumberingOf(DecoFontInfo& font) {
  return {font.Range,
          font.Mode,
          {&font.PrintNum, &font.Incriment, &font.ActivateData, &font.NegativeData}};
}
inline SerialNumbering SerialNumberingOf(BarFontInfo& font) {
  return {font.Range,
          font.Mode,
          {&font.PrintNum, &font.Incriment, &font.ActiveData, &font.NegativeData}};
}

// Attaches the up-downs to their edits and shows the numbering.
void InitSerialFields(HWND dialog, const SerialControls& controls,
                      const SerialNumbering& numbering);
// Enables the mode radios and the four fields while serial numbering is on.
void EnableSerialFields(HWND dialog, const SerialControls& controls, bool on);
bool IsSerialField(const SerialControls& controls, int edit);
// Returns true when the four fields are in their ranges. Otherwise shows a message about the first
// one that is not and moves the focus to it.
bool CheckSerialFields(HWND dialog, const SerialControls& controls);
// Stores the numbering from the controls. Call it after CheckSerialFields, which sets the up-downs
// to the numbers that it checked.
void StoreSerialFields(HWND dialog, const SerialControls& controls,
                       const SerialNumbering& numbering);

}  // namespace kestrel
