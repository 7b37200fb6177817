// A window as a picture, for scripts without a browser.
#pragma once

#include <windows.h>

#include <string>

#include "platform/machine/desk.h"

namespace printhost {

// The window with its tabs, controls and drawings as one SVG document in the window's own pixels;
// the bitmaps are those of the module's resources.
std::string WindowSvg(const platform::WindowView& window, HMODULE module);

}  // namespace printhost
