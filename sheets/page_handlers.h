// The handlers of a property page, and the dialog procedure that all pages share.
#pragma once

#include <windows.h>

#include "sheets/driver_ui_data.h"
#include "sheets/page_services.h"

namespace kestrel {

// The handlers of one page. A null handler does nothing.
struct PageHandlers {
  void (*create)(HWND page, DriverUiData& session) = nullptr;    // WM_INITDIALOG
  void (*activate)(HWND page, DriverUiData& session) = nullptr;  // PSN_SETACTIVE
  // PSN_KILLACTIVE; the public fields are refreshed afterwards.
  void (*leave)(HWND page, DriverUiData& session) = nullptr;
  void (*command)(HWND page, DriverUiData& session, int control, int notification) = nullptr;
  // Any other message. Returns the result of the dialog procedure.
  INT_PTR(*other)
  (HWND page, DriverUiData& session, UINT message, WPARAM wParam, LPARAM lParam) = nullptr;
  // PSN_APPLY: confirms the sheet's result, and saves the session's fonts on pages that do so
  // (sheets/session_fonts.h). The sheet closes whatever it returns.
  bool (*apply)(DriverUiData& session) = ConfirmSheetResult;
};

// Handles a message of a page's dialog procedure: calls the page's handler, then does the work
// that is common to all pages. Returns the result of the dialog procedure.
INT_PTR HandlePageMessage(const PageHandlers& handlers, HWND page, UINT message, WPARAM wParam,
                          LPARAM lParam);

}  // namespace kestrel
