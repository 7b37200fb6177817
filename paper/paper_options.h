// The choices of print darkness of a paper.
#pragma once

#include "paper/option_table.h"

namespace kestrel {

extern const OptionTable kPaperGrades;    // PaperKind
extern const OptionTable kPaperDarkness;  // Thickness

}  // namespace kestrel
