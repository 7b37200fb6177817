// The shell speaks UTF-8, the platform UTF-16.
#pragma once

#include <string>
#include <string_view>

namespace printhost {

// Throws Failure (usage) when the bytes are not UTF-8.
std::u16string FromUtf8(std::string_view text);

// A lone surrogate becomes U+FFFD, so that the answer is always UTF-8.
std::string ToUtf8(std::u16string_view text);

// A text for a terminal, whoever wrote it: control characters, line and paragraph separators and
// the marks that change the direction of a text become "\\u001b" and the like, everything else
// stays.
std::string Printable(std::string_view utf8);

}  // namespace printhost
