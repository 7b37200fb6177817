#include "paper/fields/option_table.h"

namespace kestrel {

int OptionIndex(const OptionTable& table, int value) {
  for (int index = 0; index < table.count; ++index) {
    if (table.entries[index].value == value) return index;
  }
  return 0;
}

int16_t OptionValue(const OptionTable& table, int index) {
  return table.entries[index >= 0 && index < table.count ? index : 0].value;
}

void FillOptionList(HWND dialog, int list, const OptionTable& table, int value) {
  SendDlgItemMessageW(dialog, list, CB_RESETCONTENT, 0, 0);
  for (int index = 0; index < table.count; ++index) {
    SendDlgItemMessageW(dialog, list, CB_ADDSTRING, 0,
                        reinterpret_cast<LPARAM>(table.entries[index].text));
  }
  SelectOption(dialog, list, table, value);
}

void SelectOption(HWND dialog, int list, const OptionTable& table, int value) {
  SendDlgItemMessageW(dialog, list, CB_SETCURSEL, static_cast<WPARAM>(OptionIndex(table, value)),
                      0);
}

int16_t SelectedOption(HWND dialog, int list, const OptionTable& table) {
  return OptionValue(table,
                     static_cast<int>(SendDlgItemMessageW(dialog, list, CB_GETCURSEL, 0, 0)));
}

}  // namespace kestrel
