// Initial settings from the set-up file in the Windows directory.
#pragma once

#include <windows.h>

#include "driver/settings_block.h"

namespace kestrel {

// Fills a block, public fields included, from "SetupKit_QM6_1R.INI". Returns false without changing
// the block when the file is missing or invalid. Does not set Signature. printer and name identify
// the printer for the public fields.
bool ImportSetupFile(DriverSettingsBlock& block, HANDLE printer, const WCHAR* name);

}  // namespace kestrel
