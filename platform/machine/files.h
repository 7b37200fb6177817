// Whole files of the host.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

// Nothing when it is no plain file or cannot be read.
std::optional<std::string> BytesOf(const std::filesystem::path& file);
// Whether all bytes are in the file, made or emptied before.
bool WriteBytes(const std::filesystem::path& file, std::string_view bytes);

}  // namespace platform
