// Creation and destruction of the session of a property sheet.
#pragma once

#include <windows.h>
#include <winddiui.h>

#include "sheets/driver_ui_data.h"

namespace kestrel {

// Creates the session of a document's or a printer's sheet, with its settings resolved and its
// pages built. Returns null when header is null, when out of memory, or when the item tables
// overflow.
DriverUiData* CreateUiSession(const DOCUMENTPROPERTYHEADER* header);
DriverUiData* CreateUiSession(const DEVICEPROPERTYHEADER* header);

// Frees a session and everything that it owns. The pointer is invalid afterwards.
void DestroyUiSession(DriverUiData* session);

}  // namespace kestrel
