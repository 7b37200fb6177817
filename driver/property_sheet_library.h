// The common property-sheet library (compstui.dll), loaded for the duration of each sheet.
#pragma once

#include <windows.h>
#include <compstui.h>

namespace kestrel {

// Calls CommonPropertySheetUIW with a property-sheet function and its parameter. Returns false when
// the library or its entry point is missing or the sheet did not open. Otherwise *result receives
// the sheet's result (CPSUI_OK, CPSUI_CANCEL, …).
bool ShowCommonPropertySheet(HWND owner, PFNPROPSHEETUI sheets, LPARAM parameter, DWORD* result);

}  // namespace kestrel
