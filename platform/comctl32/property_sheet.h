// Property sheets: pages and the window that shows them. Internal to the stand-in.
#pragma once

#include <windows.h>
#include <prsht.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "platform/user32/window.h"

// A page made with CreatePropertySheetPageW. It keeps its own copy of what it was made from.
struct _PSP {
  std::vector<std::byte> block;  // the PROPSHEETPAGEW with whatever the caller put behind it
  std::u16string title;          // on the tab
  SIZE size = {};                // of the template in pixels; nothing: it is missing
  HWND window = nullptr;         // null until the page is first shown
  bool changed = false;

  PROPSHEETPAGEW& page() { return *reinterpret_cast<PROPSHEETPAGEW*>(block.data()); }
};

namespace platform {

// Pages made and not destroyed.
int LivePropertySheetPages();
bool IsPropertySheetPage(HPROPSHEETPAGE page);

// Shows a sheet of pages, which stay the caller's, until it is closed: true after OK, false after
// cancel, nothing when it could not open (no window, or no page that can be created).
std::optional<bool> ShowSheet(HWND owner, std::u16string title,
                              const std::vector<HPROPSHEETPAGE>& pages);

}  // namespace platform
