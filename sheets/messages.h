// Message boxes and texts of the pages and dialogs.
#pragma once

#include <windows.h>

#include <cstddef>

namespace kestrel {

// A message id's text: the override table's, else the string table's; cut to n - 1 units and
// terminated, empty for an unknown id. Answers its length.
int LoadMessageText(UINT id, WCHAR* text, size_t n);
// A message box over owner, captioned with its title. style is one of the MB_ICON styles.
void ShowMessage(HWND owner, UINT id, UINT style);
void ShowText(HWND owner, const WCHAR* text, UINT style);
// Whether a text is empty or holds nothing but U+0020 and U+3000.
bool IsBlankText(const WCHAR* text);
// The wait cursor, or the arrow again.
void SetWaitCursor(bool on);

constexpr size_t kMessageLength = 512;  // units that hold every text of the string table

}  // namespace kestrel
