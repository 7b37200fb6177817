// The serial-numbering group that both font dialogs show: whether it is on, a mode and four
// numbers.
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

// The four numbers, in the order of their fields.
enum SerialNumber : int { kSameIssue, kStep, kActiveDigits, kLowDigits, kSerialNumbers };
constexpr NumberRange kSerialRanges[kSerialNumbers] = {{1, 9999}, {-9999, 9999}, {1, 99}, {0, 99}};

constexpr NumericField SerialField(SerialNumber number, int edit, int spin) {
  return {edit, spin, kSerialRanges[number].minimum, kSerialRanges[number].maximum, kPlain};
}
constexpr HelpRow SerialHelp(SerialNumber number, int edit, int text) {
  return Ranged(edit, text, kHelpDotRange, kSerialRanges[number].minimum,
                kSerialRanges[number].maximum);
}

// The controls of the group in one dialog.
struct SerialControls {
  int on, off;
  int hexadecimal, decimal;
  NumericFieldTable fields;  // one a number
};

// What the group edits of a font.
struct SerialNumbering {
  uint16_t& range;  // 1 on
  uint16_t& mode;   // 1 hexadecimal
  int16_t* numbers[kSerialNumbers];
};
inline SerialNumbering SerialOf(DecoFontInfo& font) {
  return {font.Range,
          font.Mode,
          {&font.PrintNum, &font.Incriment, &font.ActivateData, &font.NegativeData}};
}
inline SerialNumbering SerialOf(BarFontInfo& font) {
  return {font.Range,
          font.Mode,
          {&font.PrintNum, &font.Incriment, &font.ActiveData, &font.NegativeData}};
}

// Joins the up-downs to their edits and shows the numbering.
void OpenSerialFields(HWND dialog, const SerialControls& controls,
                      const SerialNumbering& numbering);
// The mode radios and the four fields can be used only while serial numbering is on.
void EnableSerialFields(HWND dialog, const SerialControls& controls, bool on);
bool IsSerialField(const SerialControls& controls, int edit);
// Whether the four fields are in their ranges; the first that is not is reported and gets the
// focus.
bool CheckSerialFields(HWND dialog, const SerialControls& controls);
// Takes the numbering from the controls; the numbers as CheckSerialFields has approved them.
void StoreSerialFields(HWND dialog, const SerialControls& controls,
                       const SerialNumbering& numbering);

}  // namespace kestrel
