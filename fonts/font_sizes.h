// Sizes of decorative fonts: cell size times magnification, converted to the font's unit.
#pragma once

#include "fonts/font_record.h"

namespace kestrel {

// Sets Size, SizeX and SizeY of a font from a cell code and its magnifications. Sets only Size for
// the scalable code, which has no cell. dpi is the head density.
void ComputeFontSize(DecoFontInfo& font, uint16_t code, int dpi);

// Converts SizeX and SizeY and sets Unit. Unlike the sizes of papers, dots and inches are converted
// by way of tenths of a millimetre.
void ChangeFontUnit(DecoFontInfo& font, uint16_t unit, int dpi);

// Sets a font to the defaults of a resident font's row: its name, its first size and plain styles,
// with serialDefaults also the numbers of serial numbering. Does not change the registered name and
// Range.
void ApplyRowDefaults(DecoFontInfo& font, const DecoFontInfo& row, bool serialDefaults);

}  // namespace kestrel
