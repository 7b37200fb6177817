// Texts of the stand-in: UTF-8 and UTF-16, letter case, code page 932. Other code pages are in
// platform/machine/code_page.h.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>

namespace platform {

// UTF-8 and back. Unpaired surrogates survive the way through UTF-8 and back (each as three bytes);
// bytes that are no UTF-8 become U+FFFD.
std::string ToUtf8(std::u16string_view text);
std::u16string ToUtf16(std::string_view utf8);
// Removes the first code point from a text that is not empty and returns it. Returns nothing, and
// removes nothing, when the text does not start with UTF-8; a form that is longer than needed is
// none. An unpaired surrogate is accepted.
std::optional<char32_t> TakeCodePoint(std::string_view& utf8);

// One unit in the upper case of its script (Latin, Greek, Cyrillic, full-width Latin).
WCHAR FoldUnit(WCHAR unit);
std::u16string FoldCase(std::u16string_view text);
bool EqualIgnoringCase(std::u16string_view a, std::u16string_view b);

// Code page 932. A unit without a form of its own becomes "?" (*lossless false); bytes without a
// meaning become U+30FB.
std::string ToCp932(std::u16string_view text, bool* lossless = nullptr);
std::u16string FromCp932(std::string_view bytes);

// A terminated text; empty for NULL.
std::u16string_view View(LPCWSTR text);
// Copies at most size - 1 units and terminates; nothing for a size of 0.
void CopyTerminated(std::u16string_view text, LPWSTR out, size_t size);

}  // namespace platform
