// The halftone dialogs: what a person can set, what permission holds back, what comes home.
#include <windows.h>
#include <gtest/gtest.h>
#include <winddi.h>

#include <cstring>
#include <string>
#include <vector>

#include "support/test_machine.h"

namespace {

using platform::Desk;
using platform::ScriptedUser;

constexpr int kContrast = 2001, kBrightness = 2002, kColour = 2003, kRedGamma = 2005;
constexpr int kBrightnessValue = 2102, kRedGammaValue = 2105, kGreenGammaValue = 2106,
              kReset = 2400, kPattern = 2201;
constexpr int kNegative = 2301, kDensity = 2001, kDeviceRedGamma = 2002, kDye = 2005;

class HalftoneTest : public support::MachineTest {
 protected:
  void Attach(std::vector<ScriptedUser::Step> steps) {
    user_ = ScriptedUser(std::move(steps));
    desk().Attach(&user_);
  }
  LONG Adjust(std::vector<ScriptedUser::Step> steps, BOOL permission = TRUE) {
    Attach(std::move(steps));
    WCHAR name[] = u"Label Printer";
    return Done(HTUI_ColorAdjustmentW(name, nullptr, nullptr, &adjustment_, TRUE, permission));
  }
  LONG AdjustDevice(std::vector<ScriptedUser::Step> steps, DEVHTINFO* adjusted) {
    Attach(std::move(steps));
    WCHAR name[] = u"Label Printer";
    DEVHTADJDATA data = {0, 203, 203, &standard_, adjusted};
    return Done(HTUI_DeviceColorAdjustmentW(name, &data));
  }
  LONG Done(LONG answer) {
    desk().Attach(nullptr);
    EXPECT_EQ(user_.Problem(), "");
    EXPECT_TRUE(user_.Finished());
    return answer;
  }
  static ScriptedUser::Step Press(int id, bool done = true) {
    return [=](Desk& desk) { EXPECT_EQ(desk.Click(id), done); };
  }

  ScriptedUser user_;
  COLORADJUSTMENT adjustment_ = {24, 0, 0, 10000, 10000, 10000, 0, 10000, 0, 0, 0, 0};
  DEVHTINFO standard_ = {HT_FLAG_HAS_BLACK_DYE, HT_PATSIZE_8x8_M, 0, {}};
};

TEST_F(HalftoneTest, SlidersNumbersAndBoxesComeHome) {
  const auto set = [](Desk& desk) {
    EXPECT_EQ(desk.Title(), u"Label Printer - ｶﾗｰ調整");
    EXPECT_TRUE(desk.Slide(kBrightness, -100));
    EXPECT_EQ(desk.Text(kBrightnessValue), u"-100");
    EXPECT_TRUE(desk.Replace(kRedGammaValue, u"65000"));
    EXPECT_TRUE(desk.Click(kNegative));
    EXPECT_EQ(desk.Control(kRedGamma).position, 65000);
    EXPECT_TRUE(desk.Replace(kGreenGammaValue, u"9"));
    EXPECT_TRUE(desk.Tab());
    EXPECT_EQ(desk.Text(kGreenGammaValue), u"2500") << "brought inside the bounds";
    EXPECT_TRUE(desk.Replace(kBrightnessValue, u"-"));
    EXPECT_FALSE(desk.Slide(kColour, 5)) << "nothing to see on a monochrome device";
  };
  EXPECT_EQ(Adjust({set, [](Desk& desk) { EXPECT_TRUE(desk.Enter()); }}), 1);
  EXPECT_EQ(adjustment_.caBrightness, -100);
  EXPECT_EQ(adjustment_.caRedGamma, 65000);
  EXPECT_EQ(adjustment_.caFlags, CA_NEGATIVE);
  EXPECT_EQ(adjustment_.caContrast, 0);
  EXPECT_EQ(Adjust({Press(kReset), Press(IDOK)}), 1);
  EXPECT_EQ(adjustment_.caRedGamma, 10000);
  EXPECT_EQ(adjustment_.caFlags, 0);
}

TEST_F(HalftoneTest, NothingChangesWithoutConfirmationPermissionOrTouch) {
  adjustment_.caContrast = 300;  // as a foreign program stored it
  adjustment_.caIlluminantIndex = 77;
  const COLORADJUSTMENT before = adjustment_;
  const auto slide = [](Desk& desk) { EXPECT_TRUE(desk.Slide(kBrightness, 7)); };
  EXPECT_EQ(Adjust({slide, Press(IDCANCEL)}), 0);
  EXPECT_EQ(Adjust({slide, [](Desk& desk) { EXPECT_TRUE(desk.Close()); }}), 0);
  EXPECT_EQ(Adjust({Press(IDOK)}), 0);
  EXPECT_EQ(Adjust({[](Desk& desk) {
                      EXPECT_FALSE(desk.Slide(kContrast, 7));
                      EXPECT_FALSE(desk.Replace(kBrightnessValue, u"7"));
                    },
                    Press(kReset, false), Press(IDOK, false), Press(IDCANCEL)},
                   FALSE),
            0);
  EXPECT_EQ(std::memcmp(&before, &adjustment_, sizeof before), 0);
  adjustment_.caSize = 23;
  EXPECT_EQ(Adjust({Press(IDCANCEL)}), 0);
  EXPECT_EQ(adjustment_.caSize, 23);
  EXPECT_EQ(Adjust({Press(IDOK)}), 1);
  EXPECT_EQ(adjustment_.caSize, 24) << "a foreign size is mended";
  EXPECT_LT(HTUI_ColorAdjustmentW(nullptr, nullptr, nullptr, nullptr, TRUE, TRUE), 0);
}

TEST_F(HalftoneTest, TheDeviceDescriptionIsEditedOrShown) {
  DEVHTINFO adjusted = standard_;
  adjusted.HTPatternSize = HT_PATSIZE_2x2;
  adjusted.ColorInfo.RedGamma = 20000;
  const auto set = [](Desk& desk) {
    EXPECT_EQ(desk.Title(), u"Label Printer - ﾊｰﾌﾄｰﾝ調整");
    EXPECT_EQ(desk.Control(kPattern).selection, 0);
    EXPECT_TRUE(desk.Select(kPattern, u"16 x 16 (拡張)"));
    EXPECT_EQ(desk.Control(kDeviceRedGamma).position, 20000);
    EXPECT_EQ(desk.Control(kDensity).maximum, 203);
    EXPECT_TRUE(desk.Slide(kDensity, 203));
    EXPECT_FALSE(desk.Slide(kDye, 1)) << "a device without colours";
  };
  EXPECT_EQ(AdjustDevice({set, Press(IDOK)}, &adjusted), 1);
  EXPECT_EQ(adjusted.HTPatternSize, HT_PATSIZE_16x16_M);
  EXPECT_EQ(adjusted.DevPelsDPI, 203u);
  EXPECT_EQ(adjusted.HTFlags, HT_FLAG_HAS_BLACK_DYE);
  EXPECT_EQ(AdjustDevice({Press(kReset), Press(IDOK)}, &adjusted), 1);
  EXPECT_EQ(adjusted.HTPatternSize, HT_PATSIZE_8x8_M);
  const auto locked = [](Desk& desk) {
    EXPECT_EQ(desk.Control(kPattern).selection, 7);
    EXPECT_FALSE(desk.Select(kPattern, 0));
  };
  EXPECT_EQ(AdjustDevice({locked, Press(IDCANCEL)}, nullptr), 0);
  DEVHTADJDATA none = {};
  EXPECT_LT(HTUI_DeviceColorAdjustmentW(nullptr, &none), 0);
}

TEST_F(HalftoneTest, TheLibraryIsFoundByItsName) {
  const HMODULE library = LoadLibraryW(u"htui");
  ASSERT_NE(library, nullptr);
  EXPECT_NE(GetProcAddress(library, "HTUI_ColorAdjustmentW"), nullptr);
  EXPECT_NE(GetProcAddress(library, "HTUI_DeviceColorAdjustmentW"), nullptr);
  FreeLibrary(library);
}

TEST_F(HalftoneTest, WindowFailuresAreErrors) {
  for (int n = 1; n < 30; n += 3) {
    machine().faults.FailNth(platform::Fault::kWindow, n);
    EXPECT_LT(Adjust({}), 0) << n;
    machine().faults.Clear();
  }
}

}  // namespace
