#include <cstdlib>
#include <cstring>

#include "platform/gdi32/gdi.h"
#include "platform/loader/resource_table.h"

using namespace platform;
using namespace platform::gdi;

namespace {

constexpr int kLargestSide = 32767;

// The head of a device-independent bitmap without its file header; false when it is damaged.
bool ReadBitmapHead(const std::byte* data, size_t size, Bitmap& bitmap) {
  BITMAPINFOHEADER head;
  if (size < sizeof head) return false;
  std::memcpy(&head, data, sizeof head);
  if (head.biSize < sizeof head || head.biSize > size) return false;
  if (head.biWidth <= 0 || head.biWidth > kLargestSide) return false;
  if (head.biHeight == 0 || std::llabs(head.biHeight) > kLargestSide) return false;
  bitmap.width = head.biWidth;
  bitmap.height = std::abs(head.biHeight);
  return true;
}

}  // namespace

HBITMAP WINAPI LoadBitmapW(HINSTANCE instance, LPCWSTR name) {
  if (!IS_INTRESOURCE(name)) return nullptr;
  const WORD id = LOWORD(reinterpret_cast<ULONG_PTR>(name));
  const auto data = FindResourceBytes(instance, kResourceBitmap, id);
  Bitmap bitmap;
  bitmap.resourceId = id;
  if (!ReadBitmapHead(data.data(), data.size(), bitmap)) return nullptr;
  return static_cast<HBITMAP>(AddMade(bitmap));
}
