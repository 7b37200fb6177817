// Windows images in memory: mapped, relocated, bound to the stand-in's libraries and protected.
#pragma once

#include <windows.h>

#include <vector>

#include "platform/loader/image_file.h"

namespace platform {

// What the loader of a system does with an image's load configuration; older systems ignore it.
struct LoaderFeatures {
  bool fillsCookie =
      true;  // Windows 8: a cookie with the documented default value gets a random one
  bool guardsCalls = true;  // Windows 8.1: Control Flow Guard
};

enum class ImageKind { kLibrary, kProgram };

using ProgramEntry = void(WINAPI*)();

class MappedImage {
 public:
  // Maps an image whose bytes are needed during the call alone; its entry point is not called.
  // Throws ImageError, with nothing mapped: ERROR_BAD_EXE_FORMAT for a damaged image, one of
  // another machine's or kind, and one that wants what is not here (a fixed address, thread data,
  // memory that cannot be read, or both written and run); ERROR_MOD_NOT_FOUND for an import from an
  // unknown library, ERROR_PROC_NOT_FOUND for one that its library lacks.
  explicit MappedImage(Bytes file, LoaderFeatures features = {},
                       ImageKind kind = ImageKind::kLibrary);
  ~MappedImage();
  MappedImage(const MappedImage&) = delete;
  MappedImage& operator=(const MappedImage&) = delete;

  // As on the platform, a module's handle is its address.
  HMODULE handle() const { return reinterpret_cast<HMODULE>(memory_); }
  // An exported function by its name; null when there is none or another library is meant to have
  // it.
  FARPROC Entry(LPCSTR name) const;
  // Calls a library's entry point; TRUE when there is none.
  BOOL CallMain(DWORD reason) const;
  // A program's entry point.
  ProgramEntry EntryPoint() const;
  // The image's own resources, which live as long as it does.
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
