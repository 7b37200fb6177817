// Reading and replacing profile files.
#include "platform/kernel32/profile_cache.h"

#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <ctime>
#include <string>

#include "platform/machine/files.h"

namespace platform {
namespace {

namespace fs = std::filesystem;

// File times are no finer than this, in milliseconds.
constexpr int64_t kTimeGranularityMs = 50;
constexpr fs::perms kAnyWrite =
    fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;

int64_t MillisecondsSince(int64_t seconds, int64_t nanoseconds) {
  timespec now;
  clock_gettime(CLOCK_REALTIME, &now);
  return (now.tv_sec - seconds) * 1000 + (now.tv_nsec - nanoseconds) / 1000000;
}

// Returns the name of the temporary file that replaces a file.
fs::path TemporaryName(const fs::path& file) {
  static std::atomic<unsigned> counter = 0;
  return file.parent_path() / ("." + file.filename().string() + "." + std::to_string(getpid()) +
                               "." + std::to_string(counter++));
}

// Removes temporary files of killed processes. A running process needs far less than a minute for a
// write.
void RemoveLeftovers(const fs::path& file) {
  const std::string start = "." + file.filename().string() + ".";
  const auto old = fs::file_time_type::clock::now() - std::chrono::minutes(1);
  std::error_code failed;
  for (const auto& entry : fs::directory_iterator(file.parent_path(), failed)) {
    const std::string name = entry.path().filename().string();
    if (!name.starts_with(start)) continue;
    const size_t dot = name.find('.', start.size());
    const bool isTemporary = dot != std::string::npos &&
                             name.find_first_not_of("0123456789", start.size()) == dot &&
                             name.find_first_not_of("0123456789", dot + 1) == std::string::npos;
    if (isTemporary && entry.last_write_time(failed) < old && !failed) {
      fs::remove(entry.path(), failed);
    }
  }
}

}  // namespace

// Reads the stamp of a file; returns false when it is not a regular file.
bool ProfileCache::StampOf(const fs::path& file, Stamp& stamp) {
  struct stat information;
  if (stat(file.c_str(), &information) != 0 || !S_ISREG(information.st_mode)) return false;
  stamp = {information.st_dev, information.st_ino, static_cast<uint64_t>(information.st_size),
           information.st_mtim.tv_sec, information.st_mtim.tv_nsec};
  return true;
}

void ProfileCache::Forget() {
  document_ = {};
  isStampReliable_ = false;
}

ProfileDocument* ProfileCache::Read(const fs::path& file) {
  if (file_ != file) Forget();
  // The stamp is read before the bytes: a change in between makes the next call read again.
  Stamp stamp;
  const bool exists = StampOf(file, stamp);
  if (exists && isStampReliable_ && stamp_ == stamp) return &document_;
  const auto bytes = exists ? BytesOf(file) : std::nullopt;
  if (!bytes) {
    Forget();
    return nullptr;
  }
  file_ = file;
  document_ = ProfileDocument::Parse(*bytes);
  stamp_ = stamp;
  isStampReliable_ = MillisecondsSince(stamp.seconds, stamp.nanoseconds) > kTimeGranularityMs;
  return &document_;
}

ProfileDocument* ProfileCache::ReadOrNew(const fs::path& file) {
  std::error_code failed;
  if (fs::exists(file, failed) || failed) return Read(file);
  Forget();
  file_ = file;
  return &document_;
}

bool ProfileCache::Write(const fs::path& file) {
  std::error_code failed;
  const fs::file_status old = fs::status(file, failed);
  const bool exists = fs::exists(old);
  // Replaces the target of a link, not the link.
  const fs::path target = exists ? fs::canonical(file, failed) : file;
  if (target != cleanedFile_) RemoveLeftovers(target);
  cleanedFile_ = target;
  const bool anyWrite = (old.permissions() & kAnyWrite) != fs::perms::none;
  bool done = false;
  if (!exists || (fs::is_regular_file(old) && anyWrite && access(file.c_str(), W_OK) == 0)) {
    const fs::path temporary = TemporaryName(target);
    done = WriteBytes(temporary, document_.FileBytes());
    if (exists) fs::permissions(temporary, old.permissions(), failed);
    done = done && (!exists || !failed) && StampOf(temporary, stamp_) &&
           rename(temporary.c_str(), target.c_str()) == 0;
    if (!done) unlink(temporary.c_str());
  }
  isStampReliable_ = true;
  if (!done) Forget();
  return done;
}

}  // namespace platform
