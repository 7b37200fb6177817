// Reading and writing whole files of the host.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

// Returns the bytes of a regular file; nullopt for anything else and when it cannot be read.
std::optional<std::string> BytesOf(const std::filesystem::path& file);
// Creates or truncates a file and writes the bytes. Returns false when not all of them were
// written.
bool WriteBytes(const std::filesystem::path& file, std::string_view bytes);

}  // namespace platform
