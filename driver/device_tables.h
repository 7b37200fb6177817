// Constant tables of the supported printers: models, resolutions, paper sources and media types.
#pragma once

#include <windows.h>

#include <cstdint>

namespace kestrel {

struct Model {
  const WCHAR* driverName;  // PRINTER_INFO_2 pDriverName
  uint16_t headDensity;     // dots per inch
};
constexpr Model ModelTable[] = {{TEXT("VELA QM610r"), 203}};

struct Resolution {
  const WCHAR* text;
  int16_t x;  // dots per inch
  int16_t y;
};
constexpr Resolution ResolutionTable[] = {
    {TEXT("203dpi(  8本/mm)"), 203, 203},
    {TEXT("305dpi( 12本/mm)"), 305, 305},
};

struct Bin {
  const WCHAR* name;
  int16_t id;  // dmDefaultSource
};
constexpr Bin BinTable[] = {{TEXT("標準"), DMBIN_USER}};

struct MediaType {
  const WCHAR* name;
  DWORD id;  // dmMediaType
};
constexpr MediaType MediaTypeTable[] = {
    {TEXT("Plain paper"), DMMEDIA_STANDARD},
    {TEXT("Transparency"), DMMEDIA_TRANSPARENCY},
    {TEXT("Glossy paper"), DMMEDIA_GLOSSY},
};

// Returns the resolution of a head density in dots per inch; the first row for an unknown density.
constexpr const Resolution& ResolutionOf(uint16_t headDensity) {
  for (const Resolution& resolution : ResolutionTable)
    if (resolution.x == headDensity) return resolution;
  return ResolutionTable[0];
}

}  // namespace kestrel
