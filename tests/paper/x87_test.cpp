// Compiles the preview's layout for the x87, whose precision the caller of the module determines.
#define kestrel kestrel_x87
#include "tests/support/x87.h"

#include <gtest/gtest.h>

#include "paper/preview_layout.cpp"

namespace {

TEST(PreviewX87, ScalesAlikeAtEveryPrecision) {
  const uint16_t before = support::ControlWord();
  for (const uint16_t word : support::kControlWords) {
    SCOPED_TRACE(word);
    support::SetControlWord(word);
    kestrel::PaperInfo papers[2] = {};
    papers[0].LabelWidth = 112, papers[0].LabelHeight = 21;
    papers[1].LabelWidth = 464, papers[1].LabelHeight = 29;
    EXPECT_EQ(kestrel::MeasurePreview(papers[0], {0, 0, 120, 200}).height, 23);
    EXPECT_EQ(kestrel::MeasurePreview(papers[1], {0, 0, 120, 200}).height, 7);
    // Just below half a pixel, half a pixel, and more. With 24 bits 0.49999997 + 0.5 is 1.
    EXPECT_EQ(kestrel::ScaleToPreview(1, 0.49999997F), 0);
    EXPECT_EQ(kestrel::ScaleToPreview(5, 0.5F), 3);
    EXPECT_EQ(kestrel::ScaleToPreview(-5, 0.5F), -2);
    EXPECT_EQ(kestrel::ScaleToPreview(-1, 0.75F), -1);
    EXPECT_EQ(kestrel::ScaleToPreview(8388609, 1.0F), 8388609);
  }
  support::SetControlWord(before);
}

}  // namespace
