// The limits of a paper's sizes, for everything that holds to them.
#pragma once

#include <windows.h>

#include <cstdint>

namespace kestrel {

// Smallest and largest value of one measured field.
struct SizeLimit {
  int16_t minimum;
  int16_t maximum;
};

// The limits of a paper, in the unit of the paper being edited.
struct PaperLimits {
  SizeLimit width, length, gap, eyeMark;
  SizeLimit printableLeft, printableTop, printableWidth, printableHeight;
};
static_assert(sizeof(PaperLimits) == 32);

// The limits in tenths of a millimetre. That of the eye-mark is in dots of the head.
constexpr SizeLimit kLabelWidths = {100, 580};
constexpr SizeLimit kLabelLengths = {100, 1630};
constexpr SizeLimit kGaps = {0, 80};
constexpr SizeLimit kPrintableWidths = {284, 480};
constexpr SizeLimit kPrintableHeights = {160, 1600};
constexpr int16_t kWidthKeptPrintable = 140;  // of the widest label, right of the printable left
constexpr int kMaxEyeMarkDots = 99;

}  // namespace kestrel
