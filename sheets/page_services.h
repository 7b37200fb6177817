// What a page may ask of its session.
#pragma once

#include <windows.h>

#include "sheets/driver_ui_data.h"

namespace kestrel {

// Returns the session of a page window: the lParam of the PROPSHEETPAGE that the window stores in
// DWLP_USER from WM_INITDIALOG on. A page that was added as COMPROPSHEETUI gets a PROPSHEETPAGE
// too, whose lParam is the UserData (DLGPAGE). Null before WM_INITDIALOG, or when the session is no
// longer valid.
DriverUiData* PageSession(HWND page);

// Marks the sheet changed (PSM_CHANGED, from Windows 2000 on). Always TRUE.
BOOL MarkPageChanged(HWND page);
// CPSFUNC_SET_RESULT with CPSUI_OK on the first page; whether compstui took it.
bool ConfirmSheetResult(DriverUiData& session);
// FillPublicFields with the session's printer.
void RefreshPublicFields(DriverUiData& session);

bool IsValidUiSession(const DriverUiData* session);

}  // namespace kestrel
