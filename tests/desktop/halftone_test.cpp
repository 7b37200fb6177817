// The halftone dialogs: what a person can set, what permission holds back, what comes home.
#include <windows.h>
#include <winddi.h>

#include <cstring>

#include "tests/support/steps.h"
#include "tests/support/test_machine.h"

namespace support {
namespace {

// The k-th row has the field 2101 + k.
constexpr int kContrast = 2101, kBrightness = 2102, kColour = 2103, kRedGamma = 2105,
              kGreenGamma = 2106, kNegative = 2111, kReset = 2400;
constexpr int kPattern = 2101, kDensity = 2102, kDye = 2106;

class HalftoneTest : public MachineTest {
 protected:
  LONG Adjust(Steps steps, BOOL permission = TRUE) {
    WCHAR name[] = u"Label Printer";
    return Follow(std::move(steps), [&] {
      return HTUI_ColorAdjustmentW(name, nullptr, nullptr, &adjustment_, TRUE, permission);
    });
  }
  LONG AdjustDevice(Steps steps, DEVHTINFO* adjusted) {
    DEVHTADJDATA data = {0, 203, 203, &standard_, adjusted};
    return Follow(std::move(steps), [&] { return HTUI_DeviceColorAdjustmentW(nullptr, &data); });
  }

  COLORADJUSTMENT adjustment_ = {24, 0, 0, 10000, 10000, 10000, 0, 10000, 0, 0, 0, 0};
  DEVHTINFO standard_ = {HT_FLAG_HAS_BLACK_DYE, HT_PATSIZE_8x8_M, 0, {}};
};

TEST_F(HalftoneTest, NumbersAndChoicesComeHome) {
  EXPECT_EQ(Adjust({ExpectTitle(u"Label Printer - ｶﾗｰ調整"), Replace(kBrightness, u"-100"),
                    Replace(kRedGamma, u"65000"), Select(kNegative, 1), Replace(kGreenGamma, u"9"),
                    Tab(), ExpectText(kGreenGamma, u"2500"), Replace(kContrast, u"-"),
                    ExpectEnabled({kColour}, false), Enter()}),
            1);
  EXPECT_EQ(adjustment_.caBrightness, -100);
  EXPECT_EQ(adjustment_.caRedGamma, 65000);
  EXPECT_EQ(adjustment_.caGreenGamma, 2500) << "brought inside the bounds";
  EXPECT_EQ(adjustment_.caFlags, CA_NEGATIVE);
  EXPECT_EQ(adjustment_.caContrast, 0) << "no number";
  EXPECT_EQ(Adjust({Click(kReset), Click(IDOK)}), 1);
  EXPECT_EQ(adjustment_.caRedGamma, 10000);
  EXPECT_EQ(adjustment_.caFlags, 0);
}

TEST_F(HalftoneTest, NothingChangesWithoutConfirmationPermissionOrTouch) {
  adjustment_.caContrast = 300;  // as a foreign program stored it
  adjustment_.caIlluminantIndex = 77;
  adjustment_.caSize = 23;
  const COLORADJUSTMENT before = adjustment_;
  EXPECT_EQ(Adjust({Replace(kBrightness, u"7"), Click(IDCANCEL)}), 0);
  EXPECT_EQ(Adjust({Replace(kBrightness, u"7"), Close()}), 0);
  EXPECT_EQ(
      Adjust({ExpectEnabled({kContrast, kNegative, kReset, IDOK}, false), Click(IDCANCEL)}, FALSE),
      0);
  EXPECT_EQ(std::memcmp(&before, &adjustment_, sizeof before), 0);
  EXPECT_EQ(Adjust({Click(IDOK)}), 1);
  EXPECT_EQ(adjustment_.caSize, 24) << "a foreign size is mended";
  EXPECT_EQ(Adjust({Click(IDOK)}), 0);
  EXPECT_EQ(adjustment_.caContrast, 300);
  EXPECT_EQ(adjustment_.caIlluminantIndex, 77);
}

TEST_F(HalftoneTest, TheDeviceDescriptionIsEditedOrShown) {
  DEVHTINFO adjusted = standard_;
  adjusted.HTPatternSize = 0;
  EXPECT_EQ(AdjustDevice({ExpectTitle(u"ﾊｰﾌﾄｰﾝ調整"), ExpectSelected(kPattern, 0),
                          Select(kPattern, u"16 x 16 (拡張)"), Replace(kDensity, u"999"),
                          ExpectEnabled({kDye}, false), Click(IDOK)},
                         &adjusted),
            1);
  EXPECT_EQ(adjusted.HTPatternSize, 15u);
  EXPECT_EQ(adjusted.DevPelsDPI, 203u);
  EXPECT_EQ(adjusted.HTFlags, HT_FLAG_HAS_BLACK_DYE);
  EXPECT_EQ(AdjustDevice({Click(kReset), Click(IDOK)}, &adjusted), 1);
  EXPECT_EQ(adjusted.HTPatternSize, HT_PATSIZE_8x8_M);
  EXPECT_EQ(AdjustDevice({ExpectSelected(kPattern, 7), ExpectEnabled({kPattern}, false), Escape()},
                         nullptr),
            0);
  DEVHTADJDATA none = {};
  EXPECT_LT(HTUI_DeviceColorAdjustmentW(nullptr, &none), 0);
}

}  // namespace
}  // namespace support
