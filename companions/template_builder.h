// Writes an extended dialog template (the documentation's DLGTEMPLATEEX and DLGITEMTEMPLATEEX).
#pragma once

#include <windows.h>

#include <cstdint>
#include <vector>

namespace companions {

struct Place {
  int x, y, width, height;  // dialog units
};

class TemplateBuilder {
 public:
  // A modal dialog in the middle of its owner, with the 9-point font of the driver's own dialogs.
  TemplateBuilder(const WCHAR* caption, int width, int height) {
    Head(1 | 0xFFFFu << 16,
         DS_SETFONT | DS_MODALFRAME | DS_CENTER | WS_POPUP | WS_VISIBLE | WS_CAPTION | WS_SYSMENU);
    Words({0});  // items, counted as they come
    At({0, 0, width, height});
    Words({0, 0});  // no menu, the dialog class
    Text(caption);
    Words({9, 400, 0x80u << 8u});  // points, weight, no italic and the Japanese character set
    Text(TEXT("ＭＳ Ｐゴシック"));
  }

  // A visible control of a class by name.
  void Add(const WCHAR* className, DWORD style, const WCHAR* text, int id, Place place) {
    if (words_.size() % 2 != 0) Words({0});
    Head(0, style | WS_CHILD | WS_VISIBLE);
    At(place);
    Words({static_cast<uint32_t>(id) & 0xFFFF, static_cast<uint32_t>(id) >> 16});
    Text(className);
    Text(text);
    Words({0});  // no creation data
    ++words_[kItemCountAt];
  }

  LPCDLGTEMPLATEW Get() const { return reinterpret_cast<LPCDLGTEMPLATEW>(words_.data()); }

 private:
  static constexpr std::size_t kItemCountAt = 8;  // words before cDlgItems

  void Words(std::initializer_list<uint32_t> values) {
    for (const uint32_t value : values) words_.push_back(static_cast<uint16_t>(value));
  }
  // The first words (a control's help id), help id (extended style), extended style, style: a
  // dialog has one double word more in front.
  void Head(uint32_t mark, DWORD style) {
    if (mark != 0) Words({mark & 0xFFFF, mark >> 16});
    Words({0, 0, 0, 0, style & 0xFFFF, style >> 16});
  }
  void At(Place place) {
    for (const int number : {place.x, place.y, place.width, place.height})
      words_.push_back(static_cast<uint16_t>(number));
  }
  void Text(const WCHAR* text) {
    do {
      words_.push_back(static_cast<uint16_t>(*text));
    } while (*text++);
  }

  std::vector<uint16_t> words_;
};

}  // namespace companions
