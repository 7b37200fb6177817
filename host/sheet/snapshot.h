// The desk as JSON, for the page that displays it.
#pragma once

#include "host/record_json.h"
#include "platform/machine/desk.h"

namespace printhost {

// Returns a colour as "#rrggbb"; a COLORREF has red in its low byte.
std::string Colour(COLORREF colour);

// Returns a window's handle as the page sends it back, in hexadecimal.
std::string HandleText(HWND window);

// Returns all windows with their visible controls, the top window last. Rectangles are
// [left, top, width, height] in pixels of the window's client area.
Json WindowsJson(platform::Desk& desk);

}  // namespace printhost
