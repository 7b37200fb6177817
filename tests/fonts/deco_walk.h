// Steps in the dialog of decorative fonts, opened from the font page.
#pragma once

#include "font_fixture.h"

namespace fonts {

constexpr char16_t kRegisterTitle[] = u"装飾フォントの登録";
constexpr char16_t kChangeTitle[] = u"装飾フォントの変更";

// The rows of the list of resident fonts.
enum ResidentRow : int {
  kX20,
  kX21,
  kX22,
  kX23,
  kX24,
  kOcrA,
  kOcrB,
  kPop,
  kKanjiAcross,
  kKanjiDown
};

// A new font: what is done in the dialog, and its name. OK must be taken.
inline Steps NewDeco(std::u16string name, const Steps& steps = {}) {
  return Steps{support::Click(IDC_CREATE_FONT_DECO_NEW), support::ExpectTitle(kRegisterTitle)} +
         steps +
         Steps{support::Replace(IDC_DECO_FONT_NAME, std::move(name)), support::Click(IDOK),
               support::ExpectTitle(u"クリエイトフォント")};
}
// The first font changed, and kept under its name.
inline Steps ChangeDeco(const Steps& steps = {}) {
  return Steps{support::Click(IDC_CREATE_FONT_DECO_EDIT), support::ExpectTitle(kChangeTitle)} +
         steps + Steps{support::Click(IDOK), support::ExpectTitle(u"クリエイトフォント")};
}
// OK is refused with a message, and the focus is on a field.
inline Steps Refused(std::u16string message, int field, std::u16string title = kRegisterTitle) {
  return {support::Click(IDOK),
          support::CloseMessage(std::move(message), MB_ICONEXCLAMATION, std::move(title)),
          support::ExpectFocus(field)};
}

}  // namespace fonts
