// Windows images (the PE format, 32 and 64 bits) as bytes: what one holds, read and checked apart
// from mapping and binding it.
#pragma once

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/system/resources.h"

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
  uint64_t base = 0;  // the address it was linked for
  uint32_t size = 0, headerSize = 0;
  uint32_t entryPoint = 0;  // 0: none
  std::vector<ImageSection> sections;
  std::vector<ImageExport> exports;
  std::vector<ImageLibrary> imports;
  std::vector<ImageResource> resources;  // in the first of their languages
  std::vector<uint32_t> relocations;     // places of whole addresses, as wide as the image's are

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

  Bytes file_;
  size_t reads_ = 0;
};

}  // namespace platform
