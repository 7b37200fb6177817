#include "driver/text.h"
#include "fonts/deco_dialog_data.h"
#include "fonts/font_names.h"
#include "paper/fields/measured_value.h"

namespace kestrel {
namespace {

struct SizeMessages {
  UINT below, above;
};
constexpr SizeMessages kMagnificationMessages[kSides] = {{IDS_EXPAND_X_BELOW, IDS_EXPAND_X_ABOVE},
                                                         {IDS_EXPAND_Y_BELOW, IDS_EXPAND_Y_ABOVE}};
constexpr SizeMessages kFreeSizeMessages[kSides] = {{IDS_FONT_WIDTH_BELOW, IDS_FONT_WIDTH_ABOVE},
                                                    {IDS_FONT_HEIGHT_BELOW, IDS_FONT_HEIGHT_ABOVE}};

bool CheckMagnification(DecoDialog& dialog, int side) {
  const SizeMessages& messages = kMagnificationMessages[side];
  return AcceptField(dialog.fields(), kMagnificationEdits[side], kMagnifications.minimum,
                     kMagnifications.maximum, kPlain, messages.below, messages.above);
}

bool CheckFreeSize(DecoDialog& dialog, int side) {
  const int unit = dialog.font().Unit;
  const SizeMessages& messages = kFreeSizeMessages[side];
  return AcceptField(dialog.fields(), kSizeEdits[side],
                     ConvertMeasure(kFreeSizes[side].minimum, kDot, unit, dialog.dpi),
                     ConvertMeasure(kFreeSizes[side].maximum, kDot, unit, dialog.dpi), unit,
                     messages.below, messages.above);
}

bool CheckSizes(DecoDialog& dialog) {
  const bool free = dialog.font().Size == kSizeScalable;
  for (int side = 0; side < kSides; ++side) {
    if (!(free ? CheckFreeSize(dialog, side) : CheckMagnification(dialog, side))) return false;
  }
  return true;
}

void StoreRadios(HWND window, DecoFontInfo& font) {
  const auto value = [window](RadioGroup group) {
    return static_cast<uint16_t>(CheckedRadio(window, group));
  };
  font.Decorate = value(kDecorateRadios);
  font.Unit = value(kUnitRadios);
  font.Pitch = static_cast<uint16_t>(1 + value(kPitchRadios));
  font.Rotate = static_cast<uint16_t>(90 * value(kRotateRadios));
  font.ColorRevolution = value(kReverseRadios);
  font.Smoothing = value(kSmoothRadios);
  font.Bold = value(kBoldRadios);
  font.OutlineStyle = value(kOutlineRadios);
}

}  // namespace

bool StoreDecoFont(HWND window, DecoDialog& dialog) {
  DecoFontInfo& font = dialog.font();
  WCHAR name[kFontNameLength];
  if (!ReadFontName(window, IDC_DECO_FONT_NAME, dialog.store, kDecorativeFont, name)) return false;
  if (!CheckSizes(dialog) || !CheckSerialFields(window, kDecoSerial)) return false;

  dialog.store.WorkFont.FontKind = kDecorativeFont;
  CopyText(dialog.store.WorkFont.FontName, name);
  CopyText(font.DecoFontName, name);
  CopyText(font.ResiFontName, dialog.row.ResiFontName);
  StoreRadios(window, font);
  for (int side = 0; side < kSides; ++side) {
    dialog.size(side) = static_cast<int16_t>(SpinPosition(window, kSizeSpins[side]));
    dialog.magnification(side) =
        static_cast<int16_t>(SpinPosition(window, kMagnificationSpins[side]));
  }
  StoreSerialFields(window, kDecoSerial, SerialOf(font));
  return true;
}

}  // namespace kestrel
