// Arbitrary bytes as a Windows image, up to the call of its entry point. Starts with the libraries
// that the tests of the loader load.
#include <algorithm>

#include "platform/loader/image_map.h"
#include "tests/fuzz/harness.h"

namespace {

// Requires that the exports, resources and sections of a loaded image are inside its memory and
// readable.
void RequireSound(const platform::ImageFile& image, const platform::MappedImage& mapped) {
  const auto* const base = reinterpret_cast<const std::byte*>(mapped.handle());
  const auto within = [&](const void* address, size_t size) {
    const auto at = static_cast<size_t>(static_cast<const std::byte*>(address) - base);
    return at <= image.size && image.size - at >= size;
  };
  for (const platform::Resource& resource : mapped.Resources()) {
    Require(within(resource.data.data(), resource.data.size()));
    const platform::Bytes data = resource.data;
    Require(std::count(data.begin(), data.end(), std::byte{0}) >= 0);
  }
  for (const platform::ImageExport& each : image.exports) {
    const FARPROC entry = mapped.Entry(each.name.c_str());
    Require(entry == nullptr || within(reinterpret_cast<const void*>(entry), 1));
  }
  for (const platform::ImageSection& section : image.sections) {
    Require(!section.writable || !section.executable);
    Require(within(base + section.address, section.size));
    static_cast<void>(*const_cast<const volatile std::byte*>(base + section.address));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const platform::Bytes file(reinterpret_cast<const std::byte*>(data), size);
  try {
    const platform::ImageFile image(file);
    const platform::MappedImage mapped(file);
    RequireSound(image, mapped);
  } catch (const platform::ImageError& error) {
    Require(error.code == ERROR_BAD_EXE_FORMAT || error.code == ERROR_MOD_NOT_FOUND ||
            error.code == ERROR_PROC_NOT_FOUND);
  }
  return 0;
}
