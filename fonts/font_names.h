// The rules that the name of a registered font must obey.
#pragma once

#include <windows.h>

#include "fonts/font_record.h"

namespace kestrel {

// Why a name is refused; the values are message ids, 0: it is not.
enum class FontNameVerdict : UINT {
  kGood = 0,
  kBlank = 2230,
  kReserved = 2231,  // a resident or an installed font's name
  kTaken = 2233,
  kBadCharacter = 2429,
  kTooLong = 2428,
};

// Puts a name into a record's field, cut to 31 units; the rest of the field is zero, so that
// nothing of a former name is stored with it.
void PutName(WCHAR (&field)[kFontNameLength], const WCHAR* name);

// Whether no record but the one at except (-1: every record counts) bears the name.
bool DecoNameFree(const FontStore& store, const WCHAR* name, int except);
bool BarNameFree(const FontStore& store, const WCHAR* name, int except);

// Judges a name for a font of a kind that has a place in its list (-1: a new font). dc is the
// display on which the installed font families are enumerated.
FontNameVerdict JudgeFontName(const FontStore& store, HDC dc, const WCHAR* name, int index,
                              FontKindCode kind);

// The same for a dialog: shows the message of a refused name. Whether the name is good.
bool CheckFontName(HWND dialog, const FontStore& store, const WCHAR* name, int index,
                   FontKindCode kind);

}  // namespace kestrel
