#include "platform/machine/files.h"

#include <fstream>

namespace platform {

namespace fs = std::filesystem;

std::optional<std::string> BytesOf(const fs::path& file) {
  std::error_code failed;
  if (!fs::is_regular_file(file, failed)) return std::nullopt;
  std::string bytes(static_cast<size_t>(fs::file_size(file, failed)), '\0');
  std::ifstream in(file, std::ios::binary);
  if (!in.read(bytes.data(), static_cast<std::streamsize>(bytes.size())) && !in.eof()) {
    return std::nullopt;
  }
  bytes.resize(static_cast<size_t>(in.gcount()));
  return bytes;
}

bool WriteBytes(const fs::path& file, std::string_view bytes) {
  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  out.close();
  return out.good();
}

}  // namespace platform
