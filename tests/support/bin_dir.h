// What the build put beside this test program: shared objects and golden files.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace support {

// The path of a built file by its name.
inline std::string Built(const std::string& file) {
  static const std::filesystem::path directory =
      std::filesystem::read_symlink("/proc/self/exe").parent_path();
  return (directory / file).string();
}

inline std::string Golden(const std::string& file) {
  std::ifstream stream(Built("golden/" + file), std::ios::binary);
  if (!stream) throw std::runtime_error("no golden file " + file);
  return {std::istreambuf_iterator<char>(stream), {}};
}

// The rows of a golden table; lines that begin with "#" are none.
inline std::vector<std::string> GoldenRows(const std::string& file) {
  std::istringstream stream(Golden(file));
  std::vector<std::string> rows;
  for (std::string line; std::getline(stream, line);) {
    if (line[0] != '#') rows.push_back(line);
  }
  return rows;
}

}  // namespace support
