// The shell speaks UTF-8, the platform UTF-16.
#pragma once

#include <string>
#include <string_view>

namespace printhost {

// Throws Failure (usage) when the bytes are not UTF-8.
std::u16string FromUtf8(std::string_view text);

// A lone surrogate becomes U+FFFD, so that the answer is always UTF-8.
std::string ToUtf8(std::u16string_view text);

// Returns a text that a terminal can print safely: control characters, line and paragraph
// separators and direction marks are replaced by escapes such as "\\u001b". Other characters are
// copied.
std::string Printable(std::string_view utf8);

}  // namespace printhost
