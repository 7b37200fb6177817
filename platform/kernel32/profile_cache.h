// Profile files: the parsed form of the one that was used last.
#pragma once

#include <filesystem>
#include <map>
#include <mutex>
#include <string>

#include "platform/kernel32/profile_document.h"

namespace platform {

// Caches the last parsed file, as long as its inode, size and time stay the same. The caller holds
// `mutex` during each call and while it uses the document.
class ProfileCache {
 public:
  // Returns null when the file does not exist or cannot be read.
  ProfileDocument* Read(const std::filesystem::path& file);
  // Like Read, but returns an empty document when the file does not exist.
  ProfileDocument* ReadOrNew(const std::filesystem::path& file);
  // Replaces the file with the document of the last Read or ReadOrNew. On failure the file is
  // unchanged and the document is dropped.
  bool Write(const std::filesystem::path& file);
  void Forget();

  std::mutex mutex;
  // Files in memory only, by the path that callers use.
  std::map<std::u16string, ProfileDocument> inMemory;

 private:
  struct Stamp {
    uint64_t device = 0, inode = 0, size = 0;
    int64_t seconds = 0, nanoseconds = 0;
    bool operator==(const Stamp&) const = default;
  };
  static bool StampOf(const std::filesystem::path& file, Stamp& stamp);

  std::filesystem::path file_;  // the last file that was read or written
  Stamp stamp_;
  ProfileDocument document_;
  // False when the file was so recent that a later change could have the same stamp.
  bool isStampReliable_ = false;
  std::filesystem::path cleanedFile_;  // the last file whose leftovers were removed
};

}  // namespace platform
