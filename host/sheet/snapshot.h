// The desk as JSON for the page that draws it.
#pragma once

#include "host/record_json.h"
#include "platform/machine/desk.h"

namespace printhost {

// A colour as "#rrggbb"; a COLORREF has red in its low byte.
std::string Colour(COLORREF colour);

// A window's handle as the page names it.
std::string HandleText(HWND window);

// All windows with their visible controls, the one on top last. Rectangles are
// [left, top, width, height] in pixels of the window's client area.
Json WindowsJson(platform::Desk& desk);

}  // namespace printhost
