// The preview's source once more, compiled for the x87, whose registers hold more digits.
#define kestrel kestrel_x87
#include <gtest/gtest.h>

#include "paper/preview_layout.cpp"

TEST(PreviewX87, MeasuresInNumbersOf32Bits) {
  kestrel::PaperInfo papers[2] = {};
  papers[0].LabelWidth = 112, papers[0].LabelHeight = 21;
  papers[1].LabelWidth = 464, papers[1].LabelHeight = 29;
  EXPECT_EQ(kestrel::MeasurePreview(papers[0], {0, 0, 120, 200}).height, 23);
  EXPECT_EQ(kestrel::MeasurePreview(papers[1], {0, 0, 120, 200}).height, 7);
}
