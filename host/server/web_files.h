// The page's files, linked into the program.
#pragma once

#include <span>
#include <string_view>

namespace printhost {

struct WebFile {
  std::string_view name;  // below the page's address
  const char* type;
  std::string_view bytes;
};

// Returns all files; the page itself comes first and has an empty name.
std::span<const WebFile> WebFiles();

}  // namespace printhost
