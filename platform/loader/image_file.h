// Windows images (the PE format, 32 and 64 bits) as bytes: what one holds, read and checked apart
// from mapping and binding it.
#pragma once

#include <windows.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/loader/resource_table.h"

namespace platform {

// What is wrong with an image, and the error that LoadLibraryW sets for it.
class ImageError : public std::runtime_error {
 public:
  explicit ImageError(const std::string& what, DWORD error = ERROR_BAD_EXE_FORMAT)
      : std::runtime_error(what), code(error) {}
  DWORD code;
};

// Machine, of the file header (IMAGE_FILE_MACHINE_...).
constexpr WORD kMachineX86 = 0x014C;
constexpr WORD kMachineX64 = 0x8664;
constexpr WORD kMachineArm64 = 0xAA64;

// Addresses count bytes from the image's base; sizes are bytes.
struct ImageSection {
  std::string name;
  uint32_t address, size;
  uint32_t fileOffset, fileSize;  // what lies in the file; the rest of the section is zeros
  bool readable, writable, executable;
};
struct ImageExport {
  std::string name;
  uint32_t address;
  bool forwarder;  // the address is that of a text that names another library's function
};
struct ImageImport {
  std::string name;  // empty: by ordinal
  uint32_t slot;     // where the function's address belongs
};
struct ImageLibrary {
  std::string name;
  std::vector<ImageImport> functions;
};
struct ImageResource {
  ResourceName type, name;
  uint32_t address, size;
};

// Flags of the header's DllCharacteristics (IMAGE_DLLCHARACTERISTICS_...).
constexpr WORD kHighEntropyAddress = 0x0020, kDynamicBase = 0x0040, kNxCompatible = 0x0100,
               kNoSeh = 0x0400, kGuardCf = 0x4000;

// What the load configuration (IMAGE_LOAD_CONFIG_DIRECTORY) tells the loader; 0 where it says
// nothing.
struct ImageLoadConfiguration {
  WORD dependentLoadFlags = 0;
  uint32_t securityCookie = 0;  // a word as wide as an address, which can be written
  // Pointers to the functions that indirect calls go through.
  uint32_t guardCheck = 0, guardDispatch = 0;
  // The functions that indirect calls may reach, in ascending order; absent without Control Flow
  // Guard.
  std::optional<std::vector<uint32_t>> callTargets;
};

// The file with an image's symbols (a CodeView record of the debug directory).
struct ImageSymbols {
  std::array<BYTE, 16> guid;
  DWORD age;
  std::string file;
};

// Returns the cookie by which a loader recognizes that it should fill it.
constexpr uint64_t DefaultSecurityCookie(bool wide) {
  return wide ? 0x00002B992DDFA232 : 0xBB40E64E;
}

// Whether a file means to be a Windows image.
bool IsImage(Bytes file);

class ImageFile {
 public:
  // Reads all of it and follows every offset and count that it will rest on later. The bytes have
  // to outlive the object. Throws ImageError.
  explicit ImageFile(Bytes file);

  // The bytes that the file holds for a place in the image; throws ImageError when they are not
  // all in the headers or in one section.
  Bytes At(uint32_t address, uint64_t size) const;
  Bytes headers() const { return file_.first(headerSize); }
  Bytes BytesOf(const ImageSection& section) const {
    return file_.subspan(section.fileOffset, std::min(section.fileSize, section.size));
  }

  WORD machine = 0;
  bool wide = false;   // PE32+: addresses have 64 bits
  bool isDll = false;  // else a program
  bool fixed = false;  // it can only lie at the address it was linked for
  bool hasThreadData = false;
  bool hasShadowStacks = false;  // it says that it keeps returns in order
  WORD dllCharacteristics = 0;
  uint64_t base = 0;  // the address it was linked for
  uint32_t size = 0, headerSize = 0;
  uint32_t entryPoint = 0;  // 0: none
  std::vector<ImageSection> sections;
  std::vector<ImageExport> exports;
  std::vector<ImageLibrary> imports;
  std::vector<ImageResource> resources;  // in the first of their languages
  std::vector<uint32_t> relocations;     // places of whole addresses, as wide as the image's are
  std::optional<ImageLoadConfiguration> loadConfiguration;
  std::optional<ImageSymbols> symbols;

 private:
  struct Directory {
    uint32_t address = 0, size = 0;
  };
  template <typename T>
  T Read(uint64_t address);
  std::string ReadText(uint64_t address);
  const ImageSection* SectionOf(uint64_t address, uint64_t size) const;

  void ReadSections(size_t offset, unsigned count, uint32_t alignment);
  void ReadExports(Directory directory);
  void ReadImports(Directory directory);
  void ReadFunctions(ImageLibrary& library, uint32_t names, uint32_t slots);
  void ReadRelocations(Directory directory);
  void ReadResources(Directory directory);
  void ReadLoadConfiguration(Directory directory);
  std::vector<uint32_t> ReadTable(uint64_t address, uint64_t count, uint64_t stride);
  uint32_t FromBase(uint64_t address, uint64_t length, bool written) const;
  void ReadDebugDirectory(Directory directory);

  Bytes file_;
  size_t reads_ = 0;
};

// Throws ImageError unless the condition holds.
inline void Require(bool holds, const char* otherwise) {
  if (!holds) throw ImageError(otherwise);
}

// Tables do not overlap in an image: what needs more reads than the file has bytes is made to take
// for ever.
template <typename T>
T ImageFile::Read(uint64_t address) {
  Require(++reads_ <= file_.size(), "its tables overlap");
  Require(address < size, "something it points at lies outside its sections");
  T value;
  std::memcpy(&value, At(static_cast<uint32_t>(address), sizeof(T)).data(), sizeof(T));
  return value;
}

}  // namespace platform
