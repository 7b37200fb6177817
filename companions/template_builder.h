// Writes an extended dialog template (the documentation's DLGTEMPLATEEX and DLGITEMTEMPLATEEX) into
// a buffer of fixed size.
#pragma once

#include <windows.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace companions {

struct Place {
  int x, y, width, height;  // dialog units
};

class TemplateBuilder {
 public:
  // A modal dialog in the middle of its owner, with the 9-point font of the driver's own dialogs.
  TemplateBuilder(const WCHAR* caption, int width, int height);

  void Label(const WCHAR* text, int id, Place place);
  void Edit(int id, Place place, DWORD style);
  void Spin(int id, Place place, DWORD style);
  void DropDown(int id, Place place);
  void Button(const WCHAR* text, int id, Place place, bool isDefault);

  // The template, or null when it did not fit.
  LPCDLGTEMPLATEW Get() const;

 private:
  void Add(const WCHAR* className, uint16_t atom, DWORD style, const WCHAR* text, int id,
           Place place);
  void Word(uint16_t value);
  void Long(uint32_t value);
  void Text(const WCHAR* text);
  void Align();
  void PlaceAt(Place place);

  static constexpr std::size_t kCapacity = 6144;  // words; the largest dialog takes a third
  alignas(4) std::array<uint16_t, kCapacity> words_{};
  std::size_t used_ = 0;
  uint16_t items_ = 0;
  bool overflow_ = false;
};

}  // namespace companions
