// Where the build put its programs and shared objects: this test program lies among them.
#pragma once

#include <filesystem>
#include <string>

namespace support {

// The path of a built file by its name.
inline std::string Built(const std::string& file) {
  static const std::filesystem::path directory =
      std::filesystem::read_symlink("/proc/self/exe").parent_path();
  return (directory / file).string();
}

}  // namespace support
