// The preview's source compiled for the x87, which computes with the precision that the caller of
// the module has set.
#define kestrel kestrel_x87
#include <gtest/gtest.h>

#include "paper/preview_layout.cpp"

namespace {

// Sets the control word of the x87 while it lives: 0x007F computes with 24 bits, 0x027F with 53,
// 0x037F with 64.
class ControlWord {
 public:
  explicit ControlWord(uint16_t word) {
    __asm__ volatile("fnstcw %0" : "=m"(before_));
    __asm__ volatile("fldcw %0" : : "m"(word));
  }
  ~ControlWord() { __asm__ volatile("fldcw %0" : : "m"(before_)); }
  ControlWord(const ControlWord&) = delete;
  ControlWord& operator=(const ControlWord&) = delete;

 private:
  uint16_t before_;
};

TEST(PreviewX87, ScalesAlikeAtEveryPrecision) {
  for (const uint16_t word : std::initializer_list<uint16_t>{0x007F, 0x027F, 0x037F}) {
    SCOPED_TRACE(word);
    const ControlWord set(word);
    kestrel::PaperInfo papers[2] = {};
    papers[0].LabelWidth = 112, papers[0].LabelHeight = 21;
    papers[1].LabelWidth = 464, papers[1].LabelHeight = 29;
    EXPECT_EQ(kestrel::MeasurePreview(papers[0], {0, 0, 120, 200}).height, 23);
    EXPECT_EQ(kestrel::MeasurePreview(papers[1], {0, 0, 120, 200}).height, 7);
    // Just below half a pixel, on it, and above; with 24 bits 0.49999997 + 0.5 is 1.
    EXPECT_EQ(kestrel::ScaleToPreview(1, 0.49999997F), 0);
    EXPECT_EQ(kestrel::ScaleToPreview(5, 0.5F), 3);
    EXPECT_EQ(kestrel::ScaleToPreview(-5, 0.5F), -2);
    EXPECT_EQ(kestrel::ScaleToPreview(-1, 0.75F), -1);
    EXPECT_EQ(kestrel::ScaleToPreview(8388609, 1.0F), 8388609);
  }
}

}  // namespace
