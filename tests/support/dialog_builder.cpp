#include "support/dialog_builder.h"

#include <cstring>

namespace support {

DialogBuilder::DialogBuilder(std::u16string_view caption, bool extended) : extended_(extended) {
  const DWORD style = WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_SETFONT;
  if (extended) {
    Word(1);
    Word(0xFFFF);
    Long(0);  // help id
    Long(WS_EX_CONTEXTHELP);
  }
  Long(style);
  if (!extended) Long(WS_EX_CONTEXTHELP);
  countAt_ = bytes_.size();
  Word(0);
  Place({0, 0, 200, 100});
  Word(0);  // no menu
  Word(0);  // the usual class
  Text(caption);
  Word(9);
  if (extended) Long(0x01000190);
  Text(u"MS UI Gothic");
}

DialogBuilder& DialogBuilder::Add(std::u16string_view windowClass, int id, DWORD style,
                                  std::u16string_view text, RECT units) {
  while (bytes_.size() % 4 != 0) bytes_.push_back(0xAA);
  const DWORD whole = style ^ (WS_CHILD | WS_VISIBLE);  // a caller's WS_VISIBLE takes it away
  if (extended_) {
    Long(0);
    Long(0);
  }
  Long(whole);
  if (!extended_) Long(0);
  Place(units);
  if (extended_) {
    Long(static_cast<DWORD>(id));
  } else {
    Word(static_cast<DWORD>(id));
  }
  if (windowClass == u"button") {
    Word(0xFFFF);
    Word(0x80);
  } else {
    Text(windowClass);
  }
  Text(text);
  Word(0);
  ++count_;
  return *this;
}

DialogBuilder& DialogBuilder::Button(int id, DWORD style, std::u16string_view text) {
  return Add(u"button", id, style | WS_TABSTOP, text);
}

std::vector<BYTE> DialogBuilder::Bytes() {
  std::memcpy(bytes_.data() + countAt_, &count_, sizeof count_);
  return bytes_;
}

LPCDLGTEMPLATEW DialogBuilder::Template() {
  const std::vector<BYTE> bytes = Bytes();
  aligned_.assign(bytes.size() / 4 + 1, 0);
  std::memcpy(aligned_.data(), bytes.data(), bytes.size());
  return reinterpret_cast<LPCDLGTEMPLATEW>(aligned_.data());
}

void DialogBuilder::Word(DWORD value) {
  bytes_.push_back(LOBYTE(value));
  bytes_.push_back(HIBYTE(value));
}

void DialogBuilder::Long(DWORD value) {
  Word(LOWORD(value));
  Word(HIWORD(value));
}

void DialogBuilder::Text(std::u16string_view text) {
  for (char16_t c : text) Word(c);
  Word(0);
}

void DialogBuilder::Place(const RECT& units) {
  Word(static_cast<DWORD>(units.left));
  Word(static_cast<DWORD>(units.top));
  Word(static_cast<DWORD>(units.right - units.left));
  Word(static_cast<DWORD>(units.bottom - units.top));
}

}  // namespace support
