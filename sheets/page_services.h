// What a page may ask of its session.
#pragma once

#include <windows.h>

#include "sheets/driver_ui_data.h"

namespace kestrel {

// The session of a page window, which keeps the parameter of its WM_INITDIALOG in DWLP_USER, on
// both hosting roads; null before that message or for a session no longer valid.
DriverUiData* PageSession(HWND page);

// Marks the sheet changed (PSM_CHANGED, from Windows 2000 on). Always TRUE.
BOOL MarkPageChanged(HWND page);
// CPSFUNC_SET_RESULT with CPSUI_OK on the first page; whether compstui took it.
bool ConfirmSheetResult(DriverUiData& session);
// FillPublicFields with the session's printer.
void RefreshPublicFields(DriverUiData& session);

bool IsValidUiSession(const DriverUiData* session);

}  // namespace kestrel
