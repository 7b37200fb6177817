// What DrvDocumentProperties answers when no sheet is to be shown; also what
// DrvDocumentPropertySheets does when it is called without a PROPSHEETUI_INFO.
#pragma once

#include <winddiui.h>
#include <windows.h>

namespace kestrel {

// Resolves a document header's settings into its output record and sets its cbOut. Answers 452 when
// only the size is asked for, 1 (IDOK) when done or when nothing is to be copied, 0 on failure.
LONG ResolveWithoutSheet(DOCUMENTPROPERTYHEADER& header);

}  // namespace kestrel
