// Parses Windows images (PE format, 32 and 64 bits) and validates them, without mapping or binding
// them.
#pragma once

#include <winerror.h>

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

// Describes why an image is invalid, with the error code that LoadLibraryW sets.
class ImageError : public std::runtime_error {
 public:
  explicit ImageError(const std::string& what, DWORD error = ERROR_BAD_EXE_FORMAT)
      : std::runtime_error(what), code(error) {}
  DWORD code;
};

// Values of the file header Machine (IMAGE_FILE_MACHINE_...).
constexpr WORD kMachineX86 = 0x014C;
constexpr WORD kMachineX64 = 0x8664;
constexpr WORD kMachineArm64 = 0xAA64;

// Addresses are offsets in bytes from the base of the image; sizes are bytes.
struct ImageSection {
  std::string name;
  uint32_t address, size;
  uint32_t fileOffset, fileSize;  // the part in the file; the rest of the section is zero
  bool readable, writable, executable;
};
struct ImageExport {
  std::string name;
  uint32_t address;
  bool forwarder;  // the address is that of a text naming another library's function
};
struct ImageImport {
  std::string name;  // empty: by ordinal
  uint32_t slot;     // where the loader stores the function's address
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

// The load configuration (IMAGE_LOAD_CONFIG_DIRECTORY); 0 for members that the image does not have.
struct ImageLoadConfiguration {
  WORD dependentLoadFlags = 0;
  uint32_t securityCookie = 0;  // a writable word of the width of an address
  // Pointers to the check and dispatch functions of indirect calls.
  uint32_t guardCheck = 0, guardDispatch = 0;
  // Allowed targets of indirect calls, in ascending order; absent without Control Flow Guard.
  std::optional<std::vector<uint32_t>> callTargets;
};

// Identifies the symbol file of an image (a CodeView record of the debug directory).
struct ImageSymbols {
  std::array<BYTE, 16> guid;
  DWORD age;
  std::string file;
};

// Returns the default security cookie, which a loader replaces with a random one.
constexpr uint64_t DefaultSecurityCookie(bool wide) {
  return wide ? 0x00002B992DDFA232 : 0xBB40E64E;
}

// Returns true when a file starts like a Windows image.
bool IsImage(Bytes file);

class ImageFile {
 public:
  // Parses the whole image and validates every offset and count. The bytes must outlive the object.
  // Throws ImageError.
  explicit ImageFile(Bytes file);

  // Returns the bytes in the file for a range of the image. Throws ImageError when the range is not
  // entirely in the headers or in one section.
  Bytes At(uint32_t address, uint64_t size) const;
  Bytes headers() const { return file_.first(headerSize); }
  Bytes BytesOf(const ImageSection& section) const {
    return file_.subspan(section.fileOffset, std::min(section.fileSize, section.size));
  }

  WORD machine = 0;
  bool wide = false;   // PE32+: addresses have 64 bits
  bool isDll = false;  // else a program
  bool fixed = false;  // it has no relocations: it must be loaded at its base
  bool hasThreadData = false;
  bool hasShadowStacks = false;  // it is marked compatible with shadow stacks
  WORD dllCharacteristics = 0;
  uint64_t base = 0;  // the preferred address
  uint32_t size = 0, headerSize = 0;
  uint32_t entryPoint = 0;  // 0: none
  std::vector<ImageSection> sections;
  std::vector<ImageExport> exports;
  std::vector<ImageLibrary> imports;
  std::vector<ImageResource> resources;  // in their first language
  std::vector<uint32_t> relocations;  // positions of absolute addresses, of the width of the image
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

// Throws ImageError with this text unless the condition holds.
inline void Require(bool holds, const char* otherwise) {
  if (!holds) throw ImageError(otherwise);
}

// Valid tables do not overlap. An image that needs more reads than it has bytes is crafted to make
// the loader run for very long, and is rejected.
template <typename T>
T ImageFile::Read(uint64_t address) {
  Require(++reads_ <= file_.size(), "its tables overlap");
  Require(address < size, "something it points at lies outside its sections");
  T value;
  std::memcpy(&value, At(static_cast<uint32_t>(address), sizeof(T)).data(), sizeof(T));
  return value;
}

}  // namespace platform
