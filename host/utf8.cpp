#include "host/utf8.h"

#include <cstdio>

#include "host/failure.h"
#include "platform/machine/text.h"

namespace printhost {
namespace {

// The text with U+FFFD for each lone surrogate.
std::u16string Paired(std::u16string_view text) {
  std::u16string paired(text);
  for (std::size_t i = 0; i < paired.size(); ++i) {
    const auto kindAt = [&](std::size_t at) { return at < paired.size() ? paired[at] >> 10 : 0; };
    if (kindAt(i) == 0xD800 >> 10 && kindAt(i + 1) == 0xDC00 >> 10)
      ++i;
    else if (kindAt(i) >> 1 == 0xD800 >> 11)
      paired[i] = 0xFFFD;
  }
  return paired;
}

// Code points that change what a terminal shows around them.
bool IsUnprintable(char32_t c) {
  return c < 0x20 || (c >= 0x7F && c < 0xA0) || c == 0x200E || c == 0x200F ||
         (c >= 0x2028 && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
}

}  // namespace

// What is UTF-8 is what the same bytes come from.
std::u16string FromUtf8(std::string_view text) {
  std::u16string units = platform::ToUtf16(text);
  if (ToUtf8(units) != text) throw Failure{kUsage, "a text is not UTF-8"};
  return units;
}

std::string ToUtf8(std::u16string_view text) { return platform::ToUtf8(Paired(text)); }

std::string Printable(std::string_view utf8) {
  std::string shown;
  while (!utf8.empty()) {
    const std::string_view start = utf8;
    const auto c = platform::TakeCodePoint(utf8);
    if (!c) utf8.remove_prefix(1);
    if (c && IsUnprintable(*c)) {
      char escaped[8];
      std::snprintf(escaped, sizeof escaped, "\\u%04x", static_cast<unsigned>(*c));
      shown += escaped;
    } else {
      shown += start.substr(0, start.size() - utf8.size());
    }
  }
  return shown;
}

}  // namespace printhost
