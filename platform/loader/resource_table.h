// Compiled resources of modules: the resource directory of a Windows image, or the .res form in the
// section ".rsrc" of a shared object.
#pragma once

#include <windows.h>

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "platform/loader/bytes.h"

namespace platform {

// A type or a name of a resource: a number, or a text whose letter case does not matter.
struct ResourceName {
  WORD id = 0;
  std::u16string text;  // folded; empty: the number counts
  bool operator==(const ResourceName&) const = default;
};
ResourceName NameOf(LPCWSTR idOrText);

struct Resource {
  ResourceName type;
  ResourceName name;
  Bytes data;
};

// A file's bytes; none when it cannot be read.
std::vector<std::byte> ReadWhole(const std::filesystem::path& file);

// The resources of one file. A damaged .res gives those before the damage, a damaged image none.
class ResourceTable {
 public:
  // Of an image, of a shared object's section, or of a .res file itself.
  explicit ResourceTable(const std::filesystem::path& file);
  // Of an image in memory, which has to outlive the table.
  explicit ResourceTable(std::vector<Resource> resources) : resources_(std::move(resources)) {}
  const Resource* Find(const ResourceName& type, const ResourceName& name) const;

 private:
  void Index(Bytes section);
  std::vector<std::byte> file_;
  std::vector<Resource> resources_;
};

// The bytes of a loaded module's resource; empty when there is none. They live until the module is
// freed. type and name are numbers (MAKEINTRESOURCEW) or texts.
Bytes FindResourceBytes(HINSTANCE module, LPCWSTR type, LPCWSTR name);
inline Bytes FindResourceBytes(HINSTANCE module, WORD type, WORD id) {
  return FindResourceBytes(module, MAKEINTRESOURCEW(type), MAKEINTRESOURCEW(id));
}

constexpr WORD kResourceBitmap = 2;
constexpr WORD kResourceIcon = 3;
constexpr WORD kResourceDialog = 5;
constexpr WORD kResourceString = 6;
constexpr WORD kResourceVersion = 16;
constexpr WORD kResourceManifest = 24;

}  // namespace platform
