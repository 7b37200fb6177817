#include "host/sheet/picture.h"

#include <cstdint>
#include <cstring>
#include <string_view>

#include "platform/loader/resource_table.h"

namespace printhost {
namespace {

constexpr std::size_t kFileHeaderSize = 14;  // BITMAPFILEHEADER

template <typename Number>
Number Read(std::string_view bytes, std::size_t at) {
  Number number;
  std::memcpy(&number, bytes.data() + at, sizeof number);
  return number;
}

void Append(std::string& out, std::uint32_t number) {
  out.append(reinterpret_cast<const char*>(&number), sizeof number);
}

// Returns the offset of the pixels in a bitmap resource; 0 when its header is invalid. Offsets in
// BITMAPINFOHEADER: biBitCount 14, biCompression 16, biClrUsed 32.
std::size_t PixelOffset(std::string_view bitmap) {
  if (bitmap.size() < 40) return 0;
  const std::size_t header = Read<std::uint32_t>(bitmap, 0);
  const unsigned bits = Read<std::uint16_t>(bitmap, 14);
  std::size_t colours = Read<std::uint32_t>(bitmap, 32);
  if (colours == 0 && bits <= 8) colours = std::size_t{1} << bits;
  const bool masks = header == 40 && Read<std::uint32_t>(bitmap, 16) == 3;
  const std::size_t offset = header + colours * 4 + (masks ? 12 : 0);
  return header >= 40 && offset <= bitmap.size() ? offset : 0;
}

}  // namespace

std::string BitmapFile(HMODULE module, int id) {
  const platform::Bytes bytes =
      platform::FindResourceBytes(module, platform::kResourceBitmap, static_cast<WORD>(id));
  const std::string_view bitmap(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  const std::size_t pixels = PixelOffset(bitmap);
  if (pixels == 0) return {};
  std::string file = "BM";
  file.reserve(kFileHeaderSize + bitmap.size());
  Append(file, static_cast<std::uint32_t>(kFileHeaderSize + bitmap.size()));
  Append(file, 0);
  Append(file, static_cast<std::uint32_t>(kFileHeaderSize + pixels));
  return file.append(bitmap);
}

}  // namespace printhost
