#include <windows.h>

#include <cstdlib>
#include <cstring>

#include "platform/gdi32/gdi.h"
#include "platform/loader/resource_table.h"

using namespace platform;
using namespace platform::gdi;

namespace {

constexpr int kLargestSide = 32767;

// Reads the header of a device-independent bitmap without file header; returns false when it is
// damaged.
bool ReadBitmapHeader(const std::byte* data, size_t size, Bitmap& bitmap) {
  BITMAPINFOHEADER header;
  if (size < sizeof header) return false;
  std::memcpy(&header, data, sizeof header);
  if (header.biSize < sizeof header || header.biSize > size) return false;
  if (header.biWidth <= 0 || header.biWidth > kLargestSide) return false;
  if (header.biHeight == 0 || std::llabs(header.biHeight) > kLargestSide) return false;
  bitmap.width = header.biWidth;
  bitmap.height = std::abs(header.biHeight);
  return true;
}

}  // namespace

HBITMAP WINAPI LoadBitmapW(HINSTANCE instance, LPCWSTR name) {
  if (!IS_INTRESOURCE(name)) return nullptr;
  const WORD id = LOWORD(reinterpret_cast<ULONG_PTR>(name));
  const auto data = FindResourceBytes(instance, kResourceBitmap, id);
  Bitmap bitmap;
  bitmap.resourceId = id;
  if (!ReadBitmapHeader(data.data(), data.size(), bitmap)) return nullptr;
  return static_cast<HBITMAP>(AddObject(bitmap));
}
