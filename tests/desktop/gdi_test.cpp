// Drawing: what a window's list holds afterwards, which objects are left, how wide texts are.
#include "platform/desktop/drawing/gdi.h"

#include "resources/resource.h"
#include "tests/desktop/window_fixture.h"

namespace support {
namespace {

using platform::DrawOp;

class GdiTest : public WindowTest {
 protected:
  void SetUp() override {
    WindowTest::SetUp();
    platform::TopWindowRequest request;
    request.width = request.height = 150;
    window = platform::CreateTopWindow(std::move(request));
    dc_ = GetDC(window);
  }
  void TearDown() override {
    EXPECT_EQ(ReleaseDC(window, dc_), TRUE);
    EXPECT_EQ(platform::LiveGdiObjects() + platform::LiveDcs(), 0);
    platform::Destroy(window);
    WindowTest::TearDown();
  }
  const platform::DisplayList& List() { return platform::FindWindowOf(window)->drawing; }
  std::vector<DrawOp::Kind> Kinds() {
    std::vector<DrawOp::Kind> kinds;
    for (const DrawOp& op : List()) kinds.push_back(op.kind);
    return kinds;
  }
  static HBRUSH Brush(int stock) { return static_cast<HBRUSH>(GetStockObject(stock)); }

  HDC dc_ = nullptr;
};

TEST_F(GdiTest, AThousandRedrawsLeaveNoObjectAndAShortList) {
  const RECT all = {0, 0, 150, 150};
  for (int i = 0; i < 1000; ++i) {
    const HPEN pen = CreatePen(PS_DOT, 1, RGB(255, 0, 0));
    const HGDIOBJ old = SelectObject(dc_, pen);
    FillRect(dc_, &all, Brush(WHITE_BRUSH));
    MoveToEx(dc_, 3, 4, nullptr);
    LineTo(dc_, 100, 4);
    SetBkMode(dc_, TRANSPARENT);
    for (int twice = 0; twice < 2; ++twice) TextOutW(dc_, 2, 2, u"搬", 1);
    SelectObject(dc_, old);
    ASSERT_TRUE(DeleteObject(pen));
  }
  ASSERT_THAT(Kinds(), ElementsAre(DrawOp::Kind::kFill, DrawOp::Kind::kLine, DrawOp::Kind::kText));
  EXPECT_EQ(std::tuple(List()[1].pen, List()[1].penStyle, List()[1].rect.right),
            std::tuple(RGB(255, 0, 0), PS_DOT, 100));
}

TEST_F(GdiTest, OnlyWhatIsWhollyHiddenIsDropped) {
  Rectangle(dc_, 10, 10, 40, 40);
  const RECT beside = {20, 20, 150, 150}, most = {10, 10, 39, 40}, over = {10, 10, 40, 40};
  FillRect(dc_, &beside, Brush(BLACK_BRUSH));
  FillRect(dc_, &most, Brush(BLACK_BRUSH));
  EXPECT_EQ(List().size(), 3u) << "a column of the rectangle is left to be seen";
  FillRect(dc_, &over, Brush(WHITE_BRUSH));
  EXPECT_THAT(Kinds(), ElementsAre(DrawOp::Kind::kFill, DrawOp::Kind::kFill));
  EXPECT_EQ(List()[0].brush, 0u) << "the black field beside, then the white one over both others";
  // A text in its box: clipped to it, opaque, in the context's colours.
  SetBkColor(dc_, RGB(20, 20, 20));
  SetTextColor(dc_, RGB(255, 255, 0));
  ExtTextOutW(dc_, 30, 20, ETO_OPAQUE | ETO_CLIPPED, &over, u"i", 1, nullptr);
  const DrawOp& text = List().back();
  EXPECT_EQ(List().size(), 2u) << "it hides the white field";
  EXPECT_EQ(std::tuple(text.opaque, text.rect.right, text.clip.right, text.fontAscent),
            std::tuple(true, 40, 40, 10));
  EXPECT_EQ(std::pair(text.background, text.textColour),
            std::pair(RGB(20, 20, 20), RGB(255, 255, 0)));
}

TEST_F(GdiTest, MistakesWithObjectsShow) {
  const HPEN pen = CreatePen(PS_SOLID, 1, 0);
  const HGDIOBJ old = SelectObject(dc_, pen);
  EXPECT_FALSE(DeleteObject(pen)) << "selected";
  SaveDC(dc_);
  SelectObject(dc_, old);
  EXPECT_FALSE(DeleteObject(pen)) << "held by the saved state";
  EXPECT_EQ(platform::LiveGdiObjects(), 1);
  RestoreDC(dc_, -1);
  EXPECT_EQ(SelectObject(dc_, old), pen);
  EXPECT_TRUE(DeleteObject(pen));
  EXPECT_FALSE(DeleteObject(pen)) << "stale";
  EXPECT_EQ(SelectObject(dc_, pen), nullptr);
  EXPECT_TRUE(DeleteObject(GetStockObject(WHITE_BRUSH)));
  EXPECT_NE(SelectObject(dc_, GetStockObject(WHITE_BRUSH)), nullptr);

  EXPECT_EQ(LoadBitmapW(module_, MAKEINTRESOURCEW(9999)), nullptr);
  const HBITMAP picture = LoadBitmapW(module_, MAKEINTRESOURCEW(IDB_BACKGROUND));
  EXPECT_EQ(SelectObject(dc_, picture), nullptr) << "bitmaps go into memory contexts only";
  const HDC memory = CreateCompatibleDC(dc_), second = CreateCompatibleDC(nullptr);
  const HGDIOBJ none = SelectObject(memory, picture);
  EXPECT_EQ(SelectObject(second, picture), nullptr) << "and into one at a time";
  EXPECT_FALSE(DeleteDC(dc_)) << "a window's context is released";
  EXPECT_FALSE(ReleaseDC(window, memory));
  BITMAP shape = {};
  GetObjectW(picture, sizeof shape, &shape);
  StretchBlt(dc_, 0, 0, 150, 150, memory, 0, 0, shape.bmWidth, shape.bmHeight, SRCCOPY);
  EXPECT_EQ(std::pair(List()[0].bitmap, List()[0].source.right),
            std::pair(IDB_BACKGROUND, shape.bmWidth));
  SelectObject(memory, none);
  EXPECT_TRUE(DeleteDC(second) && DeleteDC(memory) && DeleteObject(picture));
}

}  // namespace
}  // namespace support
