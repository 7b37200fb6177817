// Where the build put its programs, shared objects and golden files: this test program lies among
// them.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace support {

// The path of a built file by its name.
inline std::string Built(const std::string& file) {
  static const std::filesystem::path directory =
      std::filesystem::read_symlink("/proc/self/exe").parent_path();
  return (directory / file).string();
}

// The bytes of a golden file.
inline std::string Golden(const std::string& file) {
  std::ifstream stream(Built("golden/" + file), std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace support
