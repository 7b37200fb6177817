#include "companions/template_builder.h"

#include <windows.h>
#include <commctrl.h>

namespace companions {
namespace {

constexpr std::size_t kItemCountAt = 8;  // words before cDlgItems

constexpr uint16_t kButtonAtom = 0x0080;
constexpr uint16_t kEditAtom = 0x0081;
constexpr uint16_t kStaticAtom = 0x0082;
constexpr uint16_t kComboBoxAtom = 0x0085;

}  // namespace

TemplateBuilder::TemplateBuilder(const WCHAR* caption, int width, int height) {
  Word(1);
  Word(0xFFFF);
  Long(0);  // help id
  Long(0);  // extended style
  Long(DS_SETFONT | DS_MODALFRAME | DS_CENTER | WS_POPUP | WS_VISIBLE | WS_CAPTION | WS_SYSMENU);
  Word(0);  // items, known in the end
  PlaceAt({0, 0, width, height});
  Word(0);  // no menu
  Word(0);  // the dialog class
  Text(caption);
  Word(9);            // point size
  Word(400);          // weight
  Word(0x80u << 8u);  // no italic; the Japanese character set
  Text(TEXT("ＭＳ Ｐゴシック"));
}

void TemplateBuilder::Label(const WCHAR* text, int id, Place place) {
  const DWORD filledLater = *text == 0 ? SS_NOPREFIX : 0;
  Add(nullptr, kStaticAtom, SS_LEFT | WS_GROUP | filledLater, text, id, place);
}

void TemplateBuilder::Edit(int id, Place place, DWORD style) {
  Add(nullptr, kEditAtom, ES_AUTOHSCROLL | WS_BORDER | WS_TABSTOP | style, TEXT(""), id, place);
}

void TemplateBuilder::Spin(int id, Place place, DWORD style) {
  Add(UPDOWN_CLASSW, 0, UDS_ALIGNRIGHT | UDS_ARROWKEYS | UDS_NOTHOUSANDS | style, TEXT(""), id,
      place);
}

void TemplateBuilder::DropDown(int id, Place place) {
  Add(nullptr, kComboBoxAtom, CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP, TEXT(""), id, place);
}

void TemplateBuilder::Button(const WCHAR* text, int id, Place place, bool isDefault) {
  Add(nullptr, kButtonAtom, WS_TABSTOP | (isDefault ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON), text, id,
      place);
}

LPCDLGTEMPLATEW TemplateBuilder::Get() const {
  return overflow_ ? nullptr : reinterpret_cast<LPCDLGTEMPLATEW>(words_.data());
}

void TemplateBuilder::Add(const WCHAR* className, uint16_t atom, DWORD style, const WCHAR* text,
                          int id, Place place) {
  Align();
  Long(0);  // help id
  Long(0);  // extended style
  Long(style | WS_CHILD | WS_VISIBLE);
  PlaceAt(place);
  Long(static_cast<uint32_t>(id));
  if (className) {
    Text(className);
  } else {
    Word(0xFFFF);
    Word(atom);
  }
  Text(text);
  Word(0);  // no creation data
  if (kItemCountAt < used_) words_[kItemCountAt] = ++items_;
}

void TemplateBuilder::Word(uint16_t value) {
  if (used_ == kCapacity) {
    overflow_ = true;
    return;
  }
  words_[used_++] = value;
}

void TemplateBuilder::Long(uint32_t value) {
  Word(static_cast<uint16_t>(value & 0xFFFF));
  Word(static_cast<uint16_t>(value >> 16));
}

void TemplateBuilder::Text(const WCHAR* text) {
  do {
    Word(*text);
  } while (*text++);
}

void TemplateBuilder::Align() {
  if (used_ % 2 != 0) Word(0);
}

void TemplateBuilder::PlaceAt(Place place) {
  Word(static_cast<uint16_t>(place.x));
  Word(static_cast<uint16_t>(place.y));
  Word(static_cast<uint16_t>(place.width));
  Word(static_cast<uint16_t>(place.height));
}

}  // namespace companions
