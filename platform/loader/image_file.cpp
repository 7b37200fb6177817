#include "platform/loader/image_file.h"

#include <algorithm>
#include <cstring>

#include "platform/machine/text.h"

namespace platform {
namespace {

// Structures of the published PE format, with the members that are read.
struct FileHeader {
  WORD machine, sections;
  DWORD timeStamp, symbols, symbolCount;
  WORD optionalHeaderSize, characteristics;
};
constexpr WORD kRelocationsStripped = 0x0001;
constexpr WORD kExecutableImage = 0x0002;
constexpr WORD kDll = 0x2000;
constexpr size_t kHeaderOffsetAt = 0x3C;

// The part of the optional header that PE32 and PE32+ share.
struct CommonHeader {
  WORD magic, linker;
  DWORD codeSize, dataSize, zeroSize, entryPoint, codeBase;
  DWORD bases[2];  // PE32: of data, of the image; PE32+: of the image
  DWORD sectionAlignment, fileAlignment;
  WORD versions[6];
  DWORD reserved, imageSize, headerSize, checkSum;
  WORD subsystem, dllCharacteristics;
};
static_assert(sizeof(CommonHeader) == 72);
constexpr WORD kMagic32 = 0x010B, kMagic64 = 0x020B;
// Four sizes of the width of an address follow, then the number of directories.
constexpr size_t kDirectoryCountAt32 = 92, kDirectoryCountAt64 = 108;
enum {
  kExports,
  kImports,
  kResources,
  kRelocations = 5,
  kDebug = 6,
  kThreadData = 9,
  kLoadConfiguration = 10,
  kDirectories = 16
};

struct SectionHeader {
  char name[8];
  DWORD size, address, fileSize, fileOffset, relocations, lines;
  WORD relocationCount, lineCount;
  DWORD characteristics;
};
static_assert(sizeof(SectionHeader) == 40);
constexpr DWORD kExecutes = 0x20000000, kReads = 0x40000000, kWrites = 0x80000000;
constexpr unsigned kMostSections = 96;

struct ExportDirectory {
  DWORD characteristics, timeStamp, version, name, ordinalBase, functionCount, nameCount;
  DWORD functions, names, ordinals;
};
struct ImportDescriptor {
  DWORD lookup, timeStamp, forwarderChain, name, slots;
};
struct RelocationBlock {
  DWORD page, size;
};
constexpr unsigned kRelocateNothing = 0, kRelocate32 = 3, kRelocate64 = 10;

struct ResourceDirectory {
  DWORD characteristics, timeStamp, version;
  WORD named, numbered;
};
struct ResourceEntry {
  DWORD name, offset;
};
struct ResourceData {
  DWORD address, size, codePage, reserved;
};
constexpr DWORD kIsText = 0x80000000, kIsDirectory = 0x80000000;

constexpr uint32_t kPage = 4096;
constexpr uint32_t kLargestImage = 1u << 30;

template <typename T>
T Raw(Bytes bytes, uint64_t offset) {
  Require(offset <= bytes.size() && bytes.size() - offset >= sizeof(T), "its headers are cut off");
  T value;
  std::memcpy(&value, bytes.data() + offset, sizeof(T));
  return value;
}

uint64_t RoundUp(uint64_t value, uint64_t alignment) {
  return (value + alignment - 1) / alignment * alignment;
}

bool IsPowerOfTwo(uint32_t value) { return value != 0 && (value & (value - 1)) == 0; }

}  // namespace

bool IsImage(Bytes file) {
  return file.size() >= 2 && file[0] == std::byte{'M'} && file[1] == std::byte{'Z'};
}

ImageFile::ImageFile(Bytes file) : file_(file) {
  Require(IsImage(file), "it is no Windows image");
  const uint64_t at = Raw<DWORD>(file, kHeaderOffsetAt);
  Require(Raw<DWORD>(file, at) == 0x00004550, "it is no Windows image");  // "PE\0\0"
  const auto header = Raw<FileHeader>(file, at + 4);
  const uint64_t optional = at + 4 + sizeof(FileHeader);
  const auto common = Raw<CommonHeader>(file, optional);
  wide = common.magic == kMagic64;
  Require(wide || common.magic == kMagic32, "its optional header is of no known kind");
  Require(wide ? header.machine != kMachineX86 : header.machine != kMachineX64,
          "its addresses are not its machine's");
  Require((header.characteristics & kExecutableImage) != 0, "it was not linked to its end");
  machine = header.machine;
  fixed = (header.characteristics & kRelocationsStripped) != 0;
  isDll = (header.characteristics & kDll) != 0;
  base = wide ? Raw<uint64_t>(file, optional + 24) : Raw<DWORD>(file, optional + 28);
  entryPoint = common.entryPoint;
  size = common.imageSize;
  headerSize = common.headerSize;
  dllCharacteristics = common.dllCharacteristics;
  Require(headerSize <= file.size(), "its headers are cut off");
  Require(size <= kLargestImage, "it claims more memory than an image may have");
  Require(IsPowerOfTwo(common.sectionAlignment) && common.sectionAlignment >= kPage,
          "its sections share pages");

  const size_t countAt = wide ? kDirectoryCountAt64 : kDirectoryCountAt32;
  const auto count = Raw<DWORD>(file, optional + countAt);
  Require(
      count <= kDirectories && countAt + 4 + count * sizeof(Directory) <= header.optionalHeaderSize,
      "its directories do not fit into their header");
  Directory directories[kDirectories];
  for (DWORD i = 0; i < count; ++i) {
    directories[i] = Raw<Directory>(file, optional + countAt + 4 + i * sizeof(Directory));
  }
  ReadSections(static_cast<size_t>(optional) + header.optionalHeaderSize, header.sections,
               common.sectionAlignment);
  if (entryPoint != 0) {
    const ImageSection* section = SectionOf(entryPoint, 1);
    Require(section != nullptr && section->executable, "its entry point lies outside its code");
  }
  ReadExports(directories[kExports]);
  ReadImports(directories[kImports]);
  ReadResources(directories[kResources]);
  ReadRelocations(directories[kRelocations]);
  hasThreadData = directories[kThreadData].size != 0;
  ReadLoadConfiguration(directories[kLoadConfiguration]);
  ReadDebugDirectory(directories[kDebug]);
}

// Sections follow the headers and one another without gaps, as they do in memory.
void ImageFile::ReadSections(size_t offset, unsigned count, uint32_t alignment) {
  Require(count > 0 && count <= kMostSections, "its number of sections is none or too large");
  Require(offset + count * sizeof(SectionHeader) <= headerSize, "its headers are cut off");
  uint64_t next = RoundUp(headerSize, alignment);
  for (unsigned i = 0; i < count; ++i) {
    const auto header = Raw<SectionHeader>(file_, offset + i * sizeof(SectionHeader));
    const DWORD length = header.size != 0 ? header.size : header.fileSize;
    Require(header.address == next && length > 0, "its sections do not follow one another");
    next = RoundUp(uint64_t{header.address} + length, alignment);
    Require(next <= size, "a section reaches past its end");
    Require(header.fileSize == 0 || (header.fileOffset <= file_.size() &&
                                     file_.size() - header.fileOffset >= header.fileSize),
            "a section is cut off");
    sections.push_back({{header.name, strnlen(header.name, sizeof(header.name))},
                        header.address,
                        length,
                        header.fileSize == 0 ? 0 : header.fileOffset,
                        header.fileSize,
                        (header.characteristics & kReads) != 0,
                        (header.characteristics & kWrites) != 0,
                        (header.characteristics & kExecutes) != 0});
  }
  Require(next == size, "its size is not that of its sections");
}

const ImageSection* ImageFile::SectionOf(uint64_t address, uint64_t length) const {
  const auto section = std::find_if(sections.begin(), sections.end(), [&](const auto& each) {
    return address >= each.address && address - each.address < each.size;
  });
  if (section == sections.end() || section->size - (address - section->address) < length) {
    return nullptr;
  }
  return &*section;
}

Bytes ImageFile::At(uint32_t address, uint64_t length) const {
  if (address < headerSize && headerSize - address >= length) {
    return file_.subspan(address, static_cast<size_t>(length));
  }
  const ImageSection* section = SectionOf(address, length);
  Require(section != nullptr && address - section->address <= section->fileSize &&
              section->fileSize - (address - section->address) >= length,
          "something it points at lies outside its sections");
  return file_.subspan(section->fileOffset + (address - section->address),
                       static_cast<size_t>(length));
}

std::string ImageFile::ReadText(uint64_t address) {
  std::string text;
  while (const char letter = Read<char>(address + text.size())) text.push_back(letter);
  return text;
}

void ImageFile::ReadExports(Directory directory) {
  if (directory.size == 0) return;
  const auto table = Read<ExportDirectory>(directory.address);
  for (uint64_t i = 0; i < table.nameCount; ++i) {
    const auto ordinal = Read<WORD>(table.ordinals + i * sizeof(WORD));
    Require(ordinal < table.functionCount, "an exported name leads to no function");
    const auto address = Read<DWORD>(table.functions + uint64_t{ordinal} * sizeof(DWORD));
    Require(SectionOf(address, 1) != nullptr, "an exported function lies outside its sections");
    exports.push_back({ReadText(Read<DWORD>(table.names + i * sizeof(DWORD))), address,
                       address - directory.address < directory.size});
  }
}

void ImageFile::ReadImports(Directory directory) {
  if (directory.size == 0) return;
  for (uint64_t at = directory.address;; at += sizeof(ImportDescriptor)) {
    const auto descriptor = Read<ImportDescriptor>(at);
    if (descriptor.name == 0 || descriptor.slots == 0) return;
    ImageLibrary& library = imports.emplace_back();
    library.name = ReadText(descriptor.name);
    ReadFunctions(library, descriptor.lookup != 0 ? descriptor.lookup : descriptor.slots,
                  descriptor.slots);
  }
}

// Each word of the lookup table is an ordinal, when its highest bit is set, or the address of a
// hint of two bytes and the name.
void ImageFile::ReadFunctions(ImageLibrary& library, uint32_t names, uint32_t slots) {
  const size_t width = wide ? sizeof(uint64_t) : sizeof(DWORD);
  for (uint64_t offset = 0;; offset += width) {
    const uint64_t word = wide ? Read<uint64_t>(names + offset) : Read<DWORD>(names + offset);
    if (word == 0) return;
    Require(SectionOf(slots + offset, width) != nullptr, "an import's place is in no section");
    const bool byOrdinal = word >> (width * 8 - 1) != 0;
    library.functions.push_back({byOrdinal ? std::string() : ReadText(word + sizeof(WORD)),
                                 static_cast<uint32_t>(slots + offset)});
    Require(byOrdinal || !library.functions.back().name.empty(), "an import has no name");
  }
}

void ImageFile::ReadRelocations(Directory directory) {
  const size_t width = wide ? sizeof(uint64_t) : sizeof(DWORD);
  const uint64_t end = uint64_t{directory.address} + directory.size;
  for (uint64_t at = directory.address; at < end;) {
    const auto block = Read<RelocationBlock>(at);
    Require(block.size >= sizeof(block) && block.size % sizeof(WORD) == 0 && block.size <= end - at,
            "its relocations are damaged");
    for (uint64_t word = at + sizeof(block); word < at + block.size; word += sizeof(WORD)) {
      const auto entry = Read<WORD>(word);
      const unsigned kind = entry >> 12;
      if (kind == kRelocateNothing) continue;
      const uint64_t place = uint64_t{block.page} + (entry & 0xFFF);
      Require(kind == (wide ? kRelocate64 : kRelocate32) && SectionOf(place, width) != nullptr,
              "its relocations are damaged");
      relocations.push_back(static_cast<uint32_t>(place));
    }
    at += block.size;
  }
}

// Resources are a tree of three levels: types, names, languages.
void ImageFile::ReadResources(Directory directory) {
  if (directory.size == 0) return;
  const auto entriesAt = [&](uint64_t offset) {
    const auto table = Read<ResourceDirectory>(directory.address + offset);
    std::vector<ResourceEntry> entries;
    for (unsigned i = 0; i < unsigned{table.named} + table.numbered; ++i) {
      entries.push_back(Read<ResourceEntry>(directory.address + offset + sizeof(table) +
                                            i * sizeof(ResourceEntry)));
    }
    return entries;
  };
  const auto nameOf = [&](const ResourceEntry& entry) {
    ResourceName name;
    name.id = static_cast<WORD>(entry.name);
    if ((entry.name & kIsText) == 0) return name;
    const uint64_t at = directory.address + uint64_t{entry.name & ~kIsText};
    const auto length = Read<WORD>(at);
    name.id = 0;
    for (unsigned i = 1; i <= length; ++i) {
      name.text.push_back(FoldUnit(Read<WCHAR>(at + i * sizeof(WCHAR))));
    }
    return name;
  };
  const auto below = [](const ResourceEntry& entry) {
    Require((entry.offset & kIsDirectory) != 0, "its resources are damaged");
    return entry.offset & ~kIsDirectory;
  };
  for (const ResourceEntry& type : entriesAt(0)) {
    for (const ResourceEntry& name : entriesAt(below(type))) {
      const auto languages = entriesAt(below(name));
      Require(!languages.empty() && (languages[0].offset & kIsDirectory) == 0,
              "its resources are damaged");
      const auto data = Read<ResourceData>(uint64_t{directory.address} + languages[0].offset);
      At(data.address, data.size);
      resources.push_back({nameOf(type), nameOf(name), data.address, data.size});
    }
  }
}

}  // namespace platform
