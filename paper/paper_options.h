// The options of the print darkness of a paper.
#pragma once

#include "paper/fields/option_table.h"

namespace kestrel {

const OptionTable& PaperGradeOptions();     // PaperKind
const OptionTable& PaperDarknessOptions();  // Thickness

}  // namespace kestrel
