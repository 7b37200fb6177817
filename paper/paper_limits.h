// The limits of the sizes of a paper.
#pragma once

#include "paper/paper_records.h"

namespace kestrel {

// Returns the limits in tenths of a millimetre for a head density in dots per inch.
PaperLimits BuildPaperLimits(int dpi);
// Returns the limits in inches for kInch, in tenths of a millimetre for every other unit.
PaperLimits BuildPaperLimits(int dpi, int unit);
// Converts all limits between kMillimetre and kInch.
void ConvertPaperLimits(PaperLimits& limits, int from, int to);

}  // namespace kestrel
