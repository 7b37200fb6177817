// Message texts and message boxes of the pages and dialogs.
#pragma once

#include <windows.h>

#include <cstddef>

namespace kestrel {

// Copies the text of a message id, from MessageOverrideTable or else from the string table,
// truncated to n - 1 units and terminated; an unknown id has the empty text. Returns the length.
int LoadMessageText(UINT id, WCHAR* text, size_t n);
// Shows a message box over owner, with owner's title as its caption. style is one of the MB_ICON
// styles.
void ShowMessage(HWND owner, UINT id, UINT style);
void ShowText(HWND owner, const WCHAR* text, UINT style);
// Returns true for a null text and for one that consists of U+0020 and U+3000 only.
bool IsBlankText(const WCHAR* text);
// Sets the wait cursor, or the arrow when on is false.
void SetWaitCursor(bool on);

constexpr size_t kMessageLength = 512;  // units; enough for every text of the string table

}  // namespace kestrel
