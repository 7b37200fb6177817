#include "host/utf8.h"

#include <cstdio>
#include <utility>

#include "host/failure.h"
#include "platform/system/text.h"

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

// The code point at the start of a text when it has at most three bytes, as all unprintable ones
// have, and how many bytes it has; else the first byte alone.
std::pair<char32_t, std::size_t> FirstCodePoint(std::string_view text) {
  const auto byteAt = [&](std::size_t i) {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0u;
  };
  const auto follows = [&](std::size_t i) { return (byteAt(i) & 0xC0) == 0x80; };
  const unsigned first = byteAt(0);
  if (first < 0x80) return {first, 1};
  if (first >> 5 == 6 && follows(1)) return {(first & 0x1F) << 6 | (byteAt(1) & 0x3F), 2};
  if (first >> 4 == 14 && follows(1) && follows(2))
    return {(first & 0xF) << 12 | (byteAt(1) & 0x3F) << 6 | (byteAt(2) & 0x3F), 3};
  return {0xFFFD, 1};
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
    const auto [c, size] = FirstCodePoint(utf8);
    if (IsUnprintable(c)) {
      char escaped[8];
      std::snprintf(escaped, sizeof escaped, "\\u%04x", static_cast<unsigned>(c));
      shown += escaped;
    } else {
      shown += utf8.substr(0, size);
    }
    utf8.remove_prefix(size);
  }
  return shown;
}

}  // namespace printhost
