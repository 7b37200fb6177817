#include "platform/loader/resource_table.h"

#include <link.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <optional>

#include "platform/loader/image_file.h"
#include "platform/machine/machine_impl.h"
#include "platform/machine/text.h"

namespace platform {
namespace {

// Returns the section ".rsrc" of a shared object; empty when it has none. Returns any other file
// unchanged.
Bytes SectionOf(Bytes file) {
  if (file.size() < EI_NIDENT || std::memcmp(file.data(), ELFMAG, SELFMAG) != 0) return file;
  const auto header = At<ElfW(Ehdr)>(file, 0);
  if (!header || header->e_shentsize != sizeof(ElfW(Shdr))) return {};
  const auto sectionAt = [&](uint64_t index) {
    return At<ElfW(Shdr)>(file, header->e_shoff + index * sizeof(ElfW(Shdr)));
  };
  const auto names = sectionAt(header->e_shstrndx);
  const Bytes texts = names ? Slice(file, names->sh_offset, names->sh_size) : Bytes();
  constexpr std::string_view kName(".rsrc\0", 6);
  for (unsigned i = 0; i < header->e_shnum; ++i) {
    const auto section = sectionAt(i);
    if (!section) return {};
    const Bytes name = Slice(texts, section->sh_name, kName.size());
    if (!name.empty() && std::memcmp(name.data(), kName.data(), kName.size()) == 0) {
      return Slice(file, section->sh_offset, section->sh_size);
    }
  }
  return {};
}

// Reads a type or name of a resource header: 0xFFFF and a number, or a terminated text.
std::optional<ResourceName> ReadName(Bytes bytes, uint64_t& offset) {
  ResourceName name;
  const auto first = At<WORD>(bytes, offset);
  if (!first) return std::nullopt;
  if (*first == 0xFFFF) {
    const auto id = At<WORD>(bytes, offset + 2);
    if (!id) return std::nullopt;
    name.id = *id;
    offset += 4;
    return name;
  }
  for (;; offset += 2) {
    const auto unit = At<WCHAR>(bytes, offset);
    if (!unit) return std::nullopt;
    if (*unit == 0) break;
    name.text.push_back(FoldUnit(*unit));
  }
  offset += 2;
  return name;
}

}  // namespace

std::vector<std::byte> ReadWhole(const std::filesystem::path& file) {
  std::error_code failed;
  const uintmax_t size = std::filesystem::file_size(file, failed);
  if (failed) return {};
  std::vector<std::byte> bytes(static_cast<size_t>(size));
  std::ifstream in(file, std::ios::binary);
  in.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  bytes.resize(static_cast<size_t>(in.gcount()));
  return bytes;
}

ResourceName NameOf(LPCWSTR idOrText) {
  ResourceName name;
  if (IS_INTRESOURCE(idOrText)) {
    name.id = static_cast<WORD>(reinterpret_cast<ULONG_PTR>(idOrText));
  } else {
    name.text = FoldCase(idOrText);
  }
  return name;
}

ResourceTable::ResourceTable(const std::filesystem::path& file) : file_(ReadWhole(file)) {
  if (!IsImage(file_)) {
    Index(SectionOf(file_));
    return;
  }
  try {
    const ImageFile image(file_);
    for (const ImageResource& each : image.resources) {
      resources_.push_back({each.type, each.name, image.At(each.address, each.size)});
    }
  } catch (const ImageError&) {
  }
}

// An entry consists of the size of the data, the size of the header, type, name and further words;
// the data follows. Header and data are aligned to four bytes.
void ResourceTable::Index(Bytes section) {
  for (uint64_t offset = 0;;) {
    const auto dataSize = At<DWORD>(section, offset);
    const auto headerSize = At<DWORD>(section, offset + 4);
    if (!dataSize || !headerSize || *headerSize < 32) return;
    uint64_t cursor = offset + 8;
    const auto type = ReadName(section, cursor);
    const auto name = type ? ReadName(section, cursor) : std::nullopt;
    const Bytes data = Slice(section, offset + *headerSize, *dataSize);
    if (!name || data.size() != *dataSize) return;
    if (*dataSize > 0) resources_.push_back({*type, *name, data});
    offset = (offset + *headerSize + *dataSize + 3) / 4 * 4;
  }
}

const Resource* ResourceTable::Find(const ResourceName& type, const ResourceName& name) const {
  const auto found = std::find_if(
      resources_.begin(), resources_.end(),
      [&](const Resource& resource) { return resource.type == type && resource.name == name; });
  return found == resources_.end() ? nullptr : &*found;
}

Bytes FindResourceBytes(HINSTANCE module, LPCWSTR type, LPCWSTR name) {
  const ResourceTable* table = Machine::Current().impl().modules.Resources(module);
  const Resource* resource = table == nullptr ? nullptr : table->Find(NameOf(type), NameOf(name));
  return resource == nullptr ? Bytes() : resource->data;
}

}  // namespace platform
