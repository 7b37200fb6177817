// Dialog templates made in memory, byte by byte as the resource compiler lays them out.
#pragma once

#include <windows.h>

#include <string_view>
#include <vector>

namespace support {

class DialogBuilder {
 public:
  explicit DialogBuilder(std::u16string_view caption = u"Dialog", bool extended = true);

  // Adds a control of a class by name; rectangle in dialog units. Visible, and a child.
  DialogBuilder& Add(std::u16string_view windowClass, int id, DWORD style = 0,
                     std::u16string_view text = u"", RECT units = {10, 10, 50, 22});
  DialogBuilder& Edit(int id, DWORD style = 0) { return Add(u"edit", id, style | WS_TABSTOP); }
  DialogBuilder& Button(int id, DWORD style = BS_PUSHBUTTON, std::u16string_view text = u"Press");

  // The finished template, aligned for use; valid until the builder changes or dies.
  LPCDLGTEMPLATEW Template();
  std::vector<BYTE> Bytes();

 private:
  void Word(DWORD value);
  void Long(DWORD value);
  void Text(std::u16string_view text);
  void Place(const RECT& units);

  bool extended_;
  WORD count_ = 0;
  size_t countAt_ = 0;
  std::vector<BYTE> bytes_;
  std::vector<DWORD> aligned_;
};

}  // namespace support
