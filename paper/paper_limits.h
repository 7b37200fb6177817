// The limits that the sizes of a paper are held to.
#pragma once

#include "paper/paper_records.h"

namespace kestrel {

// The limits in tenths of a millimetre at a head density in dots per inch.
PaperLimits BuildPaperLimits(int dpi);
// The limits in the unit of a paper: kInch converts them, every other unit leaves millimetres.
PaperLimits BuildPaperLimits(int dpi, int unit);
// Converts all limits between millimetres and inches.
void ConvertPaperLimits(PaperLimits& limits, int from, int to);

}  // namespace kestrel
