// The rules that the name of a registered font must obey.
#pragma once

#include <windows.h>

#include "fonts/font_record.h"
#include "resources/resource.h"

namespace kestrel {

// Why a name is refused: the id of the message that says so.
enum class FontNameVerdict : UINT {
  kGood = 0,
  kBlank = IDS_FONT_NAME_MISSING,
  kReserved = IDS_FONT_NAME_UNUSABLE,  // a resident or an installed font's name
  kTaken = IDS_FONT_NAME_TAKEN,
  kBadCharacter = IDS_BAD_CHARACTER,
  kTooLong = IDS_NAME_TOO_LONG,
};

// Whether no record but the one at except (-1: every record counts) bears the name.
bool DecoNameFree(const FontStore& store, const WCHAR* name, int except);
bool BarNameFree(const FontStore& store, const WCHAR* name, int except);

// Judges a name for a font of a kind that has a place in its list (-1: a new font). dc is the
// display on which the installed font families are enumerated.
FontNameVerdict JudgeFontName(const FontStore& store, HDC dc, const WCHAR* name, int index,
                              FontKindCode kind);

// The same for the font that a dialog edits: shows the message of a refused name. Whether the name
// is good.
bool CheckFontName(HWND dialog, const FontStore& store, const WCHAR* name, FontKindCode kind);

// The name in a dialog's edit; false after a message, with the focus back on the edit, when it is
// not good.
bool ReadFontName(HWND dialog, int edit, const FontStore& store, FontKindCode kind,
                  WCHAR (&name)[kFontNameLength]);

}  // namespace kestrel
