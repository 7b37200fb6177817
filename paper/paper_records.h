// The limits of a paper's sizes, and the offsets of the paper page.
#pragma once

#include <windows.h>

#include <cstdint>

namespace kestrel {

// The smallest and the largest value of one measured field.
struct SizeLimit {
  int16_t minimum;
  int16_t maximum;
};

// The limits of all measured fields of a paper, in one unit.
struct PaperLimits {
  SizeLimit width, length, gap, eyeMark;
  SizeLimit printableLeft, printableTop, printableWidth, printableHeight;
};
static_assert(sizeof(PaperLimits) == 32);

// The limits in tenths of a millimetre; that of the eye-mark is in dots of the head.
constexpr SizeLimit kLabelWidths = {100, 580};
constexpr SizeLimit kLabelLengths = {100, 1630};
constexpr SizeLimit kGaps = {0, 80};
constexpr SizeLimit kPrintableWidths = {284, 480};
constexpr SizeLimit kPrintableHeights = {160, 1600};
constexpr int16_t kMinimumRightOfPrintableLeft = 140;  // on the widest label
constexpr int kMaxEyeMarkDots = 99;

// The offset fields of the paper page, in dots.
struct PaperOffsets {
  int16_t vertBase, horzBase, peel, tear, pitch;
};

}  // namespace kestrel
