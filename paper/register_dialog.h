// The dialog that registers a paper, or edits a registered paper or the free-size paper.
#pragma once

#include <windows.h>

#include "driver/settings_block.h"

namespace kestrel {

enum PaperDialogMode : int { kNewPaper = 0, kEditPaper = 1, kEditFreePaper = 2 };

// Runs the dialog over owner and stores the edited paper in block on OK. Returns true when block
// has changed.
//
// kNewPaper appends a paper; entry is the list entry whose values it starts with, or -1 for the
// default values. kEditPaper replaces the registered paper of entry. kEditFreePaper replaces the
// free-size paper and ignores entry.
//
// Without permission to change settings the dialog can only be closed.
bool RunPaperDialog(HWND owner, DriverSettingsBlock& block, bool permission, PaperDialogMode mode,
                    int entry);

}  // namespace kestrel
