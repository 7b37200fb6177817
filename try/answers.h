// What the module's exports return without a window, as JSON. Nothing here stores anything, and
// nothing depends on the machine: the printer's name, handles and addresses are left out. The
// functions return false when there is no memory for the buffers that they hand in.
#pragma once

#include "driver/settings_block.h"
#include "try/module.h"
#include "try/output.h"

namespace kestrel_try {

// Every capability index, and paper names for buffers of several sizes.
bool WriteCapabilities(const Target& target, Json& json);
// The default record, and what merges and conversions change in it.
bool WriteRecords(const Target& target, Json& json);
// The exports whose results are the same for every printer and record.
bool WriteFixedAnswers(const Target& target, Json& json);

// The record's fields that differ from those of another record, all of them without one. A device
// name that is the printer's appears as "(printer)".
void WriteRecord(const Target& target, Json& json, const char* member,
                 const kestrel::SettingsRecord& record, const kestrel::SettingsRecord* other);

}  // namespace kestrel_try
