// The dialog that chooses the registered paper whose data are copied.
#pragma once

#include <windows.h>

#include "driver/settings_block.h"

namespace kestrel {

// Slot of the chosen paper; -1 when none was chosen.
int ChooseReferencePaper(HWND owner, const DriverSettingsBlock& block);

}  // namespace kestrel
