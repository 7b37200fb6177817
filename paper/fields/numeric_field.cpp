#include "paper/fields/numeric_field.h"

#include <windows.h>
#include <commctrl.h>

#include <algorithm>

#include "paper/fields/controls.h"
#include "paper/fields/measured_value.h"
#include "sheets/messages.h"

namespace kestrel {
namespace {

constexpr int kFieldTextLength = 32;    // UTF-16 units of an edit's text with the terminator
constexpr int kFormattedLength = 1025;  // wsprintfW writes at most 1024 units and the terminator

const NumericField* FieldOfEdit(NumericFieldTable fields, int edit) {
  for (const NumericField& field : fields) {
    if (field.edit == edit) return &field;
  }
  return nullptr;
}

void ReadText(HWND dialog, int edit, WCHAR (&text)[kFieldTextLength]) {
  text[0] = 0;
  GetDlgItemTextW(dialog, edit, text, kFieldTextLength);
}

// Writes a value into an edit and moves the caret to its end, where typing continues.
void ShowValue(HWND dialog, int edit, int value, int unit) {
  WCHAR text[kMeasureTextLength];
  const int length = FormatMeasure(text, value, unit);
  SetDlgItemTextW(dialog, edit, text);
  SendDlgItemMessageW(dialog, edit, EM_SETSEL, static_cast<WPARAM>(length), length);
}

// The last number of a field within its range. It is stored with the edit: UDM_GETPOS32 does not
// return it, because an up-down with UDS_SETBUDDYINT reads the edit first.
void SetLastNumber(HWND dialog, int edit, int number) {
  SetWindowLongPtrW(GetDlgItem(dialog, edit), GWLP_USERDATA, number);
}
int LastNumber(HWND dialog, int edit) {
  return static_cast<int>(GetWindowLongPtrW(GetDlgItem(dialog, edit), GWLP_USERDATA));
}

void SetPosition(HWND dialog, int spin, int position) {
  SendDlgItemMessageW(dialog, spin, UDM_SETPOS32, 0, position);
}

// Converts a limit of a static range. A limit other than 0 does not become 0: a label without width
// would then be within its range.
int ConvertBound(int bound, int from, int to, int dpi) {
  const int converted = ConvertMeasure(bound, from, to, dpi);
  return converted == 0 && bound != 0 ? 1 : converted;
}

}  // namespace

int EditOfSpin(FieldDialog dialog, int spin) {
  for (const NumericField& field : dialog.fields) {
    if (field.spin == spin) return field.edit;
  }
  return 0;
}

void SetSpin(HWND dialog, int spin, int edit, int minimum, int maximum, int position, bool attach) {
  if (attach) {
    SendDlgItemMessageW(dialog, spin, UDM_SETBUDDY,
                        reinterpret_cast<WPARAM>(GetDlgItem(dialog, edit)), 0);
    SendDlgItemMessageW(dialog, spin, UDM_SETBASE, 10, 0);
  }
  SendDlgItemMessageW(dialog, spin, UDM_SETRANGE32, static_cast<WPARAM>(minimum), maximum);
  SetPosition(dialog, spin, position);
  SetLastNumber(dialog, edit, std::clamp(position, minimum, maximum));
}

void InitField(FieldDialog dialog, int edit, int minimum, int maximum, int value, int unit,
               bool attach) {
  const NumericField* field = FieldOfEdit(dialog.fields, edit);
  if (field == nullptr) return;
  if (value < minimum) value = minimum;
  SetSpin(dialog.window, field->spin, edit, minimum, maximum, value, attach);
  SendDlgItemMessageW(dialog.window, edit, EM_LIMITTEXT,
                      static_cast<WPARAM>(MeasureTextLimit(minimum, maximum, unit)), 0);
  ShowValue(dialog.window, edit, value, unit);
}

int ReadField(FieldDialog dialog, int edit, int unit) {
  if (dialog.fields.empty()) return 0;
  WCHAR text[kFieldTextLength];
  ReadText(dialog.window, edit, text);
  return ParseMeasure(text, DecimalsOf(unit));
}

void SpinRange(HWND dialog, int spin, int* minimum, int* maximum) {
  *minimum = 0;
  *maximum = 0;
  SendDlgItemMessageW(dialog, spin, UDM_GETRANGE32, reinterpret_cast<WPARAM>(minimum),
                      reinterpret_cast<LPARAM>(maximum));
}

int SpinPosition(HWND dialog, int spin) {
  return static_cast<int>(SendDlgItemMessageW(dialog, spin, UDM_GETPOS32, 0, 0));
}

RangeSide CheckFieldRange(FieldDialog dialog, int edit, int unit) {
  const NumericField* field = FieldOfEdit(dialog.fields, edit);
  if (field == nullptr) return kInside;
  int minimum, maximum;
  SpinRange(dialog.window, field->spin, &minimum, &maximum);
  const int value = ReadField(dialog, edit, unit);
  if (value < minimum) return kBelow;
  return value > maximum ? kAbove : kInside;
}

void SpinToEdit(FieldDialog dialog, int spin, int unit) {
  const int edit = EditOfSpin(dialog, spin);
  if (edit != 0) ShowValue(dialog.window, edit, SpinPosition(dialog.window, spin), unit);
}

bool StepField(FieldDialog dialog, int spin, int step, int unit) {
  if (EditOfSpin(dialog, spin) == 0) return false;
  // The up-down limits the position to its range.
  SetPosition(dialog.window, spin, SpinPosition(dialog.window, spin) + step);
  SpinToEdit(dialog, spin, unit);
  return true;
}

void ReformatField(FieldDialog dialog, int edit, int unit) {
  if (FieldOfEdit(dialog.fields, edit) == nullptr) return;
  ShowValue(dialog.window, edit, ReadField(dialog, edit, unit), unit);
}

void ChangeFieldUnit(FieldDialog dialog, int edit, int oldUnit, int newUnit, int dpi) {
  const NumericField* field = FieldOfEdit(dialog.fields, edit);
  if (field == nullptr) return;
  const int value = ConvertMeasure(ReadField(dialog, edit, oldUnit), oldUnit, newUnit, dpi);
  InitField(dialog, edit, ConvertBound(field->minimum, field->unit, newUnit, dpi),
            ConvertBound(field->maximum, field->unit, newUnit, dpi), value, newUnit, false);
}

bool IsMeasureTyping(const WCHAR* text, int unit) {
  bool started = false;  // after the first digit or point
  bool pointAllowed = unit == kMillimetre || unit == kInch;
  for (; *text != 0; ++text) {
    if (*text == TEXT(' ') && !started) continue;
    if (*text == TEXT('.') && pointAllowed) {
      pointAllowed = false;
    } else if (*text < TEXT('0') || *text > TEXT('9')) {
      return false;
    }
    started = true;
  }
  return true;
}

bool IsPlainTyping(const WCHAR* text) {
  for (; *text != 0; ++text) {
    if (*text != TEXT('-') && (*text < TEXT('0') || *text > TEXT('9'))) return false;
  }
  return true;
}

bool OnMeasureTyped(FieldDialog dialog, int edit, int unit) {
  const NumericField* field = FieldOfEdit(dialog.fields, edit);
  if (field == nullptr) return false;
  WCHAR text[kFieldTextLength];
  ReadText(dialog.window, edit, text);
  if (!IsMeasureTyping(text, unit)) {
    SpinToEdit(dialog, field->spin, unit);
    return false;
  }
  SetPosition(dialog.window, field->spin, ParseMeasure(text, DecimalsOf(unit)));
  return true;
}

TypedNumber OnPlainTyped(FieldDialog dialog, int edit) {
  TypedNumber typed = {};
  const NumericField* field = FieldOfEdit(dialog.fields, edit);
  typed.isRejected = field == nullptr;
  if (field == nullptr) return typed;
  WCHAR text[kFieldTextLength];
  ReadText(dialog.window, edit, text);
  typed.isRejected = !IsPlainTyping(text);
  if (typed.isRejected) {
    ShowValue(dialog.window, edit, LastNumber(dialog.window, edit), kPlain);
    return typed;
  }
  typed.isNumber = ParseWholeNumber(text, &typed.value);
  int minimum, maximum;
  SpinRange(dialog.window, field->spin, &minimum, &maximum);
  if (typed.isNumber && typed.value >= minimum && typed.value <= maximum) {
    SetLastNumber(dialog.window, edit, typed.value);
    // A query of the position makes the up-down adopt the text of its edit (UDS_SETBUDDYINT).
    SpinPosition(dialog.window, field->spin);
  }
  return typed;
}

void ShowBound(HWND dialog, UINT message, int bound, int unit) {
  WCHAR format[kMessageLength];
  LoadMessageText(message, format, kMessageLength);
  WCHAR number[kMeasureTextLength];
  FormatMeasure(number, bound, unit);
  WCHAR text[kFormattedLength];
  wsprintfW(text, format, number, UnitName(unit));
  ShowText(dialog, text, MB_ICONEXCLAMATION);
}

bool AcceptField(FieldDialog dialog, int edit, int minimum, int maximum, int unit, UINT belowId,
                 UINT aboveId) {
  const RangeSide side = CheckFieldRange(dialog, edit, unit);
  if (side != kInside) {
    const bool below = side == kBelow;
    ShowBound(dialog.window, below ? belowId : aboveId, below ? minimum : maximum, unit);
    MoveFocus(dialog.window, edit);
    SetWindowLongPtrW(dialog.window, DWLP_MSGRESULT, TRUE);
    return false;
  }
  const NumericField* field = FieldOfEdit(dialog.fields, edit);
  if (field != nullptr) SetPosition(dialog.window, field->spin, ReadField(dialog, edit, unit));
  return true;
}

}  // namespace kestrel
