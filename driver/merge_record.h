// Merging of an application's settings record into a block.
#pragma once

#include "driver/record_view.h"
#include "driver/settings_block.h"

namespace kestrel {

// Merges an application's record into a block that holds the printer's settings: the public fields
// named in dmFields, and the private fields when mismatch (MismatchOnThisSystem) is 0 and the
// block's nCompulsory is 0. Then refreshes the public fields of the block.
void _UdcMergeSelfDMode(DriverSettingsBlock& block, const RecordView& input, unsigned mismatch,
                        HANDLE printer, const WCHAR* name);

}  // namespace kestrel
