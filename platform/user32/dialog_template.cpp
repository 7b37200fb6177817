#include "platform/user32/dialog_template.h"

#include <algorithm>
#include <cstring>

namespace platform {

namespace {

constexpr WORD kOrdinalMark = 0xFFFF;

// A name, or an ordinal.
struct Name {
  std::u16string text;
  WORD ordinal = 0;
};

class Reader {
 public:
  Reader(const void* data, size_t size) : data_(static_cast<const BYTE*>(data)), size_(size) {}

  template <typename T>
  T Read() {
    T value = {};
    if (sizeof(T) > size_ - at_) {
      ok_ = false;
      at_ = size_;
      return value;
    }
    std::memcpy(&value, data_ + at_, sizeof(T));
    at_ += sizeof(T);
    return value;
  }

  // Reads a name: 0x0000 is empty, 0xFFFF precedes an ordinal, anything else is a terminated text.
  Name ReadName() {
    Name name;
    WORD unit = Read<WORD>();
    if (unit == kOrdinalMark) {
      name.ordinal = Read<WORD>();
      return name;
    }
    for (; unit != 0 && ok_; unit = Read<WORD>()) name.text.push_back(static_cast<char16_t>(unit));
    return name;
  }

  // Reads a rectangle and converts dialog units to pixels (1.5 each, rounded half up).
  RECT ReadPlace() {
    const auto pixels = [this] { return (Read<SHORT>() * 3 + 1) >> 1; };
    const LONG left = pixels(), top = pixels(), width = pixels(), height = pixels();
    return {left, top, left + width, top + height};
  }

  void Skip(size_t bytes) {
    if (bytes > size_ - at_) ok_ = false;
    at_ = std::min(size_, at_ + std::min(bytes, size_));
  }
  void AlignToDword() { at_ = std::min(size_, (at_ + 3) & ~size_t{3}); }
  bool ok() const { return ok_; }

 private:
  const BYTE* data_;
  size_t size_;
  size_t at_ = 0;
  bool ok_ = true;
};

ControlRequest ReadItem(Reader& reader) {
  ControlRequest item;
  reader.AlignToDword();
  reader.Skip(2 * sizeof(DWORD));  // help id, extended style
  item.style = reader.Read<DWORD>();
  item.rect = reader.ReadPlace();
  item.id = static_cast<int>(reader.Read<DWORD>());
  const Name windowClass = reader.ReadName();
  item.className = windowClass.text;
  item.classAtom = windowClass.ordinal;
  item.text = reader.ReadName().text;
  reader.Skip(reader.Read<WORD>());  // creation data
  return item;
}

}  // namespace

bool ParseDialogTemplate(const void* data, size_t size, DialogTemplate& out) {
  if (data == nullptr) return false;
  Reader reader(data, size);
  if (reader.Read<WORD>() != 1 || reader.Read<WORD>() != kOrdinalMark) return false;
  reader.Skip(2 * sizeof(DWORD));  // help id, extended style
  out.style = reader.Read<DWORD>();
  const WORD count = reader.Read<WORD>();
  out.rect = reader.ReadPlace();
  reader.ReadName();  // menu
  reader.ReadName();  // class
  out.caption = reader.ReadName().text;
  if ((out.style & DS_SETFONT) != 0) {
    reader.Skip(3 * sizeof(WORD));  // points, weight, italic and character set
    reader.ReadName();              // face
  }
  for (WORD i = 0; i < count && reader.ok(); ++i) out.items.push_back(ReadItem(reader));
  return reader.ok();
}

}  // namespace platform
