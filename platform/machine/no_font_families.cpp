#include "platform/machine/font_families.h"

namespace platform {

std::vector<std::u16string> SystemFontFamilies() { return {}; }

}  // namespace platform
