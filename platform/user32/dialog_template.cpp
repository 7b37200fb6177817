#include "platform/user32/dialog_template.h"

#include <algorithm>
#include <cstring>

namespace platform {

namespace {

constexpr WORD kOrdinalMark = 0xFFFF;

// A name or an ordinal.
struct Name {
  std::u16string text;
  WORD ordinal = 0;
};

class Reader {
 public:
  Reader(const void* data, size_t size) : data_(static_cast<const BYTE*>(data)), size_(size) {}

  template <typename T>
  T Take() {
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

  // Empty for 0x0000, an ordinal behind 0xFFFF, else a terminated text.
  Name TakeName() {
    Name name;
    WORD unit = Take<WORD>();
    if (unit == kOrdinalMark) {
      name.ordinal = Take<WORD>();
      return name;
    }
    for (; unit != 0 && ok_; unit = Take<WORD>()) name.text.push_back(static_cast<char16_t>(unit));
    return name;
  }

  // A place in dialog units: half as many pixels more, rounded half up.
  RECT TakePlace() {
    const auto pixels = [this] { return (Take<SHORT>() * 3 + 1) >> 1; };
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

ControlRequest TakeItem(Reader& reader) {
  ControlRequest item;
  reader.AlignToDword();
  reader.Skip(2 * sizeof(DWORD));  // help id, extended style
  item.style = reader.Take<DWORD>();
  item.rect = reader.TakePlace();
  item.id = static_cast<int>(reader.Take<DWORD>());
  const Name windowClass = reader.TakeName();
  item.className = windowClass.text;
  item.classAtom = windowClass.ordinal;
  item.text = reader.TakeName().text;
  reader.Skip(reader.Take<WORD>());  // creation data
  return item;
}

}  // namespace

bool ParseDialogTemplate(const void* data, size_t size, DialogTemplate& out) {
  if (data == nullptr) return false;
  Reader reader(data, size);
  if (reader.Take<WORD>() != 1 || reader.Take<WORD>() != kOrdinalMark) return false;
  reader.Skip(2 * sizeof(DWORD));  // help id, extended style
  out.style = reader.Take<DWORD>();
  const WORD count = reader.Take<WORD>();
  out.rect = reader.TakePlace();
  reader.TakeName();  // menu
  reader.TakeName();  // class
  out.caption = reader.TakeName().text;
  if ((out.style & DS_SETFONT) != 0) {
    reader.Skip(3 * sizeof(WORD));  // points, weight, italic and character set
    reader.TakeName();              // face
  }
  for (WORD i = 0; i < count && reader.ok(); ++i) out.items.push_back(TakeItem(reader));
  return reader.ok();
}

}  // namespace platform
