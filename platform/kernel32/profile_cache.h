// Profile files: the parsed form of the one in use.
#pragma once

#include <filesystem>
#include <map>
#include <mutex>
#include <string>

#include "platform/kernel32/profile_document.h"

namespace platform {

// The last parsed file, valid as long as the file keeps inode, size and time. The functions are
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
  void Forget();

  std::mutex mutex;
  // Files that lie in memory alone, by their path as calls name it.
  std::map<std::u16string, ProfileDocument> held;

 private:
  struct Stamp {
    uint64_t device = 0, inode = 0, size = 0;
    int64_t seconds = 0, nanoseconds = 0;
    bool operator==(const Stamp&) const = default;
  };
  static bool StampOf(const std::filesystem::path& file, Stamp& stamp);

  std::filesystem::path file_;  // what was read or written last
  Stamp stamp_;
  ProfileDocument document_;
  // False when the file was so young at reading that a later change could bear the same stamp.
  bool settled_ = false;
  std::filesystem::path swept_;  // the last file beside which leftovers were looked for
};

}  // namespace platform
