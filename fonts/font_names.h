// The rules for the name of a registered font.
#pragma once

#include <windows.h>

#include "fonts/font_record.h"
#include "resources/resource.h"

namespace kestrel {

// The result of a check: valid, or the string id of the message for the first rule that failed.
enum class FontNameResult : UINT {
  kValid = 0,
  kBlank = IDS_FONT_NAME_MISSING,
  kReserved = IDS_FONT_NAME_UNUSABLE,  // the name of a resident or an installed font
  kDuplicate = IDS_FONT_NAME_TAKEN,
  kBadCharacter = IDS_BAD_CHARACTER,
  kTooLong = IDS_NAME_TOO_LONG,  // 32 bytes or more in code page 932
};

// Return true when no record of the list has the name. The record at index except is ignored; -1
// ignores none.
bool DecoNameFree(const FontStore& store, const WCHAR* name, int except);
bool BarNameFree(const FontStore& store, const WCHAR* name, int except);

// Checks a name for the font at index in the list of its kind, or for a new font (-1). Enumerates
// the installed font families of dc.
FontNameResult ValidateFontName(const FontStore& store, HDC dc, const WCHAR* name, int index,
                                FontKindCode kind);

// Checks a name for the font that a dialog edits. Returns false after a message over the dialog
// when the name is invalid.
bool CheckFontName(HWND dialog, const FontStore& store, const WCHAR* name, FontKindCode kind);

// Reads and checks the name in an edit. Returns false after a message, with the focus on the edit,
// when the name is invalid.
bool ReadFontName(HWND dialog, int edit, const FontStore& store, FontKindCode kind,
                  WCHAR (&name)[kFontNameLength]);

}  // namespace kestrel
