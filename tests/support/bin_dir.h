// The files that the build puts into the folder of the test program: shared objects and golden
// files.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace support {

// Returns the path of a built file.
inline std::string Built(const std::string& file) {
  static const std::filesystem::path directory =
      std::filesystem::read_symlink("/proc/self/exe").parent_path();
  return (directory / file).string();
}

// Returns the content of a golden file. Throws when it is missing.
inline std::string Golden(const std::string& file) {
  std::ifstream stream(Built("golden/" + file), std::ios::binary);
  if (!stream) throw std::runtime_error("no golden file " + file);
  return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace support
