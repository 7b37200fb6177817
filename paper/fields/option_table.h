// The choices of a combo box.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

namespace kestrel {

constexpr int16_t kOptionEnd = -9999;    // value of the row that ends a table
constexpr int16_t kFollowPrinter = 255;  // as the printer is set

struct OptionEntry {
  WCHAR text[64];
  int16_t value;
  WCHAR command;  // the printer's command character
  uint8_t reserved[8];
};

// A table and the number of its rows without the ending one.
struct OptionTable {
  const OptionEntry* entries;
  int count;
};

// The table of rows that end with one of kOptionEnd.
template <size_t N>
constexpr OptionTable OptionTableOf(const OptionEntry (&entries)[N]) {
  return {entries, static_cast<int>(N) - 1};
}

// Row of a value; the first when the table does not hold it.
int OptionIndex(const OptionTable& table, int value);
// Value of a row; the first row's for an index outside the table.
int16_t OptionValue(const OptionTable& table, int index);
// Empties a combo box, fills it with the table and selects the row of a value.
void FillOptionList(HWND dialog, int list, const OptionTable& table, int value);
// Selects the row of a value in a combo box that holds the table.
void SelectOption(HWND dialog, int list, const OptionTable& table, int value);
// Value of a combo box's selection; a list that the dialog does not have counts as on its first
// row.
int16_t SelectedOption(HWND dialog, int list, const OptionTable& table);

}  // namespace kestrel
