// The dialog in which the user chooses a registered paper to copy.
#pragma once

#include <windows.h>

#include "driver/settings_block.h"

namespace kestrel {

// Returns the slot of the chosen paper, or -1 when the user chose none.
int ChooseReferencePaper(HWND owner, const DriverSettingsBlock& block);

}  // namespace kestrel
