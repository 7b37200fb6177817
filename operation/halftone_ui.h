// The system's colour adjustment and halftone dialogs. Their library (htui.dll) is loaded for the
// duration of each call.
#pragma once

#include <windows.h>

#include "driver/settings_block.h"

namespace kestrel {

// Shows the colour adjustment dialog for monochrome printing with ColorAdjust. Returns the dialog's
// result, or -1 when the library or its function is missing. The block changes only when the result
// is 1 or more.
LONG AdjustColor(DriverSettingsBlock& block, const WCHAR* printerName, bool permission);

// Shows the device halftone dialog with HTInfo, in the same way. Without permission the dialog is
// read-only.
LONG AdjustHalftone(DriverSettingsBlock& block, const WCHAR* printerName, bool permission);

}  // namespace kestrel
