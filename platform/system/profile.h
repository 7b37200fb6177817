// Profile files: the parsed form of those in use.
#pragma once

#include <filesystem>
#include <list>
#include <memory>
#include <mutex>

#include "platform/system/profile_document.h"

namespace platform {

// A few parsed files, each valid as long as its file keeps inode, size and time. The functions are
// called under the lock.
class ProfileCache {
 public:
  // Null when there is no such file or it cannot be read. The document may be read and changed as
  // long as the lock is held.
  ProfileDocument* Read(const std::filesystem::path& file);
  // The same, a new empty document when there is no file; null when it cannot be read.
  ProfileDocument* ReadOrNew(const std::filesystem::path& file);
  // Replaces the file by the document that Read or ReadOrNew gave. When that fails the file is as
  // it was and the document is forgotten.
  bool Write(const std::filesystem::path& file);
  void ForgetAll();

  std::mutex mutex;

 private:
  struct Stamp {
    uint64_t device = 0, inode = 0, size = 0;
    int64_t seconds = 0, nanoseconds = 0;
    bool operator==(const Stamp&) const = default;
  };
  struct Entry {
    std::filesystem::path file;
    Stamp stamp;
    ProfileDocument document;
    // False when the file was so young at reading that a later change could bear the same stamp.
    bool settled = false;
  };
  static bool StampOf(int descriptor, Stamp& stamp);
  Entry& Front(const std::filesystem::path& file);
  void Forget(const std::filesystem::path& file);

  std::list<Entry> entries_;  // the last used first
};

}  // namespace platform
