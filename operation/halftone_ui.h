// The system's halftone dialogs. Their library is loaded for the duration of a call.
#pragma once

#include <windows.h>

#include "driver/settings_block.h"

namespace kestrel {

// Shows the colour adjustment dialog for monochrome printing on ColorAdjust. Answers its result (1
// or more: changed), -1 when the library or the function is missing; the block changes only with a
// result of 1 or more.
LONG AdjustColor(DriverSettingsBlock& block, const WCHAR* printerName, bool permission);

// The same for the device halftone dialog on HTInfo; without permission it only shows HTInfo.
LONG AdjustHalftone(DriverSettingsBlock& block, const WCHAR* printerName, bool permission);

}  // namespace kestrel
