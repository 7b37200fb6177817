#include "platform/desktop/windows/dialog_template.h"

#include <algorithm>
#include <cstring>

#include "platform/desktop/windows/window.h"

namespace platform {

namespace {

constexpr WORD kOrdinalMark = 0xFFFF;

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
  TemplateName TakeName() {
    TemplateName name;
    WORD unit = Take<WORD>();
    if (unit == kOrdinalMark) {
      name.ordinal = Take<WORD>();
      return name;
    }
    for (; unit != 0 && ok_; unit = Take<WORD>()) name.text.push_back(static_cast<char16_t>(unit));
    return name;
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

template <typename T>
void TakePlace(Reader& reader, T& out) {
  out.x = reader.Take<SHORT>();
  out.y = reader.Take<SHORT>();
  out.cx = reader.Take<SHORT>();
  out.cy = reader.Take<SHORT>();
}

TemplateItem TakeItem(Reader& reader, bool extended) {
  TemplateItem item;
  reader.AlignToDword();
  if (extended) reader.Take<DWORD>();  // help id
  if (extended) item.exStyle = reader.Take<DWORD>();
  item.style = reader.Take<DWORD>();
  if (!extended) item.exStyle = reader.Take<DWORD>();
  TakePlace(reader, item);
  item.id = extended ? static_cast<int>(reader.Take<DWORD>()) : reader.Take<WORD>();
  item.windowClass = reader.TakeName();
  item.title = reader.TakeName();
  reader.Skip(reader.Take<WORD>());  // creation data
  return item;
}

bool IsExtended(const void* data, size_t size) {
  WORD head[2] = {};
  if (size < sizeof head) return false;
  std::memcpy(head, data, sizeof head);
  return head[0] == 1 && head[1] == kOrdinalMark;
}

}  // namespace

bool ParseDialogTemplate(const void* data, size_t size, DialogTemplate& out) {
  if (data == nullptr) return false;
  Reader reader(data, size);
  const bool extended = IsExtended(data, size);
  if (extended) {
    reader.Take<DWORD>();  // version and signature
    reader.Take<DWORD>();  // help id
    out.exStyle = reader.Take<DWORD>();
  }
  out.style = reader.Take<DWORD>();
  if (!extended) out.exStyle = reader.Take<DWORD>();
  const WORD count = reader.Take<WORD>();
  TakePlace(reader, out);
  reader.TakeName();  // menu
  reader.TakeName();  // class
  out.caption = reader.TakeName().text;
  if ((out.style & DS_SETFONT) != 0) {
    reader.Take<WORD>();                 // points
    if (extended) reader.Take<DWORD>();  // weight, italic, character set
    reader.TakeName();                   // face
  }
  for (WORD i = 0; i < count && reader.ok(); ++i) out.items.push_back(TakeItem(reader, extended));
  return reader.ok();
}

int PixelsAcross(int units) { return MulDiv(units, 6, 4); }
int PixelsDown(int units) { return MulDiv(units, 12, 8); }

bool ReadTemplateInfo(const void* data, size_t size, TemplateInfo& info) {
  DialogTemplate dialog;
  if (!ParseDialogTemplate(data, size, dialog)) return false;
  info.width = PixelsAcross(dialog.cx);
  info.height = PixelsDown(dialog.cy);
  info.caption = dialog.caption;
  return true;
}

}  // namespace platform
