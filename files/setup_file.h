// Initial settings from the set-up file in the Windows directory.
#pragma once

#include <windows.h>

#include "driver/settings_block.h"

namespace kestrel {

// Fills a block from "SetupKit_QM6_1R.INI", public fields included, and answers true; answers false
// and leaves the block untouched when there is no such file or it is refused. Does not set
// Signature.
bool ImportSetupFile(DriverSettingsBlock& block, HANDLE printer, const WCHAR* name);

}  // namespace kestrel
