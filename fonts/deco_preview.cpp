#include "fonts/deco_preview.h"

#include <algorithm>

#include "driver/drawing.h"
#include "fonts/deco_dialog_data.h"
#include "paper/fields/measured_value.h"
#include "resources/resource.h"

namespace kestrel {
namespace {

constexpr COLORREF kBackground = RGB(20, 20, 20);
constexpr COLORREF kText = RGB(255, 255, 0);
constexpr WCHAR kFixedFace[] = TEXT("ＭＳ ゴシック");
constexpr WCHAR kProportionalFace[] = TEXT("ＭＳ Ｐゴシック");
constexpr WCHAR kSample[] = TEXT("ij");

// A font selected into a context for as long as the owner lives.
class SelectedFont {
 public:
  SelectedFont(HDC dc, int height, int width, DWORD pitch, const WCHAR* face)
      : dc_(dc),
        font_(CreateFontW(height, width, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                          OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                          pitch | FF_DONTCARE, face)),
        selected_(dc, font_.get()) {}

  TEXTMETRICW Metrics() const {
    TEXTMETRICW metrics = {};
    GetTextMetricsW(dc_, &metrics);
    return metrics;
  }
  SIZE Extent(const WCHAR* text, int length) const {
    SIZE size = {};
    GetTextExtentPoint32W(dc_, text, length, &size);
    return size;
  }

 private:
  HDC dc_;
  GdiObject font_;
  SelectedObject selected_;  // gives the font back before it is deleted
};

struct SampleWidths {
  int i;
  int j;
};

SampleWidths WidthsIn(const SelectedFont& font) {
  return {static_cast<int>(font.Extent(kSample, 1).cx),
          static_cast<int>(font.Extent(kSample + 1, 1).cx)};
}

int SizeInDots(FieldDialog dialog, int edit, int unit, int dpi) {
  return ConvertMeasure(ReadField(dialog, edit, unit), unit, kDot, dpi);
}

}  // namespace

void DrawFontPreview(FieldDialog dialog, int dpi, HDC dc, const RECT& box) {
  const int unit = CheckedRadio(dialog.window, kUnitRadios);
  const int height = SizeInDots(dialog, IDC_DECO_FONT_HEIGHT, unit, dpi);
  const int width = SizeInDots(dialog, IDC_DECO_FONT_WIDTH, unit, dpi);
  const bool proportional =
      IsDlgButtonChecked(dialog.window, IDC_DECO_FONT_PITCH_PROPORTIONAL) == BST_CHECKED;
  const WCHAR* face = proportional ? kProportionalFace : kFixedFace;

  int natural = 0;
  {
    const SelectedFont measured(dc, height, 0, FIXED_PITCH, face);
    natural = measured.Metrics().tmAveCharWidth;
  }
  const int drawnWidth = std::max(height > 0 ? natural * width / height : 0, 1);
  const SelectedFont drawn(dc, height, drawnWidth, FIXED_PITCH, face);
  const SampleWidths widths = WidthsIn(drawn);
  SampleWidths shown = widths;
  if (proportional) {
    const TEXTMETRICW metrics = drawn.Metrics();
    shown = WidthsIn(SelectedFont(dc, metrics.tmHeight, metrics.tmAveCharWidth, VARIABLE_PITCH,
                                  kProportionalFace));
  }
  const SIZE text = drawn.Extent(kSample, 2);
  const int centre = std::max(box.right, text.cx) / 2;
  const int boxHeight = box.bottom - box.top;
  const int top = boxHeight > text.cy ? (boxHeight - text.cy) / 2 : 0;
  const int atI = centre + widths.i / 2 - shown.i / 2 - widths.i;
  const int atJ = centre + widths.j / 2 - shown.j / 2;

  const COLORREF backgroundBefore = SetBkColor(dc, kBackground);
  const COLORREF textBefore = SetTextColor(dc, kText);
  ExtTextOutW(dc, atI, top, ETO_OPAQUE | ETO_CLIPPED, &box, kSample, 1, nullptr);
  const int modeBefore = SetBkMode(dc, TRANSPARENT);
  ExtTextOutW(dc, atJ, top, ETO_CLIPPED, &box, kSample + 1, 1, nullptr);
  SetBkMode(dc, modeBefore);
  SetTextColor(dc, textBefore);
  SetBkColor(dc, backgroundBefore);
}

}  // namespace kestrel
