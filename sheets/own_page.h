// What the driver's own pages have in common: a page names what it does, and one procedure does the
// rest.
#pragma once

#include <windows.h>

#include "sheets/driver_ui_data.h"

namespace kestrel {

// Which of the two a page does first on PSN_APPLY: writing the fonts to the printer or confirming
// the sheet's result.
enum class ApplyOrder { kConfirmOnly, kSaveThenConfirm, kConfirmThenSave };

// The work of one page; members that it does not need are null.
struct OwnPage {
  void (*create)(HWND page, DriverUiData& session);
  void (*activate)(HWND page, DriverUiData& session);
  void (*leave)(HWND page, DriverUiData& session);  // before the public fields are refreshed
  void (*command)(HWND page, DriverUiData& session, int control, int notification);
  // Other messages; TRUE when the page has dealt with one.
  INT_PTR (*other)(HWND page, DriverUiData& session, UINT message, WPARAM wParam, LPARAM lParam);
  ApplyOrder apply;
};

// A dialog procedure's answer to a message: the page's own work and then the common step for it.
INT_PTR RunOwnPage(const OwnPage& work, HWND page, UINT message, WPARAM wParam, LPARAM lParam);

}  // namespace kestrel
