// Sizes of decorative fonts: cell times magnification, in the font's unit.
#pragma once

#include "fonts/font_record.h"

namespace kestrel {

// Sets Size, SizeX and SizeY of a font from a cell code and its magnifications. The scalable code,
// which has no cell, sets Size alone.
void ComputeFontSize(DecoFontInfo& font, uint16_t code, int dpi);

// Converts SizeX and SizeY and sets Unit. Unlike the sizes of papers, dots and inches are converted
// by way of tenths of a millimetre.
void ChangeFontUnit(DecoFontInfo& font, uint16_t unit, int dpi);

// Takes a resident font's row into a font: its name, first size and what it starts with; the serial
// numbering's start values only when asked for. Keeps the registered name and Range.
void TakeRowDefaults(DecoFontInfo& font, const DecoFontInfo& row, bool serialDefaults);

}  // namespace kestrel
