// Factory defaults and the public fields that follow from the private ones.
#pragma once

#include <windows.h>

#include "driver/settings_block.h"

namespace kestrel {

// Fills a block with the set-up file's settings, or with the factory defaults when there is none.
// Does not set Signature. printer and name may be missing.
void FillDefaultSettings(DriverSettingsBlock& block, HANDLE printer, const WCHAR* name);

// Rewrites the 220 public bytes of the block's record from its private part, its papers and
// HeadDensity.
void FillPublicFields(DriverSettingsBlock& block, HANDLE printer, const WCHAR* name);

// The HTInfo that a fresh block holds.
const DEVHTINFO& DefaultHalftoneInfo();

}  // namespace kestrel
