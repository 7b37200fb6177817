// Document properties that open no property sheet.
#pragma once

#include <windows.h>
#include <winddiui.h>

namespace kestrel {

// Resolves the header's input record into its output record according to fMode. Returns
// kRecordSize when fMode is 0 or there is no output, 1 on success, 0 when out of memory. Stores
// nothing in the printer.
LONG ResolveWithoutSheet(DOCUMENTPROPERTYHEADER& header);

// cbOut of a DOCUMENTPROPERTYHEADER whose sheet could not be opened. The sheet library reports such
// a sheet as cancelled.
constexpr DWORD kSheetNotOpened = static_cast<DWORD>(-1);

}  // namespace kestrel
