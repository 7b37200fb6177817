// Property sheets: pages and the window that shows them. Internal to the stand-in.
#pragma once

#include <windows.h>
#include <prsht.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "platform/user32/window.h"

// A page created by CreatePropertySheetPageW, with a copy of its PROPSHEETPAGEW.
struct _PSP {
  std::vector<std::byte> block;  // the PROPSHEETPAGEW and the bytes after it, dwSize in all
  std::u16string title;          // on the tab
  SIZE size = {};                // of the template in pixels; empty: no template
  HWND window = nullptr;         // null until the page is first shown
  bool changed = false;

  PROPSHEETPAGEW& page() { return *reinterpret_cast<PROPSHEETPAGEW*>(block.data()); }
};

namespace platform {

// Returns the number of pages that are created and not destroyed.
int LivePropertySheetPages();
bool IsPropertySheetPage(HPROPSHEETPAGE page);

// Shows a sheet until it is closed; the pages stay the caller's. Returns true after OK, false after
// Cancel, nullopt when the sheet cannot open (no window, or no page can be created).
std::optional<bool> ShowSheet(HWND owner, std::u16string title,
                              const std::vector<HPROPSHEETPAGE>& pages);

}  // namespace platform
