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

// Files bear times no finer than this, in milliseconds.
constexpr int64_t kYoung = 50;
constexpr fs::perms kAnyWrite =
    fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;

int64_t MillisecondsSince(int64_t seconds, int64_t nanoseconds) {
  timespec now;
  clock_gettime(CLOCK_REALTIME, &now);
  return (now.tv_sec - seconds) * 1000 + (now.tv_nsec - nanoseconds) / 1000000;
}

// The name beside a file under which its replacement grows.
fs::path Beside(const fs::path& file) {
  static std::atomic<unsigned> counter = 0;
  return file.parent_path() / ("." + file.filename().string() + "." + std::to_string(getpid()) +
                               "." + std::to_string(counter++));
}

// Removes what killed processes have left beside a file; a living one needs far less than a minute.
void RemoveLeftovers(const fs::path& file) {
  const std::string start = "." + file.filename().string() + ".";
  const auto old = fs::file_time_type::clock::now() - std::chrono::minutes(1);
  std::error_code failed;
  for (const auto& entry : fs::directory_iterator(file.parent_path(), failed)) {
    const std::string name = entry.path().filename().string();
    if (!name.starts_with(start)) continue;
    const size_t dot = name.find('.', start.size());
    const bool numbered = dot != std::string::npos &&
                          name.find_first_not_of("0123456789", start.size()) == dot &&
                          name.find_first_not_of("0123456789", dot + 1) == std::string::npos;
    if (numbered && entry.last_write_time(failed) < old && !failed) {
      fs::remove(entry.path(), failed);
    }
  }
}

}  // namespace

// Whether it is a plain file.
bool ProfileCache::StampOf(const fs::path& file, Stamp& stamp) {
  struct stat information;
  if (stat(file.c_str(), &information) != 0 || !S_ISREG(information.st_mode)) return false;
  stamp = {information.st_dev, information.st_ino, static_cast<uint64_t>(information.st_size),
           information.st_mtim.tv_sec, information.st_mtim.tv_nsec};
  return true;
}

void ProfileCache::Forget() {
  document_ = {};
  settled_ = false;
}

ProfileDocument* ProfileCache::Read(const fs::path& file) {
  if (file_ != file) Forget();
  // The stamp is older than the bytes: a change between them makes the next call read again.
  Stamp stamp;
  const bool there = StampOf(file, stamp);
  if (there && settled_ && stamp_ == stamp) return &document_;
  const auto bytes = there ? BytesOf(file) : std::nullopt;
  if (!bytes) {
    Forget();
    return nullptr;
  }
  file_ = file;
  document_ = ProfileDocument::Parse(*bytes);
  stamp_ = stamp;
  settled_ = MillisecondsSince(stamp.seconds, stamp.nanoseconds) > kYoung;
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
  // A link stays a link; what it names is replaced.
  const fs::path target = exists ? fs::canonical(file, failed) : file;
  if (target != swept_) RemoveLeftovers(target);
  swept_ = target;
  const bool anyWrite = (old.permissions() & kAnyWrite) != fs::perms::none;
  bool done = false;
  if (!exists || (fs::is_regular_file(old) && anyWrite && access(file.c_str(), W_OK) == 0)) {
    const fs::path beside = Beside(target);
    done = WriteBytes(beside, document_.FileBytes());
    if (exists) fs::permissions(beside, old.permissions(), failed);
    done = done && (!exists || !failed) && StampOf(beside, stamp_) &&
           rename(beside.c_str(), target.c_str()) == 0;
    if (!done) unlink(beside.c_str());
  }
  settled_ = true;
  if (!done) Forget();
  return done;
}

}  // namespace platform
