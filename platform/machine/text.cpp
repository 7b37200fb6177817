#include "platform/machine/text.h"

#include <algorithm>
#include <bit>

namespace platform {
namespace {

bool IsHigh(char32_t c) { return c >= 0xD800 && c < 0xDC00; }
bool IsLow(char32_t c) { return c >= 0xDC00 && c < 0xE000; }

}  // namespace

std::string ToUtf8(std::u16string_view text) {
  std::string out;
  out.reserve(text.size() * 3);
  for (size_t i = 0; i < text.size(); ++i) {
    char32_t c = text[i];
    if (IsHigh(c) && i + 1 < text.size() && IsLow(text[i + 1])) {
      c = 0x10000 + ((c - 0xD800) << 10) + (char32_t{text[++i]} - 0xDC00);
    }
    if (c < 0x80) {
      out.push_back(static_cast<char>(c));
      continue;
    }
    const int further = c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
    out.push_back(static_cast<char>(((0xFF00u >> (further + 1)) & 0xFF) | (c >> (6 * further))));
    for (int place = further - 1; place >= 0; --place) {
      out.push_back(static_cast<char>(0x80 | ((c >> (6 * place)) & 0x3F)));
    }
  }
  return out;
}

std::optional<char32_t> TakeCodePoint(std::string_view& utf8) {
  constexpr char32_t kLeast[] = {0, 0x80, 0x800, 0x10000};
  const auto first = static_cast<unsigned char>(utf8[0]);
  const int ones = std::countl_one(first);
  const auto further = static_cast<size_t>(ones == 0 ? 0 : ones - 1);
  if (ones == 1 || ones > 4 || further >= utf8.size()) return std::nullopt;
  char32_t point = first & (0xFFu >> (ones == 0 ? 0 : ones + 1));
  for (size_t i = 1; i <= further; ++i) {
    const auto next = static_cast<unsigned char>(utf8[i]);
    if (next >> 6 != 2) return std::nullopt;
    point = point << 6 | (next & 0x3F);
  }
  if (point < kLeast[further] || point > 0x10FFFF) return std::nullopt;
  utf8.remove_prefix(further + 1);
  return point;
}

std::u16string ToUtf16(std::string_view utf8) {
  std::u16string out;
  out.reserve(utf8.size());
  while (!utf8.empty()) {
    const auto point = TakeCodePoint(utf8);
    if (!point) utf8.remove_prefix(1);
    const char32_t c = point.value_or(0xFFFD);
    if (c >= 0x10000) out.push_back(static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10)));
    out.push_back(static_cast<char16_t>(c >= 0x10000 ? 0xDC00 + ((c - 0x10000) & 0x3FF) : c));
  }
  return out;
}

WCHAR FoldUnit(WCHAR unit) {
  const auto minus = [unit](int distance) { return static_cast<WCHAR>(unit - distance); };
  if (unit < 0x80) return unit >= u'a' && unit <= u'z' ? minus(32) : unit;
  if ((unit >= 0xE0 && unit <= 0xFE && unit != 0xF7) ||
      (unit >= 0x03B1 && unit <= 0x03CB && unit != 0x03C2) || (unit >= 0x0430 && unit <= 0x044F) ||
      (unit >= 0xFF41 && unit <= 0xFF5A)) {
    return minus(32);
  }
  if (unit >= 0x0450 && unit <= 0x045F) return minus(80);
  if (unit >= 0x2170 && unit <= 0x217F) return minus(16);
  if (unit == 0x03C2) return 0x03A3;
  if (unit == 0xFF) return 0x0178;
  const bool evenUpper = (unit >= 0x0100 && unit <= 0x0137) || (unit >= 0x014A && unit <= 0x0177);
  if (evenUpper && unit % 2 == 1 && unit != 0x0131) return minus(1);
  const bool oddUpper = (unit >= 0x0139 && unit <= 0x0148) || (unit >= 0x0179 && unit <= 0x017E);
  if (oddUpper && unit % 2 == 0) return minus(1);
  return unit;
}

std::u16string FoldCase(std::u16string_view text) {
  std::u16string folded(text);
  std::transform(folded.begin(), folded.end(), folded.begin(), FoldUnit);
  return folded;
}

bool EqualIgnoringCase(std::u16string_view a, std::u16string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](WCHAR x, WCHAR y) { return FoldUnit(x) == FoldUnit(y); });
}

std::u16string_view View(LPCWSTR text) {
  return text == nullptr ? std::u16string_view() : std::u16string_view(text);
}

void CopyTerminated(std::u16string_view text, LPWSTR out, size_t size) {
  if (size == 0) return;
  const size_t count = std::min(text.size(), size - 1);
  std::copy_n(text.data(), count, out);
  out[count] = 0;
}

}  // namespace platform
