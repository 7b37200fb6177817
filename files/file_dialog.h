// The platform's file dialogs and what it says of file names. Their library is loaded for each
// call.
#pragma once

#include <windows.h>

#include "files/profile_io.h"
#include "files/utility_page_state.h"

namespace kestrel {

constexpr WORD kFileTitleLength = 64;  // units, terminator included

// The part of a name behind its folder (GetFileTitleW). False for what is no file name, and for a
// title that does not fit.
bool FileTitle(const WCHAR* name, WCHAR (&title)[kFileTitleLength]);

// Lets the user choose a backup file to save to or to load from, starting from the name as it
// stands; a chosen file's full path becomes the name. False, and nothing changed, otherwise.
bool BrowseBackupFile(HWND owner, WCHAR (&name)[kBackupNameLength], TransferDirection direction);

}  // namespace kestrel
