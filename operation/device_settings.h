// Printer-level values that are kept in the registry, below the printer's own key.
#pragma once

#include <windows.h>

namespace kestrel {

// "SyncPrint": 1 = each page is confirmed before the next is issued. 0 when it is absent,
// unreadable or no REG_DWORD.
DWORD ReadSyncPrint(const WCHAR* printerName);
// Writes 1 or 0, creating the key when needed. Failures change nothing and are not told.
void WriteSyncPrint(const WCHAR* printerName, bool on);

}  // namespace kestrel
