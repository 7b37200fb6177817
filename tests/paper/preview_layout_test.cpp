// The geometry of the whole-label view.
#include "paper/preview_layout.h"

#include <gtest/gtest.h>

#include <climits>

#include "paper/paper_table.h"
#include "resources/resource.h"

namespace kestrel {
namespace {

constexpr RECT kBox = {0, 0, 200, 300};

PaperInfo Label(int width, int length, int gap = 30) {
  PaperInfo paper = NewPaper();
  paper.LabelWidth = static_cast<int16_t>(width);
  paper.LabelHeight = static_cast<int16_t>(length);
  paper.GapSize = static_cast<int16_t>(gap);
  paper.PrintableWidth = static_cast<int16_t>(width);
  paper.PrintableHeight = static_cast<int16_t>(length);
  return paper;
}

std::vector<int> Edges(const RECT& rect) { return {rect.left, rect.top, rect.right, rect.bottom}; }

struct Layout {
  PreviewGeometry geometry;
  PreviewLabel labels[kMaxPreviewLabels] = {};
  int count;
};

Layout LayOut(const PaperInfo& paper, PreviewPlace place, RECT box = kBox) {
  Layout layout = {};
  layout.geometry = MeasurePreview(paper, box);
  layout.count = LayOutLabels(layout.geometry, place, layout.labels);
  return layout;
}

TEST(PreviewGeometry, ScalesByTheLargerSideAndRoundsHalfUp) {
  const PreviewGeometry square = MeasurePreview(Label(500, 500), kBox);
  EXPECT_FLOAT_EQ(square.scale, 0.4f);
  EXPECT_EQ(square.width, 200);
  EXPECT_EQ(square.height, 200);
  EXPECT_EQ(square.gap, 12);
  EXPECT_EQ(Edges(square.picture), (std::vector<int>{50, 50, 150, 150}));

  const PreviewGeometry tall = MeasurePreview(Label(100, 400, 1), kBox);
  EXPECT_EQ(tall.width, 50);
  EXPECT_EQ(tall.height, 200);
  EXPECT_EQ(tall.gap, 1);  // 0.5 + 0.5
  EXPECT_EQ(Edges(tall.picture), (std::vector<int>{13, 88, 38, 113}));
}

TEST(PreviewGeometry, StaysInRangeForEveryStoredNumber) {
  PaperInfo paper = Label(1, -32768, 32767);
  paper.PrintableLeft = -32768;
  paper.PrintableWidth = 32767;
  paper.EyeMarkSize = 32767;
  for (const PreviewPlace place : {PreviewPlace::kPage, PreviewPlace::kDialog}) {
    const Layout layout = LayOut(paper, place, {0, 0, 32767, 32767});
    EXPECT_LE(layout.count, kMaxPreviewLabels);
  }
  EXPECT_GT(ScaleToPreview(32767, 1e30f), 1 << 20);
  EXPECT_LT(ScaleToPreview(-32768, 1e30f), -(1 << 20));
  EXPECT_EQ(ScaleToPreview(5, 0), 0);
}

TEST(PreviewLayout, ASizelessPaperShowsNoLabel) {
  for (const PaperInfo& paper : {Label(0, 0), Label(-5, -100), Label(0, -1)}) {
    EXPECT_EQ(LayOut(paper, PreviewPlace::kPage).count, 0);
    EXPECT_EQ(LayOut(paper, PreviewPlace::kDialog).count, 0);
  }
}

// On the page the gap's middle lies in the middle of the box; in the dialog a quarter of the first
// label lies above it.
TEST(PreviewLayout, PlacesTheStripOnPageAndInDialog) {
  const Layout page = LayOut(Label(500, 250), PreviewPlace::kPage);  // 200 × 100, gap 12
  ASSERT_EQ(page.count, 4);
  EXPECT_EQ(Edges(page.labels[0].label), (std::vector<int>{0, 156, 200, 256}));
  EXPECT_EQ(Edges(page.labels[1].label), (std::vector<int>{0, 44, 200, 144}));
  EXPECT_EQ(Edges(page.labels[2].label), (std::vector<int>{0, 0, 200, 32}));  // begins at -68
  EXPECT_EQ(Edges(page.labels[3].label), (std::vector<int>{0, 268, 200, 368}));

  const Layout dialog = LayOut(Label(500, 250), PreviewPlace::kDialog);
  ASSERT_EQ(dialog.count, 4);
  EXPECT_EQ(Edges(dialog.labels[0].label), (std::vector<int>{0, 125, 200, 225}));
  EXPECT_EQ(Edges(dialog.labels[1].label), (std::vector<int>{0, 13, 200, 113}));
  EXPECT_EQ(Edges(dialog.labels[2].label), (std::vector<int>{0, 0, 200, 1}));  // begins at -99
  EXPECT_EQ(Edges(dialog.labels[3].label), (std::vector<int>{0, 237, 200, 337}));
}

TEST(PreviewLayout, ClipsBarsPrintableAreasAndPictures) {
  PaperInfo paper = Label(500, 250);  // 200 × 100 pixels, eye-mark 12
  paper.PrintableLeft = 50;
  paper.PrintableWidth = 400;
  const Layout layout = LayOut(paper, PreviewPlace::kPage);
  ASSERT_EQ(layout.count, 4);
  EXPECT_EQ(layout.labels[0].eyeMark, 12);
  EXPECT_EQ(Edges(layout.labels[0].printable), (std::vector<int>{20, 156, 180, 256}));
  EXPECT_EQ(Edges(layout.labels[0].picture), (std::vector<int>{75, 181, 125, 231}));
  // The label from -68 on: bar and picture (from -43 to 7) stick out above.
  EXPECT_EQ(layout.labels[2].eyeMark, 0);
  EXPECT_EQ(Edges(layout.labels[2].printable), (std::vector<int>{20, 0, 180, 32}));
  EXPECT_EQ(Edges(layout.labels[2].picture), (std::vector<int>{75, 0, 125, 7}));
  // The label from 268 on: its picture begins at 293.
  EXPECT_EQ(Edges(layout.labels[3].picture), (std::vector<int>{75, 293, 125, 300}));
  EXPECT_EQ(Edges(layout.labels[3].printable), (std::vector<int>{20, 268, 180, 300}));

  // A label that begins 4 pixels above the box keeps 8 of its bar.
  const Layout cut = LayOut(paper, PreviewPlace::kPage, {0, 0, 200, 204});  // 108, -4, …
  EXPECT_EQ(cut.labels[1].label.top, 0);
  EXPECT_EQ(cut.labels[1].eyeMark, 8);
}

TEST(PreviewLayout, ALabelOnTheEdgeOfTheBoxIsIn) {
  // 200 × 100 pixels without a gap; the box height moves the strip.
  const PaperInfo paper = Label(500, 250, 0);
  struct {
    int height, count;
  } const cases[] = {
      {200, 2},  // 100, 0; bottom of the next is 0, top of the next below is 200
      {202, 4},  // 101, 1, -99 (one row), 201 (one row)
  };
  for (const auto& c : cases) {
    EXPECT_EQ(LayOut(paper, PreviewPlace::kPage, {0, 0, 200, c.height}).count, c.count) << c.height;
  }
}

TEST(PreviewLayout, StopsAtSixteenLabelsAndWhereTheStripDoesNotMoveOn) {
  EXPECT_EQ(LayOut(Label(1000, 10, 0), PreviewPlace::kPage).count, kMaxPreviewLabels);
  EXPECT_EQ(LayOut(Label(1000, 10, 0), PreviewPlace::kDialog).count, kMaxPreviewLabels);
  // The cap is reached above, so nothing lies below the first label.
  const Layout capped = LayOut(Label(1000, 10, 0), PreviewPlace::kPage);
  EXPECT_EQ(capped.labels[15].label.top, 150 - 15 * 2);

  EXPECT_EQ(LayOut(Label(500, 250, -253), PreviewPlace::kPage).count, 1);
  EXPECT_EQ(LayOut(Label(500, 250, -300), PreviewPlace::kDialog).count, 1);
  EXPECT_EQ(LayOut(Label(500, 0, 0), PreviewPlace::kPage).count, 1);
}

TEST(PreviewLayout, AZeroWidePrintableAreaHasNoPicture) {
  PaperInfo paper = Label(500, 250);
  paper.PrintableWidth = 0;
  const Layout layout = LayOut(paper, PreviewPlace::kPage);
  EXPECT_EQ(layout.labels[0].picture.left, layout.labels[0].picture.right);
}

TEST(PreviewMarkers, MarkTheOffsetsInsideTheBox) {
  const PreviewGeometry geometry = MeasurePreview(Label(250, 500), kBox);  // 100 × 200, gap 12
  constexpr MarkerValues kZero = {0, 0, 0, 0, 0, true};
  constexpr MarkerValues kGapSensor = {0, 0, 0, 0, 0, false};
  constexpr MarkerValues kMoved = {50, -25, 10, -20, 30, true};
  constexpr MarkerValues kFar = {300, -300, 99, -40, 99, true};
  struct {
    int field;
    MarkerValues values;
    std::vector<std::vector<int>> lines;
  } const cases[] = {
      {IDC_PAPER_VERT_BASE, kZero, {{50, 156, 200, 156}, {50, 156, 50, 300}}},
      {IDC_PAPER_HORZ_BASE, kMoved, {{40, 176, 200, 176}, {40, 176, 40, 300}}},
      {IDC_PAPER_VERT_BASE, kFar, {{0, 276, 200, 276}, {0, 276, 0, 300}}},
      {IDC_PAPER_PITCH_OFFSET, kZero, {{0, 156, 200, 156}}},
      {IDC_PAPER_PITCH_OFFSET, kGapSensor, {{0, 144, 200, 144}}},
      {IDC_PAPER_PITCH_OFFSET, kMoved, {{0, 160, 200, 160}}},
      {IDC_PAPER_PEEL_OFFSET, kMoved, {{0, 142, 200, 142}}},
      {IDC_PAPER_TEAR_OFFSET, kMoved, {{0, 162, 200, 162}}},
      {IDC_PAPER_LIST, kMoved, {}},
  };
  for (const auto& c : cases) {
    MarkerLine lines[kMaxMarkerLines];
    const int count = LayOutMarker(geometry, c.field, c.values, lines);
    std::vector<std::vector<int>> found;
    for (int i = 0; i < count; ++i) {
      found.push_back({lines[i].from.x, lines[i].from.y, lines[i].to.x, lines[i].to.y});
    }
    EXPECT_EQ(found, c.lines) << c.field;
  }
}

}  // namespace
}  // namespace kestrel
