// Parses compiled dialog templates.
#pragma once

#include <winuser.h>

#include "platform/user32/window.h"

namespace platform {

struct DialogTemplate {
  DWORD style = 0;
  RECT rect = {};  // pixels, at 6 × 12 for the base units of the dialog font
  std::u16string caption;
  std::vector<ControlRequest> items;
};

// Parses an extended template (DLGTEMPLATEEX) of `size` bytes. Returns false when it is of the
// older form, damaged or truncated.
bool ParseDialogTemplate(const void* data, size_t size, DialogTemplate& out);

}  // namespace platform
