#include "host/utf8.h"

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

}  // namespace

// What is UTF-8 is what the same bytes come from.
std::u16string FromUtf8(std::string_view text) {
  std::u16string units = platform::ToUtf16(text);
  if (ToUtf8(units) != text) throw Failure{kUsage, "a text is not UTF-8"};
  return units;
}

std::string ToUtf8(std::u16string_view text) { return platform::ToUtf8(Paired(text)); }

}  // namespace printhost
