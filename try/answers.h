// Writes what the module's exports return without a window, as JSON. No function stores anything.
// The output does not depend on the machine: it omits the printer's name, handles and addresses.
// The functions return false when there is no memory for the buffers of the calls.
#pragma once

#include "driver/settings_block.h"
#include "try/module.h"
#include "try/output.h"

namespace kestrel_try {

// Calls every capability index, and queries paper names with buffers of several sizes.
bool WriteCapabilities(const Target& target, Json& json);
// Writes the default record, and the fields of it that merges and conversions change.
bool WriteRecords(const Target& target, Json& json);
// Calls the exports whose results are the same for every printer and record.
bool WriteFixedAnswers(const Target& target, Json& json);

// Writes the fields of a record that differ from those of another record, or all fields when other
// is null. A device name equal to the printer's appears as "(printer)".
void WriteRecord(const Target& target, Json& json, const char* member,
                 const kestrel::SettingsRecord& record, const kestrel::SettingsRecord* other);

}  // namespace kestrel_try
