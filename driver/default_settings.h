// The factory defaults, and the public fields computed from the private ones.
#pragma once

#include <windows.h>

#include "driver/settings_block.h"

namespace kestrel {

// Fills a block with the settings of the set-up file, or with the factory defaults when there is no
// such file. Fields that the set-up file does not name stay unchanged. Does not set Signature.
// printer and name may be null.
void FillDefaultSettings(DriverSettingsBlock& block, HANDLE printer, const WCHAR* name);

// Rewrites the 220 public bytes of the block's record from its private part, its paper table and
// HeadDensity. name becomes dmDeviceName.
void FillPublicFields(DriverSettingsBlock& block, HANDLE printer, const WCHAR* name);

// Returns the factory default of HTInfo.
const DEVHTINFO& DefaultHalftoneInfo();

}  // namespace kestrel
