// The platform's file dialogs and file titles. Each call loads their library and frees it.
#pragma once

#include <windows.h>

#include "files/profile_io.h"
#include "files/utility_page_state.h"

namespace kestrel {

constexpr WORD kFileTitleLength = 64;  // units, terminator included

// Gets the title of a file name as the platform displays it (GetFileTitleW), without the extension
// when the user's preference hides extensions. Returns false for an invalid file name and for a
// title that does not fit.
bool GetTitleOfFile(const WCHAR* name, WCHAR (&title)[kFileTitleLength]);

// Lets the user choose a backup file to save to or to load from. The dialog starts with the folder
// and the file of name. Returns true after it stored the full path of the chosen file in name;
// returns false without changing name otherwise. Preserves the process's current directory.
bool BrowseBackupFile(HWND owner, WCHAR (&name)[kBackupNameLength], TransferDirection direction);

}  // namespace kestrel
