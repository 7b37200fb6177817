// The module's resources as the platform hands them out.
#include <windows.h>

#include <string>

#include "resources/resource.h"
#include "tests/support/test_machine.h"

namespace {

class LoadedResources : public support::MachineTest {
 protected:
  std::u16string Text(UINT id) {
    WCHAR text[512];
    return {text, static_cast<std::size_t>(LoadStringW(module_, id, text, 512))};
  }
};

TEST_F(LoadedResources, TextsComeWithTheirBreaksAndBlanks) {
  EXPECT_EQ(Text(IDS_CONFIRM_DELETE), u" を削除します。\nよろしいですか？");
  EXPECT_EQ(Text(IDS_BACKUP_FILTER), u"初期化ﾌｧｲﾙ(*.ini)\n*.ini\n");
  EXPECT_EQ(Text(IDS_HELP_OPERATION_COLOR_ADJUST), u"") << "empties the help box";
  EXPECT_EQ(Text(IDS_HELP_OPERATION_HALFTONE), u"");
}

TEST_F(LoadedResources, PicturesHaveTheSizeTheirBoxNeeds) {
  const struct {
    int id, width, height, bits;
  } rows[] = {{IDB_PRODUCT, 420, 200, 24},        {IDB_SKETCH_WIDTH, 138, 246, 8},
              {IDB_SKETCH_EYE_MARK, 138, 246, 8}, {IDB_SKETCH_BASE_POINTS, 120, 189, 8},
              {IDB_PORTRAIT, 96, 96, 8},          {IDB_LANDSCAPE_ROTATED, 96, 96, 8}};
  for (const auto& row : rows) {
    const HBITMAP bitmap = LoadBitmapW(module_, MAKEINTRESOURCEW(row.id));
    ASSERT_NE(bitmap, nullptr) << row.id;
    BITMAP facts{};
    GetObjectW(bitmap, sizeof facts, &facts);
    EXPECT_EQ(facts.bmWidth, row.width) << row.id;
    EXPECT_EQ(facts.bmHeight, row.height) << row.id;
    EXPECT_EQ(facts.bmBitsPixel, row.bits) << row.id;
    DeleteObject(bitmap);
  }
}

}  // namespace
