// Reading and replacing profile files.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <ctime>
#include <string>

#include "platform/system/profile.h"

namespace platform {
namespace {

// Files bear times no finer than this, in milliseconds.
constexpr int64_t kYoung = 50;

int64_t MillisecondsSince(int64_t seconds, int64_t nanoseconds) {
  timespec now;
  clock_gettime(CLOCK_REALTIME, &now);
  return (now.tv_sec - seconds) * 1000 + (now.tv_nsec - nanoseconds) / 1000000;
}

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int Get() const { return number_; }
  explicit operator bool() const { return number_ >= 0; }

 private:
  int number_;
};

bool ReadAll(int descriptor, size_t expected, std::string& bytes) {
  bytes.resize(expected + 1);  // one more, so that a grown file is noticed
  size_t size = 0;
  for (;;) {
    if (size == bytes.size()) bytes.resize(bytes.size() * 2);
    const ssize_t got = read(descriptor, bytes.data() + size, bytes.size() - size);
    if (got < 0) return false;
    if (got == 0) break;
    size += static_cast<size_t>(got);
  }
  bytes.resize(size);
  return true;
}

bool WriteAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t put = write(descriptor, bytes.data(), bytes.size());
    if (put <= 0) return false;
    bytes.remove_prefix(static_cast<size_t>(put));
  }
  return true;
}

// The name beside a file under which its replacement grows.
std::filesystem::path Beside(const std::filesystem::path& file) {
  static std::atomic<unsigned> counter = 0;
  return file.parent_path() / ("." + file.filename().string() + "." + std::to_string(getpid()) +
                               "." + std::to_string(counter++));
}

// Removes what killed processes have left beside a file; a living one needs far less than a minute.
void RemoveLeftovers(const std::filesystem::path& file) {
  const std::string start = "." + file.filename().string() + ".";
  const auto old = std::filesystem::file_time_type::clock::now() - std::chrono::minutes(1);
  std::error_code failed;
  for (const auto& entry : std::filesystem::directory_iterator(file.parent_path(), failed)) {
    const std::string name = entry.path().filename().string();
    if (!name.starts_with(start)) continue;
    const size_t dot = name.find('.', start.size());
    const bool numbered = dot != std::string::npos &&
                          name.find_first_not_of("0123456789", start.size()) == dot &&
                          name.find_first_not_of("0123456789", dot + 1) == std::string::npos;
    if (numbered && entry.last_write_time(failed) < old && !failed) {
      std::filesystem::remove(entry.path(), failed);
    }
  }
}

}  // namespace

bool ProfileCache::StampOf(int descriptor, Stamp& stamp) {
  struct stat information;
  if (fstat(descriptor, &information) != 0 || !S_ISREG(information.st_mode)) return false;
  stamp = {information.st_dev, information.st_ino, static_cast<uint64_t>(information.st_size),
           information.st_mtim.tv_sec, information.st_mtim.tv_nsec};
  return true;
}

void ProfileCache::Forget() {
  file_.clear();
  document_ = {};
  settled_ = false;
}

ProfileDocument* ProfileCache::Read(const std::filesystem::path& file) {
  if (file_ != file) Forget();
  const Descriptor descriptor(open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  Stamp stamp;
  std::string bytes;
  const bool there = descriptor && StampOf(descriptor.Get(), stamp);
  if (there && settled_ && stamp_ == stamp) return &document_;
  if (!there || !ReadAll(descriptor.Get(), stamp.size, bytes)) {
    Forget();
    return nullptr;
  }
  file_ = file;
  document_ = ProfileDocument::Parse(bytes);
  stamp_ = stamp;
  settled_ = MillisecondsSince(stamp.seconds, stamp.nanoseconds) > kYoung;
  return &document_;
}

ProfileDocument* ProfileCache::ReadOrNew(const std::filesystem::path& file) {
  std::error_code failed;
  if (std::filesystem::exists(file, failed) || failed) return Read(file);
  Forget();
  file_ = file;
  return &document_;
}

bool ProfileCache::Write(const std::filesystem::path& file) {
  constexpr mode_t kNewFile = 0644;
  constexpr mode_t kAnyWrite = S_IWUSR | S_IWGRP | S_IWOTH;
  struct stat old;
  const bool exists = stat(file.c_str(), &old) == 0;
  const mode_t mode = exists ? old.st_mode & 07777 : kNewFile;
  std::error_code failed;
  // A link stays a link; what it names is replaced.
  const std::filesystem::path target = exists ? std::filesystem::canonical(file, failed) : file;
  if (target != swept_) RemoveLeftovers(target);
  swept_ = target;
  const std::filesystem::path beside = Beside(target);
  const bool allowed = !failed && (!exists || (S_ISREG(old.st_mode) && (mode & kAnyWrite) != 0 &&
                                               access(file.c_str(), W_OK) == 0));
  bool done = false;
  if (allowed) {
    const Descriptor descriptor(
        open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kNewFile));
    done = descriptor && (!exists || fchmod(descriptor.Get(), mode) == 0) &&
           WriteAll(descriptor.Get(), document_.FileBytes()) && StampOf(descriptor.Get(), stamp_) &&
           rename(beside.c_str(), target.c_str()) == 0;
    if (descriptor && !done) unlink(beside.c_str());
  }
  settled_ = true;
  if (!done) Forget();
  return done;
}

}  // namespace platform
