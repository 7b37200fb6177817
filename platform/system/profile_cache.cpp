// Reading and replacing profile files.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <ctime>
#include <string>

#include "platform/system/profile.h"

namespace platform {
namespace {

constexpr size_t kFilesKept = 8;
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

}  // namespace

bool ProfileCache::StampOf(int descriptor, Stamp& stamp) {
  struct stat information;
  if (fstat(descriptor, &information) != 0 || !S_ISREG(information.st_mode)) return false;
  stamp = {information.st_dev, information.st_ino, static_cast<uint64_t>(information.st_size),
           information.st_mtim.tv_sec, information.st_mtim.tv_nsec};
  return true;
}

ProfileCache::Entry& ProfileCache::Front(const std::filesystem::path& file) {
  const auto found = std::find_if(entries_.begin(), entries_.end(),
                                  [&file](const Entry& entry) { return entry.file == file; });
  if (found != entries_.end()) {
    entries_.splice(entries_.begin(), entries_, found);
  } else {
    entries_.push_front({file, {}, {}, false});
    if (entries_.size() > kFilesKept) entries_.pop_back();
  }
  return entries_.front();
}

void ProfileCache::Forget(const std::filesystem::path& file) {
  entries_.remove_if([&file](const Entry& entry) { return entry.file == file; });
}

void ProfileCache::ForgetAll() { entries_.clear(); }

ProfileDocument* ProfileCache::Read(const std::filesystem::path& file) {
  const Descriptor descriptor(open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  Stamp stamp;
  if (!descriptor || !StampOf(descriptor.Get(), stamp)) {
    Forget(file);
    return nullptr;
  }
  Entry& entry = Front(file);
  if (entry.settled && entry.stamp == stamp) return &entry.document;
  std::string bytes;
  if (!ReadAll(descriptor.Get(), stamp.size, bytes)) {
    Forget(file);
    return nullptr;
  }
  entry.document = ProfileDocument::Parse(bytes);
  entry.stamp = stamp;
  entry.settled = MillisecondsSince(stamp.seconds, stamp.nanoseconds) > kYoung;
  return &entry.document;
}

ProfileDocument* ProfileCache::ReadOrNew(const std::filesystem::path& file) {
  std::error_code failed;
  if (std::filesystem::exists(file, failed) || failed) return Read(file);
  Forget(file);
  return &Front(file).document;
}

bool ProfileCache::Write(const std::filesystem::path& file) {
  constexpr mode_t kNewFile = 0644;
  constexpr mode_t kAnyWrite = S_IWUSR | S_IWGRP | S_IWOTH;
  Entry& entry = Front(file);
  struct stat old;
  const bool exists = stat(file.c_str(), &old) == 0;
  const mode_t mode = exists ? old.st_mode & 07777 : kNewFile;
  std::error_code failed;
  // A link stays a link; what it names is replaced.
  const std::filesystem::path target = exists ? std::filesystem::canonical(file, failed) : file;
  const std::filesystem::path beside = Beside(target);
  const bool allowed = !failed && (!exists || (S_ISREG(old.st_mode) && (mode & kAnyWrite) != 0 &&
                                               access(file.c_str(), W_OK) == 0));
  bool done = false;
  if (allowed) {
    const Descriptor descriptor(
        open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kNewFile));
    done = descriptor && (!exists || fchmod(descriptor.Get(), mode) == 0) &&
           WriteAll(descriptor.Get(), entry.document.FileBytes()) &&
           StampOf(descriptor.Get(), entry.stamp) && rename(beside.c_str(), target.c_str()) == 0;
    if (descriptor && !done) unlink(beside.c_str());
  }
  entry.settled = true;
  if (!done) Forget(file);
  return done;
}

}  // namespace platform
