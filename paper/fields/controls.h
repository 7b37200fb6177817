// What is done to single controls of a dialog.
#pragma once

#include <windows.h>

namespace kestrel {

// Disables the LockedControlList of a dialog (by template id) when there is no permission to change
// settings.
void LockControls(HWND dialog, int dialogId, bool permission);

// Shrinks a control to nothing at its place and disables it.
void HideControl(HWND dialog, int control);

// Moves the focus as Tab does: the default button and an edit's selection follow. Nothing happens
// for a control that the template leaves out.
void MoveFocus(HWND dialog, int control);

}  // namespace kestrel
