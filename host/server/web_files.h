// The page's files, part of the program so that it serves them from wherever it stands.
#pragma once

#include <span>
#include <string_view>

namespace printhost {

struct WebFile {
  std::string_view name;  // below the page's address
  const char* type;
  std::string_view bytes;
};

// The first is the page itself, with an empty name.
std::span<const WebFile> WebFiles();

}  // namespace printhost
