// Document properties without a property sheet.
#pragma once

#include <windows.h>
#include <winddiui.h>

namespace kestrel {

// Resolves the header's input record into its output record as fMode asks. Answers the size of a
// settings record when nothing is asked for, 1 on success and 0 on failure; stores nothing.
LONG ResolveWithoutSheet(DOCUMENTPROPERTYHEADER& header);

// What a sheet that does not open leaves in cbOut of its header.
constexpr DWORD kSheetRefused = static_cast<DWORD>(-1);

}  // namespace kestrel
