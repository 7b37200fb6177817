// The common property-sheet library, loaded for each sheet.
#pragma once

#include <windows.h>
#include <compstui.h>

namespace kestrel {

// CommonPropertySheetUIW with a property-sheet function and its parameter. False when the library
// or its entry point cannot be had or the sheet did not open; otherwise *result is what the sheet
// reported (CPSUI_OK, CPSUI_CANCEL, …).
bool ShowCommonPropertySheet(HWND owner, PFNPROPSHEETUI sheets, LPARAM parameter, DWORD* result);

}  // namespace kestrel
