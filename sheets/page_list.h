// Which pages a session shows, and in which order.
#pragma once

#include "sheets/driver_ui_data.h"

namespace kestrel {

// Fills the session's page list for a mode: the version page, followed in document sessions by the
// pages of paper, operation, device, fonts and utilities. Also lets user-default sessions store the
// printer part on OK.
void BuildPageList(DriverUiData& session, SessionMode mode);

}  // namespace kestrel
