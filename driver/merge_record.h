// What a block takes from an application's settings record.
#pragma once

#include "driver/record_view.h"
#include "driver/settings_block.h"

namespace kestrel {

// Merges an application's record into a block that holds the printer's settings: the public fields
// that it sets, and its private fields when it is the driver's own (mismatch, as
// MismatchOnThisSystem told, is 0) and the printer does not insist on its settings.
void _UdcMergeSelfDMode(DriverSettingsBlock& block, const RecordView& input, unsigned mismatch,
                        HANDLE printer, const WCHAR* name);

}  // namespace kestrel
