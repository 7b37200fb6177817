// The functions of a session that its pages use.
#pragma once

#include <windows.h>

#include "sheets/driver_ui_data.h"

namespace kestrel {

// Returns the session of a page window: the lParam of the PROPSHEETPAGE that the window stores in
// DWLP_USER from WM_INITDIALOG on. A page that was added as COMPROPSHEETUI has a PROPSHEETPAGE
// too; its lParam is the UserData (DLGPAGE). Returns null before WM_INITDIALOG and when the session
// is no longer valid.
DriverUiData* PageSession(HWND page);

// Marks the sheet as changed (PSM_CHANGED) from Windows 2000 on. Always returns TRUE.
BOOL MarkPageChanged(HWND page);
// Reports CPSUI_OK for the first page (CPSFUNC_SET_RESULT). Returns true when compstui accepted it.
bool ConfirmSheetResult(DriverUiData& session);
// Refreshes the public fields of the working block (FillPublicFields).
void RefreshPublicFields(DriverUiData& session);

// Returns true when session points to a session that has not been destroyed.
bool IsValidUiSession(const DriverUiData* session);

}  // namespace kestrel
