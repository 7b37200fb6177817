#include "fonts/serial_fields.h"

#include "paper/paper_info.h"
#include "resources/resource.h"

namespace kestrel {
namespace {

struct SerialRange {
  int minimum;
  int maximum;
  UINT belowId;
  UINT aboveId;
};

constexpr SerialRange kRanges[kSerialFieldCount] = {
    {1, 9999, IDS_PRINT_NUM_BELOW, IDS_PRINT_NUM_ABOVE},
    {-9999, 9999, IDS_INCREMENT_BELOW, IDS_INCREMENT_ABOVE},
    {1, 99, IDS_ACTIVE_DIGITS_BELOW, IDS_ACTIVE_DIGITS_ABOVE},
    {0, 99, IDS_LOW_DIGITS_BELOW, IDS_LOW_DIGITS_ABOVE},
};

void Enable(HWND dialog, int control, bool on) { EnableWindow(GetDlgItem(dialog, control), on); }

}  // namespace

void FillSerialFields(HWND dialog, const SerialControls& controls, const SerialValues& values) {
  for (int i = 0; i < kSerialFieldCount; ++i) {
    SetSpin(dialog, controls.spins[i], controls.edits[i], kRanges[i].minimum, kRanges[i].maximum,
            values.numbers[i], true);
  }
  CheckDlgButton(dialog, controls.hexadecimal, values.mode == 1 ? BST_CHECKED : BST_UNCHECKED);
  CheckDlgButton(dialog, controls.decimal, values.mode == 1 ? BST_UNCHECKED : BST_CHECKED);
}

void EnableSerialFields(HWND dialog, const SerialControls& controls, bool on) {
  Enable(dialog, controls.hexadecimal, on);
  Enable(dialog, controls.decimal, on);
  for (int i = 0; i < kSerialFieldCount; ++i) {
    Enable(dialog, controls.edits[i], on);
    Enable(dialog, controls.spins[i], on);
  }
}

int SerialFieldOf(const SerialControls& controls, int edit) {
  for (int i = 0; i < kSerialFieldCount; ++i) {
    if (controls.edits[i] == edit) return i;
  }
  return -1;
}

bool CheckSerialFields(FieldDialog dialog, const SerialControls& controls) {
  for (int i = 0; i < kSerialFieldCount; ++i) {
    const RangeSide side = CheckFieldRange(dialog, controls.edits[i], kPlain);
    if (side == kInside) continue;
    const SerialRange& range = kRanges[i];
    return ReportRange(dialog.window, controls.edits[i], side, range.belowId, range.aboveId,
                       range.minimum, range.maximum, kPlain);
  }
  return true;
}

void ReadSerialNumbers(HWND dialog, const SerialControls& controls, SerialValues& values) {
  for (int i = 0; i < kSerialFieldCount; ++i) {
    values.numbers[i] = static_cast<int16_t>(SpinPosition(dialog, controls.spins[i]));
  }
}

}  // namespace kestrel
