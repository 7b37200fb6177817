// The printer's resident fonts, which are the base of decorative fonts, and their cell sizes.
#pragma once

#include <windows.h>

#include <span>

#include "fonts/font_record.h"

namespace kestrel {

constexpr int kResidentFontCount = 10;
// OutlineStyle of a resident font with fixed cells, that is without free width and height.
constexpr uint16_t kFixedCells = 0xFFFF;

// Smoothing and Bold of a row: the condition under which the user can set the style. 0 means never.
constexpr uint16_t kAlways = 1;
constexpr uint16_t kFromThree = 3;  // smoothing: while both magnifications are at least 3
constexpr uint16_t kUpToFive = 5;   // emphasis: while both magnifications are at most 5

// Returns the rows for a head density in dots per inch; any density except 305 has the rows of 203.
// A row has the layout of a decorative font with other meanings: Size is the OR of the supported
// codes, SizeX and SizeY are the cell of the lowest code, and Pitch, ColorRevolution, Smoothing,
// Bold and OutlineStyle say which styles the font supports.
std::span<const DecoFontInfo, kResidentFontCount> ResidentFontTable(int dpi);

// Returns the row of a resident font's name; -1 when the printer has no such font.
int FindResidentFont(std::span<const DecoFontInfo, kResidentFontCount> rows, const WCHAR* name);

// The styles that the user can set.
struct SupportedStyles {
  bool pitch, reverse, emphasis, smoothing;
  bool fixedCells;  // true: magnifications of a cell; false: free width and height, and outlines
};
// Returns the styles that a resident font's row supports at the magnifications of the font.
SupportedStyles StylesSupportedBy(const DecoFontInfo& row, const DecoFontInfo& font);

struct FontCell {
  uint16_t code;
  const WCHAR* label;
  int16_t width;  // dots
  int16_t height;
};

// Returns the cell of a code; null for the scalable code and for a value that is not a single code.
const FontCell* FindFontCell(uint16_t code);
// Returns the cell at an entry of the size list, which has the cells of codes in ascending order of
// their codes; null after the last entry.
const FontCell* CellAt(uint16_t codes, int entry);
// Returns the entry of a code in that list; 0 when codes does not contain it.
int FindCellEntry(uint16_t codes, uint16_t code);
// Returns true when code is a single code, a cell or the scalable code, and the row supports it.
bool IsSizeSupported(const DecoFontInfo& row, uint16_t code);

}  // namespace kestrel
