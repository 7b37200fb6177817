// Names and folders as the file dialogs treat them, apart from any window.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

namespace platform::filedialog {

// Where a path's file title begins: behind the last separator or drive colon.
size_t TitleStart(std::u16string_view path);
// Where the title's extension begins (behind the dot); the path's length when it has none.
size_t ExtensionStart(std::u16string_view path);

// 0: a file title can be taken; below 0: the path names no file.
int CheckTitle(std::u16string_view path);

// Whether a name typed into a dialog holds a character that no file name has.
bool HasForbiddenCharacter(std::u16string_view name);
bool HasWildcard(std::u16string_view name);

// A full path for a name typed while a folder is shown. "." and ".." are worked out; the result has
// a drive and no closing backslash except for a drive's root.
std::u16string FullPath(std::u16string_view folder, std::u16string_view name);
// The folder above; the root stays itself.
std::u16string FolderAbove(std::u16string_view folder);
// The drive's root and every folder down to the given one.
std::vector<std::u16string> FolderChain(std::u16string_view folder);
std::u16string Joined(std::u16string_view folder, std::u16string_view name);

bool FolderExists(std::u16string_view path);
bool FileExists(std::u16string_view path);

// One line of a filter: "*.ini;*.txt" under a text.
struct Filter {
  std::u16string text, patterns;
};
// The pairs of OPENFILENAME lpstrFilter.
std::vector<Filter> ReadFilters(LPCWSTR filters);
// Letter case is ignored; "*.*" matches every name.
bool Matches(std::u16string_view name, std::u16string_view patterns);

struct Listing {
  std::vector<std::u16string> folders, files;  // in order of their names
};
Listing List(std::u16string_view folder, std::u16string_view patterns);

}  // namespace platform::filedialog
