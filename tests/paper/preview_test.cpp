// What the picture boxes of the page and the dialog show, and how the strip of labels is laid out.
#include <sstream>

#include "paper/preview_layout.h"
#include "platform/desktop/drawing/gdi.h"
#include "tests/paper/paper_fixture.h"

namespace kestrel {
namespace {

using platform::DrawOp;
using Drawings = std::vector<std::string>;

// A drawing as a text: its kind, what it is drawn with, and where.
std::string Describe(const DrawOp& op) {
  std::ostringstream text;
  const bool marker = op.pen == RGB(255, 0, 0) && op.penStyle == PS_DOT && op.penWidth == 1;
  if (op.kind == DrawOp::Kind::kRectangle) text << (op.brush == 0 ? "black" : "white");
  if (op.kind == DrawOp::Kind::kImage) text << op.bitmap;
  if (op.kind == DrawOp::Kind::kLine) text << (marker ? "marker" : "line");
  const RECT& at = op.rect;
  text << ' ' << at.left << ' ' << at.top << ' ' << at.right << ' ' << at.bottom;
  return text.str();
}

Step ExpectDrawn(int box, Drawings expected) {
  return [=](Desk& desk) {
    Drawings found;
    for (const DrawOp& op : desk.Control(box).drawing) found.push_back(Describe(op));
    EXPECT_EQ(found, expected);
  };
}
Step ExpectMarkers(Drawings expected) {
  return [=](Desk& desk) {
    Drawings found;
    for (const DrawOp& op : desk.Control(kPicture).drawing) {
      if (op.kind == DrawOp::Kind::kLine) found.push_back(Describe(op));
    }
    EXPECT_EQ(found, expected);
  };
}

PaperInfo Label(int width, int length, int gap, int printableLeft, int printableWidth) {
  PaperInfo paper = NewPaper();
  paper.LabelWidth = static_cast<int16_t>(width);
  paper.LabelHeight = paper.PrintableHeight = static_cast<int16_t>(length);
  paper.GapSize = static_cast<int16_t>(gap);
  paper.PrintableLeft = static_cast<int16_t>(printableLeft);
  paper.PrintableWidth = static_cast<int16_t>(printableWidth);
  return paper;
}

class Preview : public PaperTest {
 protected:
  void KeepLabel(const PaperInfo& paper, uint16_t mode = 0, int16_t sensor = 0) {
    DriverSettingsBlock block = DefaultBlock();
    block.Record.Private.PaperID = kFreePaperId;
    block.Record.Private.FreePaper = paper;
    block.Record.Private.nSensor = sensor;
    block.Printer.Mecha = mode;
    Keep(block);
  }
};

// The page's box is 120 × 189 pixels.
TEST_F(Preview, ThePageShowsTheStripOfEachPaper) {
  const struct {
    PaperInfo paper;
    Drawings drawings;
  } cases[] = {
      // A square of 120 pixels, gap 8, eye-mark 8.
      {Label(480, 480, 30, 40, 400),
       {"160 0 0 120 189", "white 0 98 120 218", "155 35 133 85 183", "white 0 0 120 90",
        "155 35 5 85 55"}},
      // 60 × 120, with bars at both sides.
      {Label(240, 480, 30, 0, 240),
       {"160 0 0 120 189", "white 30 98 90 218", "black 0 98 30 106", "black 90 98 120 106",
        "155 45 143 75 173", "white 30 0 90 90", "155 45 15 75 45"}},
      // 120 × 60: labels above and below.
      {Label(480, 240, 30, 0, 480),
       {"160 0 0 120 189", "white 0 98 120 158", "155 45 113 75 143", "white 0 30 120 90",
        "155 45 45 75 75", "white 0 0 120 22", "155 45 0 75 7", "white 0 166 120 226",
        "155 45 181 75 189"}},
      // Without a gap; the label begins in the middle.
      {Label(480, 480, 0, 0, 480),
       {"160 0 0 120 189", "white 0 94 120 214", "155 30 124 90 184", "white 0 0 120 94",
        "155 30 4 90 64"}},
      // Nothing printable across; no size at all; negative sizes.
      {Label(480, 480, 30, 0, 0), {"160 0 0 120 189", "white 0 98 120 218", "white 0 0 120 90"}},
      {Label(0, 0, 30, 0, 0), {"160 0 0 120 189"}},
      {Label(-100, -200, 30, 0, -100), {"160 0 0 120 189"}}};
  for (const auto& c : cases) {
    KeepLabel(c.paper);
    Cancel(kPaperTab, ExpectDrawn(kPicture, c.drawings));
  }
  Drawings turned = cases[0].drawings;
  const auto shows = [&](int picture) {
    for (size_t at : {2, 4}) turned[at].replace(0, 3, std::to_string(picture));
    return ExpectDrawn(kPicture, turned);
  };
  KeepLabel(cases[0].paper);
  Cancel(kPaperTab, {Click(kLandscape), shows(IDB_LANDSCAPE), Click(kFlip),
                     shows(IDB_LANDSCAPE_ROTATED), Click(kPortrait), shows(IDB_PORTRAIT_ROTATED),
                     GoTo(kVersionTab), GoTo(kPaperTab), shows(IDB_PORTRAIT_ROTATED)});
}

TEST_F(Preview, MarkersShowTheTypedOffsets) {
  KeepLabel(Label(240, 480, 30, 0, 240));  // a quarter pixel a dot
  Cancel(kPaperTab,
         {Paste(kVert, u"20"), Paste(kHorz, u"40"), Paste(kTear, u"80"), ExpectMarkers({}),
          Click(kPageWholeLabel),
          ExpectMarkers({"marker 40 103 120 103", "marker 40 103 40 189", "marker 0 98 120 98",
                         "marker 0 114 120 114"}),
          Click(kLandscape), ExpectMarkers({}), Paste(kVert, u"-22"), Paste(kHorz, u"-300"),
          Paste(kTear, u"-2"), Paste(kPitch, u"-6"), Click(kPageWholeLabel),
          // Half pixels go up, below zero too; the left edge holds the base point.
          ExpectMarkers({"marker 0 93 120 93", "marker 0 93 0 189", "marker 0 97 120 97",
                         "marker 0 94 120 94"})});
  KeepLabel(Label(240, 480, 30, 0, 240), 2, 1);  // peel mode, gap sensor
  Cancel(kPaperTab, {Paste(kPeel, u"-40"), Click(kPageWholeLabel),
                     ExpectMarkers({"marker 30 98 120 98", "marker 30 98 30 189",
                                    "marker 0 90 120 90", "marker 0 84 120 84"})});
  KeepLabel(Label(0, 0, 0, 0, 0));
  Cancel(kPaperTab, {Click(kPageWholeLabel), ExpectMarkers({})});
}

TEST_F(Preview, FieldsShowTheirSketchWhileTheyHaveTheFocus) {
  const auto sketch = [](int field, int bitmap) {
    return Steps{Focus(field), ExpectDrawn(kPicture, {std::to_string(bitmap) + " 0 0 120 189"})};
  };
  Cancel(kPaperTab,
         {sketch(kVert, 162), sketch(kHorz, 162), sketch(kTear, 163), sketch(kPitch, 164),
          Focus(kList), [](Desk& desk) { EXPECT_GT(desk.Control(kPicture).drawing.size(), 1u); }});
  KeepLabel(Label(240, 480, 30, 0, 240), 2, 1);
  Cancel(kPaperTab, {sketch(kPitch, 165), sketch(kPeel, 163),
                     ExpectDrawn(IDC_PAPER_FEED_PICTURE, {"159 0 0 24 102"}), [](Desk& desk) {
                       const platform::DisplayList list = desk.Control(IDC_PAPER_FEED_TEXT).drawing;
                       ASSERT_EQ(list.size(), 5u);
                       EXPECT_EQ(list[0].brush, RGB(255, 255, 255));
                       for (int i = 0; i < 4; ++i) {
                         const DrawOp& op = list[static_cast<size_t>(i) + 1];
                         EXPECT_EQ(op.text, std::u16string(1, u"搬送方向"[i]));
                         EXPECT_EQ(op.at.x, 2);
                         EXPECT_EQ(op.at.y, 2 + 16 * i);
                         EXPECT_EQ(op.textColour, RGB(0, 0, 0));
                       }
                     }});
}

// The dialog's box is 138 × 246 pixels.
TEST_F(Preview, TheDialogShowsSketchesAndTheWholeLabelOfWhatWasTyped) {
  const auto sketch = [](int bitmap) {
    return ExpectDrawn(kDialogPicture, {std::to_string(bitmap) + " 0 0 138 246"});
  };
  Cancel(kPaperTab, {Click(kRegister), sketch(160), Focus(kWidth), sketch(134), Focus(kLength),
                     sketch(135), Focus(kGap), sketch(140), Focus(kName), sketch(160),
                     ExpectDrawn(IDC_PAPER_REGISTER_FEED_PICTURE, {"159 0 0 24 102"}),
                     [](Desk& desk) {
                       EXPECT_EQ(desk.Control(IDC_PAPER_REGISTER_FEED_TEXT).background,
                                 RGB(255, 255, 255));
                       EXPECT_NE(desk.Control(IDC_HELP_TEXT).background, RGB(255, 255, 255));
                     },
                     // 55.2 mm are 138 pixels; 48.0 mm printable are 120, the gap 10 pixels.
                     Fill(u"", u"55.2", u"55.2", u"4.0"), Click(kWholeLabel),
                     ExpectDrawn(kDialogPicture,
                                 {"160 0 0 138 246", "white 0 89 138 227", "white 9 89 129 227",
                                  "155 39 128 99 188", "white 0 0 138 79", "white 9 0 129 79",
                                  "155 39 0 99 40", "white 0 237 138 375", "white 9 237 129 246"}),
                     Focus(kGap), sketch(140), Click(IDCANCEL)});
}

// Each creation of a drawing object fails in turn: what can be drawn is, and nothing stays behind.
TEST_F(Preview, ADrawingThatGetsNoObjectLeavesNone) {
  KeepLabel(Label(240, 480, 30, 0, 240));
  Cancel(kPaperTab, {Click(kPageWholeLabel), [this](Desk& desk) {
                       const HWND box = desk.Control(kPicture).handle;
                       const int objects = platform::LiveGdiObjects();
                       const int contexts = platform::LiveDcs();
                       int n = 0;
                       for (bool struck = true; struck;) {
                         machine().faults.FailNth(platform::Fault::kWindow, ++n);
                         InvalidateRect(box, nullptr, TRUE);
                         UpdateWindow(box);
                         struck = machine().faults.Struck(platform::Fault::kWindow);
                         machine().faults.Clear();
                         EXPECT_EQ(platform::LiveGdiObjects(), objects);
                         EXPECT_EQ(platform::LiveDcs(), contexts);
                       }
                       EXPECT_GT(n, 5);  // two pictures with their contexts, and a pen
                       EXPECT_EQ(desk.Control(kPicture).drawing.size(), 11u);
                     }});
}

// ---- the layout alone, where a box of another size is needed ----

std::vector<PreviewLabel> LayOut(const PaperInfo& paper, PreviewPlace place, int height) {
  PreviewLabel labels[kMaxPreviewLabels] = {};
  const int count = LayOutLabels(MeasurePreview(paper, {0, 0, 200, height}), place, labels);
  return {labels, labels + count};
}

TEST(PreviewLayout, ShowsEveryLabelOfWhichARowIsInTheBox) {
  // 200 × 100 pixels without a gap; the box height moves the strip.
  const PaperInfo paper = Label(500, 250, 0, 50, 400);
  EXPECT_EQ(LayOut(paper, PreviewPlace::kPage, 200).size(), 2u);  // the next only touch the box
  const auto touching = LayOut(paper, PreviewPlace::kPage, 202);  // from 101, 1, -99 and 201 on
  ASSERT_EQ(touching.size(), 4u);
  EXPECT_EQ(touching[2].printable.bottom, 1);
  EXPECT_EQ(touching[3].label.top, 201);
  EXPECT_EQ(touching[3].printable.top, 201);
  EXPECT_EQ(touching[3].printable.bottom, 202);
  // A label that begins 4 pixels above the box keeps 8 of its bar of 12.
  const auto cut = LayOut(Label(500, 250, 30, 0, 500), PreviewPlace::kPage, 204);
  ASSERT_EQ(cut.size(), 2u);
  EXPECT_EQ(cut[1].label.top, 0);
  EXPECT_EQ(cut[1].label.bottom, 96);
  EXPECT_EQ(cut[1].eyeMark, 8);
}

TEST(PreviewLayout, StopsAtSixteenLabelsAndWhereTheStripDoesNotMoveOn) {
  const auto full = LayOut(Label(1000, 10, 0, 0, 9), PreviewPlace::kPage, 300);
  ASSERT_EQ(full.size(), 16u);
  EXPECT_EQ(full[15].label.top, 150 - 15 * 2);
  EXPECT_EQ(LayOut(Label(1000, 60, 0, 0, 9), PreviewPlace::kPage, 150).size(), 14u);
  EXPECT_EQ(LayOut(Label(500, 250, -250, 0, 9), PreviewPlace::kPage, 300).size(), 1u);
  EXPECT_EQ(LayOut(Label(500, 250, -300, 0, 9), PreviewPlace::kDialog, 300).size(), 1u);
  // The strip goes on below while its distance is less than the box's bottom, whatever is seen.
  EXPECT_EQ(LayOut(Label(500, 250, 0, 0, 9), PreviewPlace::kDialog, 100).size(), 2u);
}

TEST(PreviewLayout, StaysInRangeForEveryStoredNumber) {
  PaperInfo paper = Label(1, -32768, 32767, -32768, 32767);
  paper.EyeMarkSize = 32767;
  for (const PreviewPlace place : {PreviewPlace::kPage, PreviewPlace::kDialog}) {
    PreviewLabel labels[kMaxPreviewLabels] = {};
    EXPECT_LE(LayOutLabels(MeasurePreview(paper, {0, 0, 32767, 32767}), place, labels), 16);
  }
  EXPECT_GT(ScaleToPreview(32767, 1e30f), 1 << 20);
  EXPECT_LT(ScaleToPreview(-32768, 1e30f), -(1 << 20));
}

}  // namespace
}  // namespace kestrel
