#include "paper/paper_limits.h"

#include "paper/fields/measured_value.h"

namespace kestrel {
namespace {

// In tenths of a millimetre.
constexpr int16_t kMinSide = 100;
constexpr int16_t kMaxWidth = 580;
constexpr int16_t kMaxLength = 1630;
constexpr int16_t kMaxGap = 80;
constexpr int16_t kWidthKeptPrintable = 140;  // of the widest label, right of the printable left
constexpr SizeLimit kPrintableWidth = {284, 480};
constexpr SizeLimit kPrintableHeight = {160, 1600};

constexpr int kMaxEyeMarkDots = 99;

constexpr SizeLimit PaperLimits::*kAllLimits[] = {
    &PaperLimits::width,          &PaperLimits::length,          &PaperLimits::gap,
    &PaperLimits::eyeMark,        &PaperLimits::printableLeft,   &PaperLimits::printableTop,
    &PaperLimits::printableWidth, &PaperLimits::printableHeight,
};

}  // namespace

PaperLimits BuildPaperLimits(int dpi) {
  const int eyeMark = ConvertMeasure(kMaxEyeMarkDots, kDot, kMillimetre, dpi);
  return {
      .width = {kMinSide, kMaxWidth},
      .length = {kMinSide, kMaxLength},
      .gap = {0, kMaxGap},
      .eyeMark = {0, static_cast<int16_t>(eyeMark)},
      .printableLeft = {0, kMaxWidth - kWidthKeptPrintable},
      .printableTop = {0, kMaxLength},
      .printableWidth = kPrintableWidth,
      .printableHeight = kPrintableHeight,
  };
}

PaperLimits BuildPaperLimits(int dpi, int unit) {
  PaperLimits limits = BuildPaperLimits(dpi);
  if (unit == kInch) ConvertPaperLimits(limits, kMillimetre, kInch);
  return limits;
}

void ConvertPaperLimits(PaperLimits& limits, int from, int to) {
  // Between these two units no density is needed.
  constexpr int kNoDensity = 0;
  for (const auto member : kAllLimits) {
    SizeLimit& limit = limits.*member;
    limit.minimum = static_cast<int16_t>(ConvertMeasure(limit.minimum, from, to, kNoDensity));
    limit.maximum = static_cast<int16_t>(ConvertMeasure(limit.maximum, from, to, kNoDensity));
  }
}

}  // namespace kestrel
