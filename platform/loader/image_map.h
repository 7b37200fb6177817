// Maps Windows images: loads, relocates, binds and protects them.
#pragma once

#include <windef.h>

#include <vector>

#include "platform/loader/image_file.h"

namespace platform {

// Features of the load configuration that the loader of a system supports; older systems ignore
// them.
struct LoaderFeatures {
  bool fillsCookie =
      true;  // Windows 8: a cookie with the documented default value gets a random one
  bool guardsCalls = true;  // Windows 8.1: Control Flow Guard
};

enum class ImageKind { kLibrary, kProgram };

using ProgramEntry = void(WINAPI*)();

class MappedImage {
 public:
  // Maps an image without calling its entry point. The bytes are needed only during the call.
  // Throws ImageError, with nothing mapped: ERROR_BAD_EXE_FORMAT for an image that is damaged, for
  // another machine or of another kind, or that needs a feature which is missing here (a fixed
  // address, thread data, sections that cannot be read or are writable and executable);
  // ERROR_MOD_NOT_FOUND for an import from an unknown library; ERROR_PROC_NOT_FOUND for a function
  // that its library lacks.
  explicit MappedImage(Bytes file, LoaderFeatures features = {},
                       ImageKind kind = ImageKind::kLibrary);
  ~MappedImage();
  MappedImage(const MappedImage&) = delete;
  MappedImage& operator=(const MappedImage&) = delete;

  // The handle of a module is its address, as on Windows.
  HMODULE handle() const { return reinterpret_cast<HMODULE>(memory_); }
  // Returns an exported function by name; null when the image does not export it or forwards it to
  // another library.
  FARPROC Entry(LPCSTR name) const;
  // Calls the entry point of a library; returns TRUE when it has none.
  BOOL CallMain(DWORD reason) const;
  // Returns the entry point of a program.
  ProgramEntry EntryPoint() const;
  // Returns the resources of the image, which live as long as this object.
  std::vector<Resource> Resources() const;

 private:
  void Fill(const ImageFile& image, const std::vector<FARPROC>& bound);
  void FillCookie(const ImageFile& image);
  void GuardCalls(const ImageFile& image);
  bool Protect(const ImageFile& image);

  std::byte* memory_ = nullptr;
  size_t size_ = 0;
  uint32_t entryPoint_ = 0;
  std::vector<ImageExport> exports_;
  std::vector<ImageResource> resources_;
};

}  // namespace platform
