// The choices of print darkness of a paper.
#pragma once

#include "paper/option_table.h"

namespace kestrel {

const OptionTable& PaperGradeOptions();     // PaperKind
const OptionTable& PaperDarknessOptions();  // Thickness

}  // namespace kestrel
