// Names and folders as the file dialogs treat them, apart from any window.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace platform::filedialog {

// Where a path's file title begins: behind the last separator or drive colon.
size_t TitleStart(std::u16string_view path);
// Where the title's extension begins (behind the dot); the path's length when it has none.
size_t ExtensionStart(std::u16string_view path);

// Whether a name typed into a dialog holds a character that no file name has.
bool HasForbiddenCharacter(std::u16string_view name);

// A full path for a name typed while a folder is shown. "." and ".." are worked out; the result has
// a drive and no closing backslash except for a drive's root.
std::u16string FullPath(std::u16string_view folder, std::u16string_view name);
// The folder above; the root stays itself.
std::u16string FolderAbove(std::u16string_view folder);

bool FolderExists(std::u16string_view path);
bool FileExists(std::u16string_view path);

// The folders in a folder ("name\"), then its files that end as the pattern does behind its "*",
// letter case ignored ("*.*" takes all), each in order of their names. Above a folder that is no
// root stands "..\", in a root the drives.
std::vector<std::u16string> List(std::u16string_view folder, std::u16string_view pattern);

}  // namespace platform::filedialog
