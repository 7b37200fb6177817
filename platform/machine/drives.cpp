// Drives: the mapping between Windows paths and host files.
#include <sys/stat.h>

#include "platform/machine/files.h"
#include "platform/machine/machine_impl.h"
#include "platform/machine/text.h"

namespace platform {
namespace {

namespace fs = std::filesystem;

bool IsSlash(char16_t c) { return c == u'\\' || c == u'/'; }
bool IsLetter(char16_t c) { return FoldUnit(c) >= u'A' && FoldUnit(c) <= u'Z'; }

// Returns the entry of a folder with a given name, ignoring letter case; the path with the name as
// given when there is none.
fs::path EntryOf(const fs::path& folder, std::u16string_view part) {
  fs::path exact = folder / ToUtf8(part);
  struct stat information;
  if (lstat(exact.c_str(), &information) == 0) return exact;
  std::error_code failed;
  for (fs::directory_iterator entry(folder, failed), end; !failed && entry != end;
       entry.increment(failed)) {
    if (EqualIgnoringCase(ToUtf16(entry->path().filename().native()), part)) return entry->path();
  }
  return exact;
}

// A path without its drive, with "." and ".." resolved: the number of parent folders to go up
// first, and the names to go down.
struct Parts {
  size_t parents = 0;
  std::vector<std::u16string_view> names;
};

Parts PartsOf(std::u16string_view path) {
  Parts parts;
  while (!path.empty()) {
    size_t end = 0;
    while (end < path.size() && !IsSlash(path[end])) ++end;
    const std::u16string_view part = path.substr(0, end);
    path.remove_prefix(end < path.size() ? end + 1 : end);
    if (part == u"..") {
      if (parts.names.empty()) {
        ++parts.parents;
      } else {
        parts.names.pop_back();
      }
    } else if (!part.empty() && part != u".") {
      parts.names.push_back(part);
    }
  }
  return parts;
}

}  // namespace

fs::path DriveFolder(const fs::path& state, char16_t drive) {
  const char16_t upper = FoldUnit(drive);
  if (upper == u'Z') return "/";
  return state / (std::string("drive_") + static_cast<char>(upper + ('a' - 'A')));
}

fs::path Machine::HostPath(std::u16string_view path) const {
  path = path.substr(0, path.find(u'\0'));
  const bool hasDrive = path.size() >= 2 && IsLetter(path[0]) && path[1] == u':';
  const std::u16string_view below = path.substr(hasDrive ? 2 : 0);
  const bool rooted = !below.empty() && IsSlash(below[0]);
  const Parts parts = PartsOf(below);
  fs::path host;
  if (path.size() >= 2 && IsSlash(path[0]) && IsSlash(path[1])) {
    host = impl_->state / "network";  // no other computer exists
  } else if (rooted) {
    host = DriveFolder(impl_->state, hasDrive ? path[0] : u'C');
  } else {
    host = impl_->CurrentFolder();
    const char16_t drive = WindowsPath(host)[0];
    const fs::path root = DriveFolder(impl_->state, hasDrive ? path[0] : drive);
    if (hasDrive && FoldUnit(path[0]) != drive) host = root;
    for (size_t i = 0; i < parts.parents && host != root; ++i) host = host.parent_path();
  }
  for (const std::u16string_view name : parts.names) host = EntryOf(host, name);
  return host;
}

fs::path Machine::Impl::CurrentFolder() {
  std::error_code failed;
  const std::lock_guard lock(mutex);
  return currentFolder.empty() ? fs::current_path(failed) : currentFolder;
}

std::u16string Machine::WindowsPath(const fs::path& hostPath) const {
  std::error_code failed;
  fs::path absolute = fs::absolute(hostPath, failed).lexically_normal();
  const fs::path drive = DriveFolder(impl_->state, u'C');
  const fs::path below = absolute.lexically_relative(drive);
  const bool onDrive = !below.empty() && *below.begin() != "..";
  std::u16string path = onDrive ? u"C:" : u"Z:";
  const fs::path relative = onDrive ? below : absolute.relative_path();
  for (const fs::path& part : relative) {
    if (part == "." || part.empty()) continue;
    path += u'\\';
    path += ToUtf16(part.native());
  }
  return path.size() == 2 ? path + u'\\' : path;
}

std::u16string Machine::windowsDirectory() const { return u"C:\\WINDOWS"; }
std::u16string Machine::systemDirectory() const { return u"C:\\WINDOWS\\system32"; }
std::u16string Machine::driverDirectory() const {
  return u"C:\\WINDOWS\\system32\\spool\\drivers\\w32x86";
}

void Machine::WriteFile(std::u16string_view windowsPath, std::string_view bytes) {
  const fs::path file = HostPath(windowsPath);
  fs::create_directories(file.parent_path());
  const std::lock_guard lock(impl_->profiles.mutex);
  impl_->profiles.Forget();
  if (!WriteBytes(file, bytes)) throw std::runtime_error("cannot write " + file.string());
}

std::optional<std::string> Machine::ReadFile(std::u16string_view windowsPath) const {
  return BytesOf(HostPath(windowsPath));
}

}  // namespace platform
