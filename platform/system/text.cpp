#include "platform/system/text.h"

#include <algorithm>

namespace platform {
namespace {

void AppendUtf8(std::string& out, char32_t c) {
  const auto byte = [&out](char32_t value) { out.push_back(static_cast<char>(value)); };
  if (c < 0x80) {
    byte(c);
  } else if (c < 0x800) {
    byte(0xC0 | (c >> 6));
    byte(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    byte(0xE0 | (c >> 12));
    byte(0x80 | ((c >> 6) & 0x3F));
    byte(0x80 | (c & 0x3F));
  } else {
    byte(0xF0 | (c >> 18));
    byte(0x80 | ((c >> 12) & 0x3F));
    byte(0x80 | ((c >> 6) & 0x3F));
    byte(0x80 | (c & 0x3F));
  }
}

bool IsHigh(char16_t c) { return c >= 0xD800 && c < 0xDC00; }
bool IsLow(char16_t c) { return c >= 0xDC00 && c < 0xE000; }

// Length of the sequence that a first byte announces; 0: it announces none.
size_t SequenceLength(unsigned char first) {
  if (first < 0x80) return 1;
  if (first >= 0xC2 && first < 0xE0) return 2;
  if (first >= 0xE0 && first < 0xF0) return 3;
  if (first >= 0xF0 && first < 0xF5) return 4;
  return 0;
}

}  // namespace

std::string ToUtf8(std::u16string_view text) {
  std::string out;
  out.reserve(text.size() * 3);
  for (size_t i = 0; i < text.size(); ++i) {
    char32_t c = text[i];
    if (IsHigh(text[i]) && i + 1 < text.size() && IsLow(text[i + 1])) {
      c = 0x10000 + ((c - 0xD800) << 10) + (char32_t{text[++i]} - 0xDC00);
    }
    AppendUtf8(out, c);
  }
  return out;
}

std::u16string ToUtf16(std::string_view utf8) {
  std::u16string out;
  out.reserve(utf8.size());
  for (size_t i = 0; i < utf8.size();) {
    const auto first = static_cast<unsigned char>(utf8[i]);
    const size_t length = SequenceLength(first);
    constexpr unsigned char kPayload[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
    char32_t c = first & kPayload[length];
    bool valid = length > 0 && i + length <= utf8.size();
    for (size_t k = 1; valid && k < length; ++k) {
      const auto next = static_cast<unsigned char>(utf8[i + k]);
      valid = (next & 0xC0) == 0x80;
      c = (c << 6) | (next & 0x3F);
    }
    // Longer forms than needed are refused; unpaired surrogates are kept on purpose.
    valid = valid && !(length == 3 && c < 0x800) && !(length == 4 && (c < 0x10000 || c > 0x10FFFF));
    if (!valid) {
      out.push_back(u'\xFFFD');
      ++i;
      continue;
    }
    if (c >= 0x10000) {
      out.push_back(static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10)));
      out.push_back(static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF)));
    } else {
      out.push_back(static_cast<char16_t>(c));
    }
    i += length;
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

int WINAPI lstrcmpiW(LPCWSTR a, LPCWSTR b) {
  const int order =
      platform::FoldCase(platform::View(a)).compare(platform::FoldCase(platform::View(b)));
  return order < 0 ? -1 : order > 0 ? 1 : 0;
}
