// Makes and destroys the session of a property sheet.
#pragma once

#include <windows.h>
#include <winddiui.h>

#include "sheets/driver_ui_data.h"

namespace kestrel {

// A session for a document's or a printer's sheet, filled and with its item tables closed; null
// when the header is missing, memory is short or the item tables overflow. Nothing is left behind
// then.
DriverUiData* CreateUiSession(const DOCUMENTPROPERTYHEADER* header);
DriverUiData* CreateUiSession(const DEVICEPROPERTYHEADER* header);

void DestroyUiSession(DriverUiData* session);

}  // namespace kestrel
