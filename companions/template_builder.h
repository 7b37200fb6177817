// Builds an extended dialog template (DLGTEMPLATEEX and DLGITEMTEMPLATEEX of the documentation).
#pragma once

#include <windows.h>

#include <cstdint>
#include <vector>

namespace companions {

// Numbers that are stored in 16 bits each. A place is x, y, width and height in dialog units.
using Words = std::initializer_list<int64_t>;

class TemplateBuilder {
 public:
  // Starts a modal dialog that is centred over its owner and has the font of the driver's dialogs.
  TemplateBuilder(const WCHAR* caption, int width, int height) {
    Put({1, 0xFFFF});
    Head(DS_SETFONT | DS_MODALFRAME | DS_CENTER | WS_POPUP | WS_VISIBLE | WS_CAPTION | WS_SYSMENU);
    // The number of items, which Add increments; the place; no menu; the dialog class.
    Put({0, 0, 0, width, height, 0, 0});
    Text(caption);
    Put({9, 400, 0x80 << 8});  // points, weight, no italic and the Japanese character set
    Text(TEXT("ＭＳ Ｐゴシック"));
  }

  // Adds a visible control of a class that is given by name.
  void Add(const WCHAR* className, DWORD style, const WCHAR* text, int id, Words place) {
    if (words_.size() % 2 != 0) Put({0});
    Head(style | WS_CHILD | WS_VISIBLE);
    Put(place);
    Put({id, id >> 16});
    Text(className);
    Text(text);
    Put({0});  // no creation data
    ++words_[kItemCountAt];
  }

  LPCDLGTEMPLATEW Get() const { return reinterpret_cast<LPCDLGTEMPLATEW>(words_.data()); }

 private:
  static constexpr std::size_t kItemCountAt = 8;  // words before cDlgItems

  void Put(Words values) {
    for (const int64_t value : values) words_.push_back(static_cast<uint16_t>(value));
  }
  // Appends the help id, the extended style and the style.
  void Head(DWORD style) { Put({0, 0, 0, 0, style, style >> 16}); }
  void Text(const WCHAR* text) {
    do {
      Put({*text});
    } while (*text++);
  }

  std::vector<uint16_t> words_;
};

}  // namespace companions
