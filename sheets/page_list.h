// The pages of a session, in their order.
#pragma once

#include "sheets/driver_ui_data.h"

namespace kestrel {

// Fills the session's page list: the version page, and, except in printer sessions, the paper,
// operation, device, font and utility pages. Sets kMayStorePrinterPart.
void BuildPageList(DriverUiData& session, SessionMode mode);

}  // namespace kestrel
