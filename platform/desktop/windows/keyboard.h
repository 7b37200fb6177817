// The keys that a dialog itself acts on (IsDialogMessage): Tab, Enter, Esc, access keys, arrows.
#pragma once

#include <windows.h>

namespace platform {

// Each answers whether the key did something; all act in the given top-level window.
bool PressTab(HWND top, bool back);
bool PressEnter(HWND top);
bool PressEscape(HWND top);
bool PressAccessKey(HWND top, char16_t letter);
// Arrow keys, Delete and Backspace, for the control in focus.
bool PressKey(HWND top, int key);

}  // namespace platform
