// Font metrics, the same on every machine: a half-width character is half as wide as the font is
// high, a full-width one as wide, both scaled when the font asks for another average width.
#include <algorithm>
#include <cstring>

#include "platform/desktop/drawing/gdi.h"
#include "platform/machine.h"

namespace platform::gdi {
namespace {

struct Range {
  char16_t first, last;
};

// Characters as wide as the font is high in Japanese fonts; half-width katakana are not.
constexpr Range kFullWidth[] = {
    {0x00D7, 0x00D7}, {0x00F7, 0x00F7}, {0x0391, 0x0451}, {0x1100, 0x115F}, {0x2010, 0x2312},
    {0x2460, 0x2473}, {0x2500, 0x266F}, {0x2E80, 0xA4CF}, {0xAC00, 0xD7A3}, {0xD800, 0xDBFF},
    {0xE000, 0xFAFF}, {0xFE30, 0xFE6F}, {0xFF01, 0xFF60}, {0xFFE0, 0xFFE6}};

bool IsFullWidth(char16_t unit) {
  const auto after =
      std::upper_bound(std::begin(kFullWidth), std::end(kFullWidth), unit,
                       [](char16_t value, const Range& range) { return value < range.first; });
  return after != std::begin(kFullWidth) && unit <= std::prev(after)->last;
}

bool IsOneOf(char16_t unit, std::u16string_view set) {
  return set.find(unit) != std::u16string_view::npos;
}

}  // namespace

FontShape ShapeOf(const LOGFONTW& font) {
  FontShape shape = {};
  shape.height = font.lfHeight == 0 ? 12 : std::abs(std::clamp(font.lfHeight, -32767, 32767));
  shape.ascent = (shape.height * 220 + 128) / 256;
  shape.descent = shape.height - shape.ascent;
  const int width = std::abs(std::clamp(font.lfWidth, -32767, 32767));
  shape.average = width != 0 ? width : std::max(1, shape.height / 2);
  // A fixed pitch asked for weighs more than the face in the font mapper, so a proportional face is
  // proportional only without it.
  const bool proportionalFace =
      std::u16string_view(font.lfFaceName).find(u'Ｐ') != std::u16string_view::npos;
  shape.proportional = proportionalFace && (font.lfPitchAndFamily & 3) != FIXED_PITCH;
  return shape;
}

int CharWidth(const FontShape& shape, char16_t unit) {
  if (unit >= 0xDC00 && unit <= 0xDFFF) return 0;  // its pair's first half has the width
  if (IsFullWidth(unit)) return shape.average * 2;
  if (!shape.proportional) return shape.average;
  if (IsOneOf(unit, u"ijl!|.,:;'I")) return std::max(1, shape.average / 2);
  if (IsOneOf(unit, u"mwMW@%")) return shape.average * 3 / 2;
  return shape.average;
}

int TextWidth(const FontShape& shape, std::u16string_view text) {
  int width = 0;
  for (const char16_t unit : text) width += CharWidth(shape, unit);
  return width;
}

const LOGFONTW& SelectedFont(ObjectStore& store, const Dc& dc) {
  const auto* font = store.FindAs<LOGFONTW>(dc.state.font);
  return font ? *font : *store.FindAs<LOGFONTW>(store.stock[SYSTEM_FONT]);
}

namespace {

TEXTMETRICW MetricsOf(const LOGFONTW& font) {
  const FontShape shape = ShapeOf(font);
  TEXTMETRICW metrics = {};
  metrics.tmHeight = shape.height;
  metrics.tmAscent = shape.ascent;
  metrics.tmDescent = shape.descent;
  metrics.tmAveCharWidth = shape.average;
  metrics.tmMaxCharWidth = shape.average * 2;
  metrics.tmWeight = font.lfWeight == FW_DONTCARE ? FW_NORMAL : font.lfWeight;
  metrics.tmDigitizedAspectX = metrics.tmDigitizedAspectY = 96;
  metrics.tmFirstChar = 0x20;
  metrics.tmLastChar = 0xFFE6;
  metrics.tmDefaultChar = u'?';
  metrics.tmBreakChar = u' ';
  metrics.tmItalic = font.lfItalic;
  metrics.tmUnderlined = font.lfUnderline;
  metrics.tmStruckOut = font.lfStrikeOut;
  metrics.tmPitchAndFamily = static_cast<BYTE>(FF_MODERN | TMPF_VECTOR | TMPF_TRUETYPE |
                                               (shape.proportional ? TMPF_FIXED_PITCH : 0));
  metrics.tmCharSet = SHIFTJIS_CHARSET;
  return metrics;
}

template <typename Work>
BOOL WithFont(HDC dc, Work work) {
  ObjectStore& store = ObjectStore::Get();
  const std::lock_guard guard(store.lock);
  const Dc* it = store.FindDc(dc);
  if (!it) return FALSE;
  work(SelectedFont(store, *it));
  return TRUE;
}

}  // namespace
}  // namespace platform::gdi

using namespace platform::gdi;

int platform::TextWidth(HFONT font, std::u16string_view text) {
  ObjectStore& store = ObjectStore::Get();
  const std::lock_guard guard(store.lock);
  const auto* found = store.FindAs<LOGFONTW>(font);
  return TextWidth(ShapeOf(found ? *found : *store.FindAs<LOGFONTW>(store.stock[SYSTEM_FONT])),
                   text);
}

BOOL WINAPI GetTextMetricsW(HDC dc, LPTEXTMETRICW metrics) {
  return WithFont(dc, [&](const LOGFONTW& font) { *metrics = MetricsOf(font); });
}

BOOL WINAPI GetTextExtentPoint32W(HDC dc, LPCWSTR text, int length, LPSIZE size) {
  if (length < 0) return FALSE;
  return WithFont(dc, [&](const LOGFONTW& font) {
    const FontShape shape = ShapeOf(font);
    *size = {TextWidth(shape, {text, static_cast<size_t>(length)}), shape.height};
  });
}

BOOL WINAPI GetCharWidth32W(HDC dc, UINT first, UINT last, LPINT widths) {
  if (first > last || last > 0xFFFF) return FALSE;
  return WithFont(dc, [&](const LOGFONTW& font) {
    const FontShape shape = ShapeOf(font);
    for (UINT unit = first; unit <= last; ++unit)
      *widths++ = CharWidth(shape, static_cast<char16_t>(unit));
  });
}

int WINAPI GetTextFaceW(HDC dc, int size, LPWSTR name) {
  int copied = 0;
  WithFont(dc, [&](const LOGFONTW& font) {
    const std::u16string_view face(font.lfFaceName);
    copied = static_cast<int>(face.size()) + 1;
    if (!name || size < 1) return;
    copied = std::min(copied, size);
    face.copy(name, static_cast<size_t>(copied) - 1);
    name[copied - 1] = 0;
  });
  return copied;
}

// Answers what the callback answered last; 1 when no family is there. A family given by name is
// told alone.
int WINAPI EnumFontFamiliesW(HDC dc, LPCWSTR family, FONTENUMPROCW callback, LPARAM param) {
  if (!callback || !GetObjectType(dc)) return 0;
  int answer = 1;
  for (const std::u16string& name : platform::Machine::Current().InstalledFontFamilies()) {
    if (family && lstrcmpiW(name.c_str(), family) != 0) continue;
    ENUMLOGFONTW font = {};
    font.elfLogFont.lfHeight = 16;
    font.elfLogFont.lfWidth = 8;
    font.elfLogFont.lfWeight = FW_NORMAL;
    font.elfLogFont.lfCharSet = SHIFTJIS_CHARSET;
    name.copy(font.elfLogFont.lfFaceName, LF_FACESIZE - 1);
    name.copy(font.elfFullName, LF_FULLFACESIZE - 1);
    const TEXTMETRICW metrics = MetricsOf(font.elfLogFont);
    answer = callback(&font.elfLogFont, &metrics, TRUETYPE_FONTTYPE, param);
    if (answer == 0) break;
  }
  return answer;
}
