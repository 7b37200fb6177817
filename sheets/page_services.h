// What a page may ask of its session.
#pragma once

#include <windows.h>

#include "sheets/driver_ui_data.h"

namespace kestrel {

// The common page steps; each page performs them after its own work for the same message.
void KeepPage(HWND page, LPARAM initParam);  // WM_INITDIALOG: remembers what PageSession needs
void LeavePage(DriverUiData& session);  // PSN_KILLACTIVE: the public fields follow the private ones
void ApplyPage(DriverUiData& session);  // PSN_APPLY: confirms the sheet's result

// The session of a page window, on both hosting roads; null before WM_INITDIALOG or for a session
// no longer valid.
DriverUiData* PageSession(HWND page);
// The PROPSHEETPAGE pointer kept in DWLP_USER.
void StorePagePointer(HWND page, LPARAM pointer);
LPARAM PagePointer(HWND page);

// Marks the sheet changed (PSM_CHANGED, from Windows 2000 on). Always TRUE.
BOOL MarkPageChanged(HWND page);
// CPSFUNC_SET_RESULT with CPSUI_OK on the first page; whether compstui took it.
bool ConfirmSheetResult(DriverUiData& session);
bool FirstPageIsOwn(const DriverUiData& session);
// FillPublicFields with the session's printer.
void RefreshPublicFields(DriverUiData& session);

bool IsValidUiSession(const DriverUiData* session);

}  // namespace kestrel
