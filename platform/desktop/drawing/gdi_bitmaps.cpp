// Bitmaps: from resources and made at run time, and copying them with or without stretching.
#include <cstdlib>
#include <cstring>

#include "platform/desktop/drawing/gdi.h"
#include "platform/system/resources.h"

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
  bitmap.bitsPerPixel = head.biBitCount;
  return true;
}

HBITMAP AddBitmap(Bitmap bitmap) {
  if (CreationFails()) return nullptr;
  ObjectStore& store = ObjectStore::Get();
  const std::lock_guard guard(store.lock);
  return static_cast<HBITMAP>(store.Add(OBJ_BITMAP, std::move(bitmap)));
}

struct Box {
  int x, y, width, height;
  RECT rect() const { return {x, y, x + width, y + height}; }
};

// Moves what was drawn in `from` to where `to` lies, stretching when the sizes differ.
class Mapping {
 public:
  Mapping(const Box& from, const Box& to) : from_(from), to_(to) {}
  LONG X(LONG x) const { return to_.x + MulDiv(x - from_.x, to_.width, from_.width); }
  LONG Y(LONG y) const { return to_.y + MulDiv(y - from_.y, to_.height, from_.height); }
  RECT Rect(const RECT& rect) const {
    return {X(rect.left), Y(rect.top), X(rect.right), Y(rect.bottom)};
  }
  void Move(DrawOp& op) const {
    op.rect = Rect(op.rect);
    op.at = {X(op.at.x), Y(op.at.y)};
    op.fontHeight = MulDiv(op.fontHeight, to_.height, from_.height);
    op.fontWidth = MulDiv(op.fontWidth, to_.width, from_.width);
    RECT clip = to_.rect();
    if (!IsRectEmpty(&op.clip)) {
      const RECT own = Rect(op.clip);
      IntersectRect(&clip, &clip, &own);
    }
    op.clip = clip;
  }

 private:
  Box from_, to_;
};

// Copying black on white: the target shows the resource itself, or for a bitmap made at run time
// what was drawn on it.
BOOL Copy(HDC target, const Box& to, HDC source, const Box& from, DWORD rop) {
  ObjectStore& store = ObjectStore::Get();
  const std::lock_guard guard(store.lock);
  const Dc* out = store.FindDc(target);
  const Dc* in = store.FindDc(source);
  if (!out || !in || rop != SRCCOPY) return FALSE;
  const auto* bitmap = store.FindAs<Bitmap>(in->state.bitmap);
  if (!bitmap) return FALSE;
  if (to.width == 0 || to.height == 0 || from.width <= 0 || from.height <= 0) return TRUE;
  DrawOp image;
  image.kind = DrawOp::Kind::kImage;
  image.rect = to.rect();
  image.bitmap = bitmap->resourceId;
  image.source = from.rect();
  const DisplayList drawn = bitmap->drawing;  // the target may be the same bitmap
  Record(store, *out, std::move(image));
  const Mapping mapping(from, to);
  for (DrawOp op : drawn) {
    mapping.Move(op);
    if (!IsRectEmpty(&op.clip)) Record(store, *out, std::move(op));
  }
  return TRUE;
}

}  // namespace

HBITMAP WINAPI LoadBitmapW(HINSTANCE instance, LPCWSTR name) {
  if (!IS_INTRESOURCE(name)) return nullptr;
  const WORD id = LOWORD(reinterpret_cast<ULONG_PTR>(name));
  const auto data = FindResourceBytes(instance, kResourceBitmap, id);
  Bitmap bitmap;
  bitmap.resourceId = id;
  if (!ReadBitmapHead(data.data(), data.size(), bitmap)) return nullptr;
  return AddBitmap(std::move(bitmap));
}

HBITMAP WINAPI CreateBitmap(int width, int height, UINT planes, UINT bitsPerPixel, const void*) {
  if (width <= 0 || height <= 0 || width > kLargestSide || height > kLargestSide) return nullptr;
  return AddBitmap({width, height, static_cast<WORD>(planes * bitsPerPixel), 0, {}});
}

HBITMAP WINAPI CreateCompatibleBitmap(HDC dc, int width, int height) {
  return GetObjectType(dc) ? CreateBitmap(width, height, 1, 32, nullptr) : nullptr;
}

BOOL WINAPI BitBlt(HDC dc, int x, int y, int width, int height, HDC source, int sourceX,
                   int sourceY, DWORD rop) {
  if (!source) return PatBlt(dc, x, y, width, height, rop);
  return Copy(dc, {x, y, width, height}, source, {sourceX, sourceY, width, height}, rop);
}

BOOL WINAPI StretchBlt(HDC dc, int x, int y, int width, int height, HDC source, int sourceX,
                       int sourceY, int sourceWidth, int sourceHeight, DWORD rop) {
  if (!source) return PatBlt(dc, x, y, width, height, rop);
  return Copy(dc, {x, y, width, height}, source, {sourceX, sourceY, sourceWidth, sourceHeight},
              rop);
}
