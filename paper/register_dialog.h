// The dialog that registers a paper, edits a registered one or edits the free-size paper.
#pragma once

#include <windows.h>

#include "sheets/driver_ui_data.h"

namespace kestrel {

// Runs the dialog over owner in the mode that session.paper names, on the entry
// session.paper.dialog.edited. True when it ended with OK and the table or the free-size paper
// changed.
bool RunPaperDialog(HWND owner, DriverUiData& session);

}  // namespace kestrel
