// Compiled resources of modules: the resource directory of a Windows image, or the .res format in
// the section ".rsrc" of a shared object.
#pragma once

#include <windef.h>

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "platform/loader/bytes.h"

namespace platform {

// The type or name of a resource: a number, or a text that ignores letter case.
struct ResourceName {
  WORD id = 0;
  std::u16string text;  // folded; empty: the id applies
  bool operator==(const ResourceName&) const = default;
};
ResourceName NameOf(LPCWSTR idOrText);

struct Resource {
  ResourceName type;
  ResourceName name;
  Bytes data;
};

// Returns the bytes of a file; empty when it cannot be read.
std::vector<std::byte> ReadWhole(const std::filesystem::path& file);

// The resources of one file. A damaged .res yields the resources before the damage, a damaged image
// none.
class ResourceTable {
 public:
  // Reads an image, the section of a shared object, or a .res file.
  explicit ResourceTable(const std::filesystem::path& file);
  // Holds the resources of an image in memory, which must outlive the table.
  explicit ResourceTable(std::vector<Resource> resources) : resources_(std::move(resources)) {}
  const Resource* Find(const ResourceName& type, const ResourceName& name) const;

 private:
  void Index(Bytes section);
  std::vector<std::byte> file_;
  std::vector<Resource> resources_;
};

// Returns the bytes of a resource of a loaded module, valid until the module is freed; empty when
// it does not exist. Type and name are numbers (MAKEINTRESOURCEW) or texts.
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
