#include "fonts/font_sizes.h"

#include "driver/text.h"
#include "fonts/resident_fonts.h"
#include "paper/fields/measured_value.h"

namespace kestrel {
namespace {

int ConvertFontSize(int value, int from, int to, int dpi) {
  const bool dotsAndInches = (from == kDot && to == kInch) || (from == kInch && to == kDot);
  if (!dotsAndInches) return ConvertMeasure(value, from, to, dpi);
  return ConvertMeasure(ConvertMeasure(value, from, kMillimetre, dpi), kMillimetre, to, dpi);
}

}  // namespace

void ComputeFontSize(DecoFontInfo& font, uint16_t code, int dpi) {
  font.Size = code;
  const FontCell* cell = FindFontCell(code);
  if (cell == nullptr) return;
  const int width = font.ExpandX * cell->width;
  const int height = font.ExpandY * cell->height;
  font.SizeX = static_cast<int16_t>(ConvertMeasure(width, kDot, font.Unit, dpi));
  font.SizeY = static_cast<int16_t>(ConvertMeasure(height, kDot, font.Unit, dpi));
}

void ChangeFontUnit(DecoFontInfo& font, uint16_t unit, int dpi) {
  font.SizeX = static_cast<int16_t>(ConvertFontSize(font.SizeX, font.Unit, unit, dpi));
  font.SizeY = static_cast<int16_t>(ConvertFontSize(font.SizeY, font.Unit, unit, dpi));
  font.Unit = unit;
}

void ApplyRowDefaults(DecoFontInfo& font, const DecoFontInfo& row, bool serialDefaults) {
  CopyText(font.ResiFontName, row.ResiFontName);
  font.Decorate = 1;
  const FontCell* first = CellAt(row.Size, 0);
  font.Size = first != nullptr ? first->code : row.Size;
  font.Unit = kDot;
  font.Pitch = 1;
  font.ColorRevolution = 0;
  font.Smoothing = 0;
  font.Bold = 0;
  font.OutlineStyle = 0;
  font.SizeX = row.SizeX;
  font.SizeY = row.SizeY;
  font.ExpandX = row.ExpandX;
  font.ExpandY = row.ExpandY;
  font.Rotate = row.Rotate;
  if (!serialDefaults) return;
  font.Mode = row.Mode;
  font.PrintNum = row.PrintNum;
  font.Incriment = row.Incriment;
  font.ActivateData = row.ActivateData;
  font.NegativeData = row.NegativeData;
}

}  // namespace kestrel
