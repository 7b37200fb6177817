#include "fonts/font_names.h"

#include "driver/text.h"
#include "fonts/resident_fonts.h"
#include "paper/fields/controls.h"
#include "sheets/messages.h"

namespace kestrel {
namespace {

constexpr WCHAR kProductPrefix[] = TEXT("VELA ");
constexpr int kPrefixLength = static_cast<int>(sizeof(kProductPrefix) / sizeof(WCHAR)) - 1;

// Applications see a resident font under its name with the product's prefix.
bool IsResidentFontName(const WCHAR* name) {
  WCHAR prefix[kPrefixLength + 1];
  CopyText(prefix, name);
  if (!SameText(prefix, kProductPrefix)) return false;
  return FindResidentFont(ResidentFontTable(203), name + kPrefixLength) >= 0;
}

struct FamilySearch {
  const WCHAR* name;
  bool found;
};

int CALLBACK MatchFamily(const LOGFONTW* font, const TEXTMETRICW*, DWORD, LPARAM context) {
  FamilySearch& search = *reinterpret_cast<FamilySearch*>(context);
  WCHAR face[LF_FACESIZE + 1];
  CopyField(face, LF_FACESIZE + 1, font->lfFaceName, LF_FACESIZE);
  search.found = SameText(face, search.name);
  return search.found ? 0 : 1;
}

bool IsInstalledFamily(HDC dc, const WCHAR* name) {
  FamilySearch search = {name, false};
  EnumFontFamiliesW(dc, nullptr, MatchFamily, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

}  // namespace

bool DecoNameFree(const FontStore& store, const WCHAR* name, int except) {
  for (int i = 0; i < store.DecoFontNum; ++i) {
    if (i != except && SameText(store.DecoFonts[i].Deco.DecoFontName, name)) return false;
  }
  return true;
}

bool BarNameFree(const FontStore& store, const WCHAR* name, int except) {
  for (int i = 0; i < store.BarFontNum; ++i) {
    if (i != except && SameText(store.BarFonts[i].Bar.BarFontName, name)) return false;
  }
  return true;
}

FontNameResult ValidateFontName(const FontStore& store, HDC dc, const WCHAR* name, int index,
                                FontKindCode kind) {
  if (IsBlankText(name)) return FontNameResult::kBlank;
  if (IsResidentFontName(name) || IsInstalledFamily(dc, name)) return FontNameResult::kReserved;
  if (!DecoNameFree(store, name, kind == kDecorativeFont ? index : -1))
    return FontNameResult::kDuplicate;
  const int length = TextLength(name);
  if (!IsCp932Representable(name, length, nullptr)) return FontNameResult::kBadCharacter;
  // A UTF-16 unit converts to two bytes at most, so that the buffer holds every name of valid
  // length.
  char bytes[2 * kFontNameLength + 2];
  if (ToCodePage(name, -1, bytes, sizeof(bytes)) >= kFontNameLength)
    return FontNameResult::kTooLong;
  if (!BarNameFree(store, name, kind == kBarcodeFont ? index : -1))
    return FontNameResult::kDuplicate;
  return FontNameResult::kValid;
}

bool CheckFontName(HWND dialog, const FontStore& store, const WCHAR* name, FontKindCode kind) {
  const int index = store.FontEditMode == kChangeFont ? store.FontEditIndex : -1;
  HDC dc = GetDC(dialog);
  const FontNameResult result = ValidateFontName(store, dc, name, index, kind);
  ReleaseDC(dialog, dc);
  if (result == FontNameResult::kValid) return true;
  ShowMessage(dialog, static_cast<UINT>(result), MB_ICONEXCLAMATION);
  return false;
}

bool ReadFontName(HWND dialog, int edit, const FontStore& store, FontKindCode kind,
                  WCHAR (&name)[kFontNameLength]) {
  name[0] = 0;
  GetDlgItemTextW(dialog, edit, name, kFontNameLength);
  if (CheckFontName(dialog, store, name, kind)) return true;
  MoveFocus(dialog, edit);
  return false;
}

}  // namespace kestrel
