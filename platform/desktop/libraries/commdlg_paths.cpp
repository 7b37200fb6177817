#include "platform/desktop/libraries/commdlg_paths.h"

#include <algorithm>
#include <filesystem>

#include "platform/machine.h"

namespace platform::filedialog {
namespace {

constexpr size_t kRootLength = 3;  // "C:\"

bool HasDrive(std::u16string_view path) { return path.size() >= 2 && path[1] == u':'; }

bool IsSeparator(char16_t unit) { return unit == u'\\' || unit == u'/'; }

char16_t Folded(char16_t unit) {
  if (unit >= u'a' && unit <= u'z') return static_cast<char16_t>(unit - u'a' + u'A');
  if (unit >= u'ａ' && unit <= u'ｚ') return static_cast<char16_t>(unit - u'ａ' + u'Ａ');
  return unit;
}

// Greedy matching that goes back to the last "*" only.
bool MatchesOne(std::u16string_view name, std::u16string_view pattern) {
  if (pattern == u"*.*") return true;
  size_t n = 0, p = 0, star = std::u16string_view::npos, resume = 0;
  while (n < name.size()) {
    if (p < pattern.size() && pattern[p] == u'*') {
      star = p++;
      resume = n;
    } else if (p < pattern.size() &&
               (pattern[p] == u'?' || Folded(pattern[p]) == Folded(name[n]))) {
      ++p;
      ++n;
    } else if (star != std::u16string_view::npos) {
      p = star + 1;
      n = ++resume;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == u'*') ++p;
  return p == pattern.size();
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

// What the documentation of GetFileTitle lists: no name, a wildcard or bracket in it, a separator
// or colon at its end.
int CheckTitle(std::u16string_view path) {
  if (path.empty() || path.find_first_of(u"*?[]") != std::u16string_view::npos) return -1;
  return path.size() >= MAX_PATH || TitleStart(path) == path.size() ? -1 : 0;
}

bool HasForbiddenCharacter(std::u16string_view name) {
  if (HasDrive(name)) name.remove_prefix(2);
  return std::any_of(name.begin(), name.end(), [](char16_t unit) {
    return unit < u' ' || std::u16string_view(u"<>|\":*?").find(unit) != std::u16string_view::npos;
  });
}

bool HasWildcard(std::u16string_view name) {
  return name.find_first_of(u"*?") != std::u16string_view::npos;
}

std::u16string Joined(std::u16string_view folder, std::u16string_view name) {
  std::u16string path(folder);
  if (!path.empty() && !IsSeparator(path.back())) path += u'\\';
  return path += name;
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

std::vector<std::u16string> FolderChain(std::u16string_view folder) {
  std::vector<std::u16string> chain(1, std::u16string(folder));
  while (chain.back().size() > kRootLength) chain.push_back(FolderAbove(chain.back()));
  std::reverse(chain.begin(), chain.end());
  return chain;
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

std::vector<Filter> ReadFilters(LPCWSTR filters) {
  std::vector<Filter> read;
  while (filters && *filters) {
    Filter filter;
    filter.text = filters;
    filters += filter.text.size() + 1;
    if (!*filters) break;
    filter.patterns = filters;
    filters += filter.patterns.size() + 1;
    read.push_back(std::move(filter));
  }
  return read;
}

bool Matches(std::u16string_view name, std::u16string_view patterns) {
  while (true) {
    const size_t end = std::min(patterns.find(u';'), patterns.size());
    if (MatchesOne(name, patterns.substr(0, end))) return true;
    if (end == patterns.size()) return false;
    patterns.remove_prefix(end + 1);
  }
}

Listing List(std::u16string_view folder, std::u16string_view patterns) {
  Listing listing;
  std::error_code error;
  std::filesystem::directory_iterator entry(
      Machine::Current().HostPath(folder),
      std::filesystem::directory_options::skip_permission_denied, error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    const std::string bytes = entry->path().filename().string();
    if (bytes.starts_with('.')) continue;  // hidden on the host
    std::u16string name = entry->path().filename().u16string();
    std::error_code unknown;
    if (entry->is_directory(unknown))
      listing.folders.push_back(std::move(name));
    else if (Matches(name, patterns))
      listing.files.push_back(std::move(name));
  }
  std::sort(listing.folders.begin(), listing.folders.end());
  std::sort(listing.files.begin(), listing.files.end());
  return listing;
}

}  // namespace platform::filedialog
