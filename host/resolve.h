// An application's question for settings.
#pragma once

#include <optional>
#include <string>

#include "host/driver_module.h"
#include "host/record.h"

namespace printhost {

// The printer's settings, with an input record merged when one is given, as an application gets
// them from the document properties without a sheet. Throws Failure when the driver refuses.
Record Resolve(DriverModule& module, const std::u16string& name,
               const std::optional<Record>& input);

}  // namespace printhost
