#include "fonts/serial_fields.h"

#include "resources/resource.h"

namespace kestrel {
namespace {

struct RangeMessages {
  UINT below;
  UINT above;
};
constexpr RangeMessages kMessages[kSerialNumbers] = {
    {IDS_PRINT_NUM_BELOW, IDS_PRINT_NUM_ABOVE},
    {IDS_INCREMENT_BELOW, IDS_INCREMENT_ABOVE},
    {IDS_ACTIVE_DIGITS_BELOW, IDS_ACTIVE_DIGITS_ABOVE},
    {IDS_LOW_DIGITS_BELOW, IDS_LOW_DIGITS_ABOVE},
};

void Enable(HWND dialog, int control, bool on) { EnableWindow(GetDlgItem(dialog, control), on); }

void CheckPair(HWND dialog, int first, int second, bool isFirst) {
  CheckDlgButton(dialog, first, isFirst ? BST_CHECKED : BST_UNCHECKED);
  CheckDlgButton(dialog, second, isFirst ? BST_UNCHECKED : BST_CHECKED);
}

uint16_t Checked(HWND dialog, int control) {
  return IsDlgButtonChecked(dialog, control) == BST_CHECKED ? 1 : 0;
}

}  // namespace

void InitSerialFields(HWND dialog, const SerialControls& controls,
                      const SerialNumbering& numbering) {
  CheckPair(dialog, controls.on, controls.off, numbering.range == 1);
  CheckPair(dialog, controls.hexadecimal, controls.decimal, numbering.mode == 1);
  int16_t* const* number = numbering.numbers;
  for (const NumericField& field : controls.fields) {
    SetSpin(dialog, field.spin, field.edit, field.minimum, field.maximum, **number++, true);
  }
  EnableSerialFields(dialog, controls, numbering.range == 1);
}

void EnableSerialFields(HWND dialog, const SerialControls& controls, bool on) {
  Enable(dialog, controls.hexadecimal, on);
  Enable(dialog, controls.decimal, on);
  for (const NumericField& field : controls.fields) {
    Enable(dialog, field.edit, on);
    Enable(dialog, field.spin, on);
  }
}

bool IsSerialField(const SerialControls& controls, int edit) {
  for (const NumericField& field : controls.fields) {
    if (field.edit == edit) return true;
  }
  return false;
}

bool CheckSerialFields(HWND dialog, const SerialControls& controls) {
  const RangeMessages* messages = kMessages;
  for (const NumericField& field : controls.fields) {
    if (!AcceptField({dialog, controls.fields}, field.edit, field.minimum, field.maximum, kPlain,
                     messages->below, messages->above)) {
      return false;
    }
    ++messages;
  }
  return true;
}

void StoreSerialFields(HWND dialog, const SerialControls& controls,
                       const SerialNumbering& numbering) {
  numbering.range = Checked(dialog, controls.on);
  numbering.mode = Checked(dialog, controls.hexadecimal);
  int16_t* const* number = numbering.numbers;
  for (const NumericField& field : controls.fields) {
    **number++ = static_cast<int16_t>(SpinPosition(dialog, field.spin));
  }
}

}  // namespace kestrel
