#include "paper/paper_limits.h"

#include "paper/fields/measured_value.h"

namespace kestrel {
namespace {

constexpr SizeLimit PaperLimits::*kAllLimits[] = {
    &PaperLimits::width,          &PaperLimits::length,          &PaperLimits::gap,
    &PaperLimits::eyeMark,        &PaperLimits::printableLeft,   &PaperLimits::printableTop,
    &PaperLimits::printableWidth, &PaperLimits::printableHeight,
};

}  // namespace

PaperLimits BuildPaperLimits(int dpi) {
  const int eyeMark = ConvertMeasure(kMaxEyeMarkDots, kDot, kMillimetre, dpi);
  return {
      .width = kLabelWidths,
      .length = kLabelLengths,
      .gap = kGaps,
      .eyeMark = {0, static_cast<int16_t>(eyeMark)},
      .printableLeft = {0, kLabelWidths.maximum - kMinimumRightOfPrintableLeft},
      .printableTop = {0, kLabelLengths.maximum},
      .printableWidth = kPrintableWidths,
      .printableHeight = kPrintableHeights,
  };
}

PaperLimits BuildPaperLimits(int dpi, int unit) {
  PaperLimits limits = BuildPaperLimits(dpi);
  if (unit == kInch) ConvertPaperLimits(limits, kMillimetre, kInch);
  return limits;
}

void ConvertPaperLimits(PaperLimits& limits, int from, int to) {
  constexpr int kNoDensity = 0;  // only conversions to and from dots need one
  for (const auto member : kAllLimits) {
    SizeLimit& limit = limits.*member;
    limit.minimum = static_cast<int16_t>(ConvertMeasure(limit.minimum, from, to, kNoDensity));
    limit.maximum = static_cast<int16_t>(ConvertMeasure(limit.maximum, from, to, kNoDensity));
  }
}

}  // namespace kestrel
