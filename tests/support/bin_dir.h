// The files that the build puts into the folder of the test program: shared objects and golden
// files.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

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

// Returns the lines of a golden table except those that begin with "#".
inline std::vector<std::string> GoldenRows(const std::string& file) {
  std::istringstream stream(Golden(file));
  std::vector<std::string> rows;
  for (std::string line; std::getline(stream, line);) {
    if (line[0] != '#') rows.push_back(line);
  }
  return rows;
}

}  // namespace support
