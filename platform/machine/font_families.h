// The host's font families.
#pragma once

#include <string>
#include <vector>

namespace platform {

// Returns the names of all installed families, sorted. Empty when fontconfig has no configuration,
// and in a build without the system's libraries.
std::vector<std::u16string> SystemFontFamilies();

}  // namespace platform
