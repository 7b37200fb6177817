// Dialog templates as the resource compiler writes them, read into plain data.
#pragma once

#include <windows.h>

#include "platform/user32/window.h"

namespace platform {

struct DialogTemplate {
  DWORD style = 0;
  RECT rect = {};  // pixels, at 6 × 12 for the base units of the dialog font
  std::u16string caption;
  std::vector<ControlRequest> items;
};

// Reads an extended template of size bytes (DLGTEMPLATEEX); false when it is of the older form,
// damaged or ends early.
bool ParseDialogTemplate(const void* data, size_t size, DialogTemplate& out);

}  // namespace platform
