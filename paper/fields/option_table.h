// The choices of a combo box.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

namespace kestrel {

constexpr int16_t kOptionEnd = -9999;    // value of the row that ends a table
constexpr int16_t kFollowPrinter = 255;  // the printer's own setting applies

struct OptionEntry {
  WCHAR text[64];
  int16_t value;
  WCHAR command;  // the printer's command character
  uint8_t reserved[8];
};

// A table and the number of its rows, without the row that ends it.
struct OptionTable {
  const OptionEntry* entries;
  int count;
};

// Returns the table of an array whose last row has the value kOptionEnd.
template <size_t N>
constexpr OptionTable OptionTableOf(const OptionEntry (&entries)[N]) {
  return {entries, static_cast<int>(N) - 1};
}

// Returns the index of a value, or 0 when the table does not contain it.
int OptionIndex(const OptionTable& table, int value);
// Returns the value at an index, or the first value for an index outside the table.
int16_t OptionValue(const OptionTable& table, int index);
// Replaces the items of a combo box by the table and selects a value.
void FillOptionList(HWND dialog, int list, const OptionTable& table, int value);
// Selects a value in a combo box that was filled with the table; the first item for an unknown
// value.
void SelectOption(HWND dialog, int list, const OptionTable& table, int value);
// Returns the selected value of a combo box, or the first value without a selection or without such
// a control.
int16_t SelectedOption(HWND dialog, int list, const OptionTable& table);

}  // namespace kestrel
