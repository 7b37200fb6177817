// Drawing: what a window's list holds afterwards, which objects are left, how wide texts are.
#include "platform/desktop/drawing/gdi.h"

#include <windows.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/desktop/windows/window.h"
#include "support/test_machine.h"

namespace {

using platform::DrawOp;
using testing::ElementsAre;

// A window of 150 × 150 pixels, and the count of everything that must be gone at the end.
class GdiTest : public support::MachineTest {
 protected:
  void SetUp() override {
    MachineTest::SetUp();
    struct {
      DLGTEMPLATE head = {WS_POPUP, 0, 0, 0, 0, 100, 100};
      WORD menu = 0, windowClass = 0, title = 0;
    } form;
    window_ = CreateDialogIndirectParamW(nullptr, &form.head, nullptr, Quiet, 0);
    ASSERT_NE(window_, nullptr);
    dc_ = GetDC(window_);
    objects_ = platform::LiveGdiObjects();
  }
  void TearDown() override {
    EXPECT_EQ(ReleaseDC(window_, dc_), TRUE);
    EXPECT_EQ(platform::LiveGdiObjects(), objects_);
    EXPECT_EQ(platform::LiveDcs(), 0);
    DestroyWindow(window_);
    MachineTest::TearDown();
  }

  static INT_PTR CALLBACK Quiet(HWND, UINT, WPARAM, LPARAM) { return FALSE; }
  const platform::DisplayList& List() { return platform::FindWindowOf(window_)->drawing; }
  std::vector<DrawOp::Kind> Kinds() {
    std::vector<DrawOp::Kind> kinds;
    for (const DrawOp& op : List()) kinds.push_back(op.kind);
    return kinds;
  }

  HWND window_ = nullptr;
  HDC dc_ = nullptr;
  int objects_ = 0;
};

TEST_F(GdiTest, AThousandRedrawsLeaveNoObjectAndAShortList) {
  for (int i = 0; i < 1000; ++i) {
    const HPEN pen = CreatePen(PS_DOT, 1, RGB(255, 0, 0));
    const HGDIOBJ old = SelectObject(dc_, pen);
    PatBlt(dc_, 0, 0, 150, 150, WHITENESS);
    MoveToEx(dc_, 3, 4, nullptr);
    LineTo(dc_, 100, 4);
    TextOutW(dc_, 2, 2, u"搬", 1);
    SelectObject(dc_, old);
    ASSERT_TRUE(DeleteObject(pen));
  }
  ASSERT_THAT(Kinds(), ElementsAre(DrawOp::Kind::kFill, DrawOp::Kind::kLine, DrawOp::Kind::kText));
  const DrawOp& line = List()[1];
  EXPECT_EQ(line.pen, RGB(255, 0, 0));
  EXPECT_EQ(line.penStyle, PS_DOT);
  EXPECT_EQ(line.rect.right, 100);
}

TEST_F(GdiTest, RedrawingWithoutABackgroundDoesNotGrowTheList) {
  for (int i = 0; i < 50; ++i) {
    Rectangle(dc_, 10, 10, 40, 40);
    SelectObject(dc_, GetStockObject(NULL_BRUSH));
    Rectangle(dc_, 20, 20, 120, 120);
    SelectObject(dc_, GetStockObject(WHITE_BRUSH));
    SetBkMode(dc_, TRANSPARENT);
    TextOutW(dc_, 30, 30, u"ij", 2);
  }
  EXPECT_EQ(List().size(), 3u);
}

TEST_F(GdiTest, OnlyWhatIsWhollyHiddenIsDropped) {
  Rectangle(dc_, 10, 10, 40, 40);
  const RECT beside = {20, 20, 150, 150}, over = {10, 10, 40, 40};
  FillRect(dc_, &beside, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
  EXPECT_EQ(List().size(), 2u);
  IntersectClipRect(dc_, 0, 0, 39, 150);
  FillRect(dc_, &over, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
  EXPECT_EQ(List().size(), 3u) << "the clip leaves a column of the rectangle to be seen";
  SelectClipRgn(dc_, nullptr);
  FillRect(dc_, &over, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
  EXPECT_THAT(Kinds(), ElementsAre(DrawOp::Kind::kFill, DrawOp::Kind::kFill));
  EXPECT_EQ(List()[0].brush, 0u) << "the black field beside, then the white one over both others";
  IntersectClipRect(dc_, 200, 0, 300, 10);
  FillRect(dc_, &over, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
  EXPECT_EQ(List().size(), 2u) << "clipped away";
}

TEST_F(GdiTest, MistakesWithObjectsShow) {
  const HBRUSH brush = CreateSolidBrush(RGB(1, 2, 3));
  const HGDIOBJ old = SelectObject(dc_, brush);
  EXPECT_FALSE(DeleteObject(brush)) << "selected";
  SaveDC(dc_);
  SelectObject(dc_, old);
  EXPECT_FALSE(DeleteObject(brush)) << "held by the saved state";
  EXPECT_EQ(platform::LiveGdiObjects(), objects_ + 1);
  RestoreDC(dc_, -1);
  EXPECT_EQ(SelectObject(dc_, old), brush);
  EXPECT_TRUE(DeleteObject(brush));
  EXPECT_FALSE(DeleteObject(brush)) << "stale";
  EXPECT_EQ(SelectObject(dc_, brush), nullptr);
  EXPECT_TRUE(DeleteObject(GetStockObject(WHITE_BRUSH)));
  EXPECT_NE(SelectObject(dc_, GetStockObject(WHITE_BRUSH)), nullptr);

  const HBITMAP bitmap = CreateCompatibleBitmap(dc_, 4, 4);
  EXPECT_EQ(SelectObject(dc_, bitmap), nullptr) << "bitmaps go into memory contexts only";
  const HDC memory = CreateCompatibleDC(dc_), second = CreateCompatibleDC(nullptr);
  const HGDIOBJ none = SelectObject(memory, bitmap);
  EXPECT_EQ(SelectObject(second, bitmap), nullptr) << "and into one at a time";
  EXPECT_FALSE(DeleteDC(dc_)) << "a window's context is released";
  EXPECT_FALSE(ReleaseDC(window_, memory));
  EXPECT_TRUE(DeleteDC(second));
  SelectObject(memory, none);
  EXPECT_TRUE(DeleteDC(memory));
  EXPECT_TRUE(DeleteObject(bitmap));
}

TEST_F(GdiTest, APictureNamesItsResourceAndIsStretched) {
  const HBITMAP picture = LoadBitmapW(module_, MAKEINTRESOURCEW(160));
  ASSERT_NE(picture, nullptr);
  EXPECT_EQ(LoadBitmapW(module_, MAKEINTRESOURCEW(9999)), nullptr);
  BITMAP shape = {};
  ASSERT_EQ(GetObjectW(picture, sizeof shape, &shape), int{sizeof shape});
  const HDC memory = CreateCompatibleDC(dc_);
  const HGDIOBJ old = SelectObject(memory, picture);
  Rectangle(dc_, 0, 0, 150, 150);
  SetStretchBltMode(dc_, BLACKONWHITE);
  EXPECT_TRUE(
      StretchBlt(dc_, 0, 0, 150, 150, memory, 0, 0, shape.bmWidth, shape.bmHeight, SRCCOPY));
  ASSERT_THAT(Kinds(), ElementsAre(DrawOp::Kind::kImage));
  EXPECT_EQ(List()[0].bitmap, 160);
  EXPECT_EQ(List()[0].source.right, shape.bmWidth);

  // What was drawn on a bitmap comes along with it, at twice the size here.
  const HBITMAP canvas = CreateCompatibleBitmap(dc_, 50, 50);
  SelectObject(memory, canvas);
  Rectangle(memory, 10, 20, 30, 40);
  StretchBlt(dc_, 0, 0, 100, 100, memory, 0, 0, 50, 50, SRCCOPY);
  ASSERT_EQ(List().size(), 3u);
  EXPECT_EQ(List()[2].rect.left, 20);
  EXPECT_EQ(List()[2].rect.bottom, 80);
  SelectObject(memory, old);
  DeleteDC(memory);
  DeleteObject(canvas);
  DeleteObject(picture);
}

TEST_F(GdiTest, TextWidthsFollowHeightWidthAndFace) {
  const struct {
    const char16_t* face;
    int height, width;
    BYTE pitch;
    const char16_t* text;
    int expected;
  } cases[] = {{u"ＭＳ ゴシック", 24, 0, FIXED_PITCH, u"ij", 24},
               {u"ＭＳ ゴシック", -24, 0, FIXED_PITCH, u"漢ｶ", 36},
               {u"ＭＳ ゴシック", 24, 6, FIXED_PITCH, u"漢字a", 30},
               {u"ＭＳ Ｐゴシック", 24, 12, VARIABLE_PITCH, u"ij", 12},
               {u"ＭＳ Ｐゴシック", 24, 12, FIXED_PITCH, u"ij", 24},
               {u"ＭＳ Ｐゴシック", 1, 0, VARIABLE_PITCH, u"i", 1},
               {u"ＭＳ ゴシック", 24, 0, FIXED_PITCH, u"㎜×𠮷", 72}};
  for (const auto& it : cases) {
    const HFONT font = CreateFontW(it.height, it.width, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET,
                                   0, 0, 0, it.pitch, it.face);
    const HGDIOBJ old = SelectObject(dc_, font);
    SIZE size = {};
    const std::u16string text(it.text);
    GetTextExtentPoint32W(dc_, text.c_str(), static_cast<int>(text.size()), &size);
    EXPECT_EQ(size.cx, it.expected) << it.height << ' ' << it.width;
    EXPECT_EQ(size.cy, std::abs(it.height));
    SelectObject(dc_, old);
    DeleteObject(font);
  }
  TEXTMETRICW metrics = {};
  GetTextMetricsW(dc_, &metrics);
  EXPECT_EQ(metrics.tmHeight, 12);
  EXPECT_EQ(metrics.tmAveCharWidth, 6);
}

TEST_F(GdiTest, TextIsPlacedClippedAndBroken) {
  const RECT box = {10, 10, 60, 60};
  SetBkColor(dc_, RGB(20, 20, 20));
  SetTextColor(dc_, RGB(255, 255, 0));
  ExtTextOutW(dc_, 30, 20, ETO_OPAQUE | ETO_CLIPPED, &box, u"i", 1, nullptr);
  ASSERT_EQ(List().size(), 1u);
  EXPECT_TRUE(List()[0].opaque);
  EXPECT_EQ(List()[0].rect.right, 60);
  EXPECT_EQ(List()[0].clip.right, 60);
  EXPECT_EQ(List()[0].background, RGB(20, 20, 20));
  EXPECT_EQ(List()[0].textColour, RGB(255, 255, 0));

  ExtTextOutW(dc_, 50, 45, ETO_OPAQUE, &box, u"out", 3, nullptr);
  EXPECT_THAT(Kinds(), ElementsAre(DrawOp::Kind::kFill, DrawOp::Kind::kText));
  FillRect(dc_, &box, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
  EXPECT_THAT(Kinds(), ElementsAre(DrawOp::Kind::kText, DrawOp::Kind::kFill))
      << "what sticks out of the box is still seen";

  const size_t before = List().size();
  RECT area = {0, 0, 40, 100};
  EXPECT_EQ(DrawTextW(dc_, u"ab cd ef\n漢字漢字", -1, &area, DT_WORDBREAK | DT_CALCRECT), 48);
  EXPECT_EQ(List().size(), before);
  RECT line = {0, 70, 150, 90};
  DrawTextW(dc_, u"&OK && 1", -1, &line, DT_SINGLELINE | DT_CENTER | DT_VCENTER);
  EXPECT_EQ(List().back().text, u"OK & 1");
  EXPECT_EQ(List().back().at.x, (150 - 36) / 2);
  EXPECT_EQ(List().back().at.y, 74);
}

int CALLBACK UpToTwo(const LOGFONTW* font, const TEXTMETRICW*, DWORD, LPARAM seen) {
  auto& names = *reinterpret_cast<std::vector<std::u16string>*>(seen);
  names.emplace_back(font->lfFaceName);
  return names.size() < 2;
}

TEST_F(GdiTest, FontFamiliesAreToldUntilTheCallbackHasEnough) {
  const std::u16string longest(31, u'長');
  machine().SetInstalledFontFamilies({longest + u"い", u"ＭＳ ゴシック", u"Third"});
  std::vector<std::u16string> names;
  const auto param = reinterpret_cast<LPARAM>(&names);
  EXPECT_EQ(EnumFontFamiliesW(dc_, nullptr, UpToTwo, param), 0);
  EXPECT_THAT(names, ElementsAre(longest, u"ＭＳ ゴシック"));
  names.clear();
  EXPECT_EQ(EnumFontFamiliesW(dc_, u"third", UpToTwo, param), 1);
  EXPECT_THAT(names, ElementsAre(u"Third"));
}

}  // namespace
