// Font metrics, the same on every host: a half-width character is half as wide as the font is high,
// a full-width one as wide; both scale when the font has another average width.
#include <winbase.h>

#include <algorithm>
#include <cstring>

#include "platform/gdi32/gdi.h"
#include "platform/machine/machine.h"

namespace platform::gdi {
namespace {

struct Range {
  char16_t first, last;
};

// Characters that Japanese fonts draw full-width; half-width katakana are not among them.
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
  const int width = std::abs(std::clamp(font.lfWidth, -32767, 32767));
  shape.average = width != 0 ? width : std::max(1, shape.height / 2);
  // The font mapper weighs a requested fixed pitch more than the face name.
  const bool proportionalFace =
      std::u16string_view(font.lfFaceName).find(u'Ｐ') != std::u16string_view::npos;
  shape.proportional = proportionalFace && (font.lfPitchAndFamily & 3) != FIXED_PITCH;
  return shape;
}

static int CharWidth(const FontShape& shape, char16_t unit) {
  if (unit >= 0xDC00 && unit <= 0xDFFF) return 0;  // the high surrogate has the width
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

namespace {

TEXTMETRICW MetricsOf(const LOGFONTW& font) {
  const FontShape shape = ShapeOf(font);
  TEXTMETRICW metrics = {};
  metrics.tmHeight = shape.height;
  metrics.tmAscent = shape.ascent;
  metrics.tmDescent = shape.height - shape.ascent;
  metrics.tmAveCharWidth = shape.average;
  metrics.tmMaxCharWidth = shape.average * 2;
  metrics.tmWeight = font.lfWeight;
  metrics.tmCharSet = SHIFTJIS_CHARSET;
  return metrics;
}

}  // namespace
}  // namespace platform::gdi

using namespace platform::gdi;

BOOL WINAPI GetTextMetricsW(HDC dc, LPTEXTMETRICW metrics) {
  return WithDc(dc, FALSE, [=](ObjectStore& store, Dc& it) {
    *metrics = MetricsOf(store.Selected<LOGFONTW>(it));
    return TRUE;
  });
}

BOOL WINAPI GetTextExtentPoint32W(HDC dc, LPCWSTR text, int length, LPSIZE size) {
  if (length < 0) return FALSE;
  return WithDc(dc, FALSE, [=](ObjectStore& store, Dc& it) {
    const FontShape shape = ShapeOf(store.Selected<LOGFONTW>(it));
    *size = {TextWidth(shape, {text, static_cast<size_t>(length)}), shape.height};
    return TRUE;
  });
}

// Returns the last result of the callback; 1 when there is no family. With a name, enumerates
// only the family of that name.
int WINAPI EnumFontFamiliesW(HDC dc, LPCWSTR family, FONTENUMPROCW callback, LPARAM param) {
  if (callback == nullptr || !WithDc(dc, false, [](ObjectStore&, Dc&) { return true; })) return 0;
  int result = 1;
  for (const std::u16string& name : platform::Machine::Current().InstalledFontFamilies()) {
    if (family != nullptr && lstrcmpiW(name.c_str(), family) != 0) continue;
    ENUMLOGFONTW font = {};
    font.elfLogFont.lfHeight = 16;
    font.elfLogFont.lfWidth = 8;
    font.elfLogFont.lfWeight = FW_NORMAL;
    font.elfLogFont.lfCharSet = SHIFTJIS_CHARSET;
    name.copy(font.elfLogFont.lfFaceName, LF_FACESIZE - 1);
    const TEXTMETRICW metrics = MetricsOf(font.elfLogFont);
    result = callback(&font.elfLogFont, &metrics, TRUETYPE_FONTTYPE, param);
    if (result == 0) break;
  }
  return result;
}
