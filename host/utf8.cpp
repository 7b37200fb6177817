#include "host/utf8.h"

#include <cstddef>

#include "host/failure.h"

namespace printhost {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsHigh(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLow(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

// The code point that starts at text[at], or nothing of a malformed, overlong or out-of-range one.
bool Decode(std::string_view text, std::size_t& at, char32_t& point) {
  const auto lead = static_cast<unsigned char>(text[at]);
  const int extra = lead < 0x80       ? 0
                    : lead >> 5 == 6  ? 1
                    : lead >> 4 == 14 ? 2
                    : lead >> 3 == 30 ? 3
                                      : -1;
  if (extra < 0 || text.size() - at <= static_cast<std::size_t>(extra)) return false;
  point = extra == 0 ? lead : static_cast<char32_t>(lead & (0x3F >> extra));
  for (int i = 1; i <= extra; ++i) {
    const auto next = static_cast<unsigned char>(text[at + static_cast<std::size_t>(i)]);
    if (next >> 6 != 2) return false;
    point = point << 6 | (next & 0x3F);
  }
  constexpr char32_t kLeast[] = {0, 0x80, 0x800, 0x10000};
  if (point < kLeast[extra] || point > 0x10FFFF || (point >= 0xD800 && point <= 0xDFFF))
    return false;
  at += static_cast<std::size_t>(extra) + 1;
  return true;
}

}  // namespace

std::u16string FromUtf8(std::string_view text) {
  std::u16string out;
  out.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    char32_t point = 0;
    if (!Decode(text, at, point)) throw Failure{kUsage, "a text is not UTF-8"};
    if (point < 0x10000) {
      out.push_back(static_cast<char16_t>(point));
    } else {
      out.push_back(static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10)));
      out.push_back(static_cast<char16_t>(0xDC00 + ((point - 0x10000) & 0x3FF)));
    }
  }
  return out;
}

void AppendUtf8(std::string& out, char32_t point) {
  const auto put = [&](char32_t byte) { out.push_back(static_cast<char>(byte)); };
  if (point < 0x80) {
    put(point);
  } else if (point < 0x800) {
    put(0xC0 | point >> 6);
    put(0x80 | (point & 0x3F));
  } else if (point < 0x10000) {
    put(0xE0 | point >> 12);
    put(0x80 | (point >> 6 & 0x3F));
    put(0x80 | (point & 0x3F));
  } else {
    put(0xF0 | point >> 18);
    put(0x80 | (point >> 12 & 0x3F));
    put(0x80 | (point >> 6 & 0x3F));
    put(0x80 | (point & 0x3F));
  }
}

std::string ToUtf8(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t point = text[i];
    if (IsHigh(point) && i + 1 < text.size() && IsLow(text[i + 1])) {
      point = 0x10000 + ((point - 0xD800) << 10) + (text[++i] - 0xDC00u);
    } else if (IsHigh(point) || IsLow(point)) {
      point = kReplacement;
    }
    AppendUtf8(out, point);
  }
  return out;
}

}  // namespace printhost
