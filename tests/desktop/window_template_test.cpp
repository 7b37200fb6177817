// Dialog templates: both forms, pixels, and damage.
#include "desktop/window_fixture.h"
#include "platform/desktop/windows/dialog_template.h"

namespace test {
namespace {

DialogBuilder Sample(bool extended) {
  DialogBuilder builder(u"用紙", extended);
  builder.Add(u"static", 9, SS_LEFT, u"幅:", {7, 3, 40, 11}).Button(20, BS_PUSHBUTTON, u"OK");
  builder.Edit(0xFFFE);
  return builder;
}

TEST(DialogTemplate, BothFormsSayTheSame) {
  for (bool extended : {true, false}) {
    const std::vector<BYTE> bytes = Sample(extended).Bytes();
    platform::DialogTemplate dialog;
    ASSERT_TRUE(platform::ParseDialogTemplate(bytes.data(), bytes.size(), dialog));
    EXPECT_EQ(dialog.caption, u"用紙");
    EXPECT_EQ(dialog.exStyle, WS_EX_CONTEXTHELP);
    EXPECT_EQ(dialog.cx, 200);
    ASSERT_EQ(dialog.items.size(), 3u);
    EXPECT_EQ(dialog.items[0].windowClass.text, u"static");
    EXPECT_EQ(dialog.items[0].title.text, u"幅:");
    EXPECT_EQ(dialog.items[0].y, 3);
    EXPECT_EQ(dialog.items[1].windowClass.ordinal, 0x80);
    EXPECT_EQ(dialog.items[2].id, 0xFFFE);
    EXPECT_EQ(dialog.items[2].style, WS_CHILD | WS_VISIBLE | WS_TABSTOP);
  }
}

TEST(DialogTemplate, AShortOneIsRefusedAtEveryLength) {
  for (bool extended : {true, false}) {
    const std::vector<BYTE> bytes = Sample(extended).Bytes();
    for (size_t size = 0; size < bytes.size(); ++size) {
      // A copy of exactly that size, so that the sanitizer sees a read past it.
      const std::vector<BYTE> cut(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
      platform::DialogTemplate dialog;
      EXPECT_FALSE(platform::ParseDialogTemplate(cut.data(), cut.size(), dialog)) << size;
    }
  }
}

TEST_F(WindowTest, DialogUnitsBecomePixelsOfFixedBaseUnits) {
  DialogBuilder builder = Sample(true);
  Run(builder, {[&](Desk& desk) {
        const platform::WindowView window = desk.Windows().back();
        EXPECT_EQ(window.width, 300);
        EXPECT_EQ(window.height, 150);
        EXPECT_EQ(window.title, u"用紙");
        const RECT label = desk.Control(9).rect;
        EXPECT_EQ(label.left, 11);  // 10.5, rounded up
        EXPECT_EQ(label.top, 5);
        RECT units = {4, 8, 7, 3};
        MapDialogRect(dialog, &units);
        EXPECT_EQ(units.left, 6);
        EXPECT_EQ(units.top, 12);
        EXPECT_EQ(units.right, 11);
        EXPECT_EQ(units.bottom, 5);
        POINT point = {1, 1};
        MapWindowPoints(Item(9), dialog, &point, 1);
        EXPECT_EQ(point.x, 12);
        EXPECT_EQ(point.y, 6);
        desk.Close();
      }});
}

}  // namespace
}  // namespace test
