// The two characters that show a decorative font's pitch and size.
#include "deco_walk.h"
#include "platform/desktop/drawing/gdi.h"

namespace fonts {
namespace {

using platform::DrawOp;

struct Look {
  int height, width;  // of the font drawn with
  int iX, jX, y;
  const char16_t* face = u"ＭＳ ゴシック";
};
Step Sees(Look look) {
  return [look](Desk& desk) {
    const auto view = desk.Control(IDC_DECO_FONT_PREVIEW);
    const int boxWidth = view.rect.right - view.rect.left;
    ASSERT_EQ(view.drawing.size(), look.jX < boxWidth ? 2u : 1u);  // "j" may be out of sight
    for (const DrawOp& op : view.drawing) {
      const bool first = &op == &view.drawing.front();
      EXPECT_EQ(op.kind, DrawOp::Kind::kText);
      EXPECT_EQ(op.text, first ? u"i" : u"j");
      EXPECT_EQ(op.textColour, RGB(255, 255, 0));
      EXPECT_EQ(op.fontHeight, look.height);
      EXPECT_EQ(op.fontWidth, look.width);
      EXPECT_EQ(op.face, look.face);
      EXPECT_EQ(op.at.x, first ? look.iX : look.jX);
      EXPECT_EQ(op.at.y, look.y);
      EXPECT_EQ(op.opaque, first);
    }
    const DrawOp& i = view.drawing.front();
    EXPECT_EQ(i.background, RGB(20, 20, 20));
    EXPECT_EQ(i.rect.right - i.rect.left, boxWidth);
    EXPECT_EQ(i.rect.bottom - i.rect.top, view.rect.bottom - view.rect.top);
  };
}

using DecoPreviewTest = FontTest;

// The box is 123 × 117 pixels; a character of a face is naturally half as wide as it is high, a
// narrow one of a proportional font half of that.
TEST_F(DecoPreviewTest, FollowsSizeAndPitch) {
  const int objects = platform::LiveGdiObjects();
  Store({Deco(u"FREE", u"OUTLINE", 1024, 60, 60)});
  Register(
      {NewDeco(u"A", {Sees({9, 2, 59, 61, 54}), Select(IDC_DECO_FONT_RESIDENT, kX23),
                      Sees({48, 24, 37, 61, 34}), Click(IDC_DECO_FONT_PITCH_PROPORTIONAL),
                      Sees({48, 24, 43, 67, 34, u"ＭＳ Ｐゴシック"}),
                      Click(IDC_DECO_FONT_PITCH_FIXED), Sees({48, 24, 37, 61, 34}),
                      // A size in millimetres is drawn in dots.
                      Click(IDC_DECO_FONT_MM), Replace(IDC_DECO_FONT_EXPAND_Y, u"2"),
                      Sees({96, 24, 37, 61, 10}),
                      // Higher, then wider than the box.
                      Select(IDC_DECO_FONT_RESIDENT, kPop), Sees({133, 39, 22, 61, 0}),
                      Replace(IDC_DECO_FONT_EXPAND_X, u"6"), Sees({133, 238, 0, 238, 0}),
                      // As narrow as can be.
                      Select(IDC_DECO_FONT_RESIDENT, kX20), Replace(IDC_DECO_FONT_EXPAND_X, u""),
                      Sees({9, 1, 60, 61, 54}), Replace(IDC_DECO_FONT_EXPAND_X, u"1")}),
       ChangeDeco({Sees({60, 30, 31, 61, 28}), Replace(IDC_DECO_FONT_HEIGHT, u"100"),
                   Sees({100, 30, 31, 61, 8}), Spin(IDC_DECO_FONT_WIDTH_SPIN, 20),
                   Sees({100, 40, 21, 61, 8})})});
  EXPECT_EQ(platform::LiveGdiObjects(), objects);
}

}  // namespace
}  // namespace fonts
