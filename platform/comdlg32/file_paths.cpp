#include "platform/comdlg32/file_paths.h"

#include <windows.h>

#include <algorithm>
#include <filesystem>

#include "platform/machine/machine.h"
#include "platform/machine/text.h"

namespace platform::filedialog {
namespace {

constexpr size_t kRootLength = 3;  // "C:\"

bool HasDrive(std::u16string_view path) { return path.size() >= 2 && path[1] == u':'; }

bool IsSeparator(char16_t unit) { return unit == u'\\' || unit == u'/'; }

std::u16string Joined(std::u16string_view folder, std::u16string_view name) {
  std::u16string path(folder);
  if (!path.empty() && !IsSeparator(path.back())) path += u'\\';
  return path += name;
}

bool Matches(std::u16string_view name, std::u16string_view pattern) {
  if (pattern.empty() || pattern == u"*.*") return true;
  const std::u16string_view end = pattern.substr(pattern[0] == u'*' ? 1 : 0);
  return name.size() >= end.size() && EqualIgnoringCase(name.substr(name.size() - end.size()), end);
}

}  // namespace

size_t TitleStart(std::u16string_view path) {
  const size_t last = path.find_last_of(u"\\/:");
  return last == std::u16string_view::npos ? 0 : last + 1;
}

size_t ExtensionStart(std::u16string_view path) {
  const size_t dot = path.rfind(u'.');
  return dot == std::u16string_view::npos || dot < TitleStart(path) ? path.size() : dot + 1;
}

bool HasForbiddenCharacter(std::u16string_view name) {
  if (HasDrive(name)) name.remove_prefix(2);
  return std::any_of(name.begin(), name.end(), [](char16_t unit) {
    return unit < u' ' || std::u16string_view(u"<>|\":*?").find(unit) != std::u16string_view::npos;
  });
}

std::u16string FullPath(std::u16string_view folder, std::u16string_view name) {
  std::u16string path;
  if (HasDrive(name))
    path = name;
  else if (!name.empty() && IsSeparator(name[0]))
    path = std::u16string(folder.substr(0, 2)) + std::u16string(name);
  else
    path = Joined(folder, name);
  std::u16string full = path.substr(0, 2) + u"\\";
  for (size_t at = 2; at < path.size();) {
    const size_t end = std::min(path.find_first_of(u"\\/", at), path.size());
    const std::u16string part = path.substr(at, end - at);
    if (part == u"..")
      full = FolderAbove(full);
    else if (!part.empty() && part != u".")
      full = Joined(full, part);
    at = end + 1;
  }
  return full;
}

std::u16string FolderAbove(std::u16string_view folder) {
  const size_t last = folder.rfind(u'\\');
  if (folder.size() <= kRootLength || last == std::u16string_view::npos)
    return std::u16string(folder);
  return std::u16string(folder.substr(0, std::max(last, kRootLength)));
}

bool FolderExists(std::u16string_view path) {
  std::error_code error;
  return std::filesystem::is_directory(Machine::Current().HostPath(path), error);
}

bool FileExists(std::u16string_view path) {
  std::error_code error;
  const auto host = Machine::Current().HostPath(path);
  return std::filesystem::exists(host, error) && !std::filesystem::is_directory(host, error);
}

std::vector<std::u16string> List(std::u16string_view folder, std::u16string_view pattern) {
  std::vector<std::u16string> folders, files;
  std::error_code error;
  std::filesystem::directory_iterator entry(
      Machine::Current().HostPath(folder),
      std::filesystem::directory_options::skip_permission_denied, error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    if (entry->path().filename().string().starts_with('.')) continue;  // hidden on the host
    const std::u16string name = ToUtf16(entry->path().filename().native());
    std::error_code unknown;
    if (entry->is_directory(unknown))
      folders.push_back(name + u'\\');
    else if (Matches(name, pattern))
      files.push_back(name);
  }
  std::sort(folders.begin(), folders.end());
  std::sort(files.begin(), files.end());
  std::vector<std::u16string> lines = {u"..\\"};
  if (FolderAbove(folder) == folder) lines = {u"C:\\", u"Z:\\"};
  lines.insert(lines.end(), folders.begin(), folders.end());
  lines.insert(lines.end(), files.begin(), files.end());
  return lines;
}

}  // namespace platform::filedialog
