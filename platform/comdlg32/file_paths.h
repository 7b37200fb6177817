// Names and folders as the file dialogs treat them, independent of windows.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace platform::filedialog {

// Returns the start of the file title: after the last separator or drive colon.
size_t TitleStart(std::u16string_view path);
// Returns the start of the extension, after the dot; the length of the path when it has none.
size_t ExtensionStart(std::u16string_view path);

// Returns true when a typed name contains a character that no file name can have.
bool HasForbiddenCharacter(std::u16string_view name);

// Returns the full path for a name typed while a folder is shown. "." and ".." are resolved. The
// result has a drive, and no trailing backslash except for the root.
std::u16string FullPath(std::u16string_view folder, std::u16string_view name);
// Returns the parent folder; the root for the root.
std::u16string FolderAbove(std::u16string_view folder);

bool FolderExists(std::u16string_view path);
bool FileExists(std::u16string_view path);

// Lists the subfolders ("name\"), then the files that match a pattern, each sorted by name. Only
// the text after the "*" of the pattern counts, ignoring letter case; "*.*" matches all. The list
// starts with "..\", or in a root with the drives.
std::vector<std::u16string> List(std::u16string_view folder, std::u16string_view pattern);

}  // namespace platform::filedialog
