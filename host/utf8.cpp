#include "host/utf8.h"

#include <cstdio>

#include "host/failure.h"
#include "platform/machine/text.h"

namespace printhost {
namespace {

std::u16string ReplaceLoneSurrogates(std::u16string_view text) {
  std::u16string replaced(text);
  for (std::size_t i = 0; i < replaced.size(); ++i) {
    const auto kindAt = [&](std::size_t at) {
      return at < replaced.size() ? replaced[at] >> 10 : 0;
    };
    if (kindAt(i) == 0xD800 >> 10 && kindAt(i + 1) == 0xDC00 >> 10)
      ++i;
    else if (kindAt(i) >> 1 == 0xD800 >> 11)
      replaced[i] = 0xFFFD;
  }
  return replaced;
}

// Returns true for code points that change how a terminal shows the text around them.
bool IsUnprintable(char32_t c) {
  return c < 0x20 || (c >= 0x7F && c < 0xA0) || c == 0x200E || c == 0x200F ||
         (c >= 0x2028 && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
}

}  // namespace

// Valid UTF-8 is unchanged by a conversion to UTF-16 and back.
std::u16string FromUtf8(std::string_view text) {
  std::u16string units = platform::ToUtf16(text);
  if (ToUtf8(units) != text) throw Failure{kUsage, "a text is not UTF-8"};
  return units;
}

std::string ToUtf8(std::u16string_view text) {
  return platform::ToUtf8(ReplaceLoneSurrogates(text));
}

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
