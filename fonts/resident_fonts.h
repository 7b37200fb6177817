// The printer's resident fonts, on which decorative fonts are based, and the cells that they offer.
#pragma once

#include <windows.h>

#include <span>

#include "fonts/font_record.h"

namespace kestrel {

constexpr int kResidentFontCount = 10;
// OutlineStyle of a resident font without free width and height.
constexpr uint16_t kFixedCells = 0xFFFF;

// Smoothing and Bold of a row: when the setting may be made.
constexpr uint16_t kAlways = 1;
constexpr uint16_t kFromThree = 3;  // smoothing: while both magnifications are at least 3
constexpr uint16_t kUpToFive = 5;   // emphasis: while both magnifications are at most 5

// The ten rows for a head density in dots per inch; any density but 305 has those of 203. A row has
// the shape of a decorative font: Size holds every code that the font offers, SizeX and SizeY the
// cell of the first, Pitch, ColorRevolution, Smoothing, Bold and OutlineStyle what the font allows.
std::span<const DecoFontInfo, kResidentFontCount> ResidentFontTable(int dpi);

// Row of a resident font's name, -1 when the printer has no such font.
int ResidentFontRow(std::span<const DecoFontInfo, kResidentFontCount> rows, const WCHAR* name);

// What can be set of a font upon a resident font's row, as far as its magnifications allow it.
struct FontOffers {
  bool pitch, reverse, emphasis, smoothing;
  bool fixedCells;  // magnifications of a cell; else free width and height, and outlines
};
FontOffers OffersOf(const DecoFontInfo& row, const DecoFontInfo& font);

// One cell size.
struct FontCell {
  uint16_t code;
  const WCHAR* label;
  int16_t width;  // dots
  int16_t height;
};

// The cell of a code; null for the scalable code and for anything that is not one code.
const FontCell* CellOfCode(uint16_t code);
// The codes of a set in ascending order: the cell of the n-th that has one (null behind the last),
// and the entry of a code (0 when the set does not offer it).
const FontCell* CellAt(uint16_t codes, int entry);
int EntryOfCell(uint16_t codes, uint16_t code);
// Returns whether a row offers a Size: one of its cells, or free width and height.
bool IsSizeOffered(const DecoFontInfo& row, uint16_t code);

}  // namespace kestrel
