// A window as an SVG picture, for scripts without a browser.
#pragma once

#include <windows.h>

#include <string>

#include "platform/machine/desk.h"

namespace printhost {

// Returns a window with its tabs, controls and drawings as an SVG document, one unit a pixel.
// Bitmaps come from the module's resources.
std::string WindowSvg(const platform::WindowView& window, HMODULE module);

}  // namespace printhost
