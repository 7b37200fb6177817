// Operations on single controls of a dialog.
#pragma once

#include <windows.h>

namespace kestrel {

// Disables the controls in the LockedControlList of a dialog, named by its template id, unless the
// user may change settings.
void LockControls(HWND dialog, int dialogId, bool permission);

// Shrinks a control to zero width and height and disables it.
void HideControl(HWND dialog, int control);

// Moves the focus to a control as the Tab key does: the default button and the selection of an edit
// follow. Does nothing when the template lacks the control.
void MoveFocus(HWND dialog, int control);

}  // namespace kestrel
