// The platform's file dialogs and what it says of file names. Their library is loaded for each
// call.
#pragma once

#include <windows.h>

#include "files/profile_io.h"
#include "files/utility_page_state.h"

namespace kestrel {

constexpr WORD kFileTitleLength = 64;  // units, terminator included

// The title of a name as the platform displays it, without the extension when the user's preference
// hides extensions (GetFileTitleW). Returns false for an invalid file name and for a title that
// does not fit.
bool FileTitle(const WCHAR* name, WCHAR (&title)[kFileTitleLength]);

// Lets the user choose a backup file to save to or to load from, starting with the folder and the
// file name of the current name; a chosen file's full path becomes the name. Returns false, and
// changes nothing, otherwise. The process's current directory is the same afterwards.
bool BrowseBackupFile(HWND owner, WCHAR (&name)[kBackupNameLength], TransferDirection direction);

}  // namespace kestrel
