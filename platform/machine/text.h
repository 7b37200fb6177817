// UTF-8 and UTF-16, letter case, and code page 932. Other code pages: platform/machine/code_page.h.
#pragma once

#include <windef.h>

#include <optional>
#include <string>
#include <string_view>

namespace platform {

// Convert between UTF-8 and UTF-16. An unpaired surrogate is encoded as three bytes and decoded
// from them; bytes that are not UTF-8 become U+FFFD.
std::string ToUtf8(std::u16string_view text);
std::u16string ToUtf16(std::string_view utf8);
// Removes the first code point from a text that is not empty and returns it. Returns nothing, and
// removes nothing, when the text does not start with UTF-8; a form that is longer than needed is
// none. An unpaired surrogate is accepted.
std::optional<char32_t> TakeCodePoint(std::string_view& utf8);

// Converts a unit to upper case (Latin, Greek, Cyrillic, full-width Latin).
WCHAR FoldUnit(WCHAR unit);
std::u16string FoldCase(std::u16string_view text);
bool EqualIgnoringCase(std::u16string_view a, std::u16string_view b);

// Convert between code page 932 and UTF-16. A unit that the page lacks becomes "?" and sets
// *lossless to false; bytes that the page leaves undefined become U+30FB.
std::string ToCp932(std::u16string_view text, bool* lossless = nullptr);
std::u16string FromCp932(std::string_view bytes);

// Views a terminated text; empty for NULL.
std::u16string_view View(LPCWSTR text);
// Copies at most size - 1 units and a terminator; copies nothing when size is 0.
void CopyTerminated(std::u16string_view text, LPWSTR out, size_t size);

}  // namespace platform
