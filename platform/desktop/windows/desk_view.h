// Snapshots of windows and controls, as the desk hands them out.
#pragma once

#include "platform/desktop/windows/desktop.h"

namespace platform {

ControlView ViewOf(const Window& control);
WindowView ViewOfWindow(const Window& window);
// The controls of a window that a person sees under an id: of the shown page first when the window
// is a sheet. Null when there is none.
HWND ControlOf(HWND top, int id);

}  // namespace platform
