// Conversions between the shell's UTF-8 and the platform's UTF-16.
#pragma once

#include <string>
#include <string_view>

namespace printhost {

// Throws Failure (usage) when the text is not valid UTF-8.
std::u16string FromUtf8(std::string_view text);

// Always returns valid UTF-8: a lone surrogate becomes U+FFFD.
std::string ToUtf8(std::u16string_view text);

// Returns a text that a terminal can print safely: control characters, line and paragraph
// separators and direction marks are replaced by escapes such as "\\u001b". Other characters are
// copied.
std::string Printable(std::string_view utf8);

}  // namespace printhost
