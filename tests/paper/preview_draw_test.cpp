// What the picture boxes of the page and the dialog show, as lists of drawings.
#include "paper/preview_draw.h"

#include <sstream>

#include "platform/desktop/drawing/gdi.h"
#include "tests/paper/paper_walk.h"

namespace kestrel {
namespace {

using platform::DrawOp;

constexpr COLORREF kRed = RGB(255, 0, 0);

// A drawing as a text: its kind, what it is drawn with, and where.
std::string Describe(const DrawOp& op) {
  std::ostringstream text;
  switch (op.kind) {
    case DrawOp::Kind::kRectangle:
      text << (op.brush == 0 ? "black" : "white");
      break;
    case DrawOp::Kind::kImage:
      text << op.bitmap;
      break;
    case DrawOp::Kind::kLine:
      text << (op.pen == kRed && op.penStyle == PS_DOT && op.penWidth == 1 ? "marker" : "line");
      break;
    case DrawOp::Kind::kText:
      text << "text";
      break;
    case DrawOp::Kind::kFill:
      text << "fill";
      break;
  }
  text << ' ' << op.rect.left << ' ' << op.rect.top << ' ' << op.rect.right << ' '
       << op.rect.bottom;
  return text.str();
}

std::vector<std::string> Describe(const platform::DisplayList& list) {
  std::vector<std::string> texts;
  for (const DrawOp& op : list) texts.push_back(Describe(op));
  return texts;
}

using Drawings = std::vector<std::string>;

class PreviewDraw : public PaperWalk {
 protected:
  void SeesDrawn(int box, Drawings expected) {
    Then([=](Desk& desk) { EXPECT_EQ(Describe(desk.Control(box).drawing), expected); });
  }
  void KeepPaper(int width, int length, int gap, int printableLeft, int printableWidth) {
    DriverSettingsBlock block = Fresh();
    Register(block, 1);
    PaperInfo& paper = block.Printer.Papers[1];
    paper.LabelWidth = static_cast<int16_t>(width);
    paper.LabelHeight = static_cast<int16_t>(length);
    paper.GapSize = static_cast<int16_t>(gap);
    paper.PrintableLeft = static_cast<int16_t>(printableLeft);
    paper.PrintableWidth = static_cast<int16_t>(printableWidth);
    paper.PrintableHeight = static_cast<int16_t>(length);
    block.Record.Private.PaperID = 258;
    Keep(block);
  }
};

// The page's box is 120 × 189 pixels.
TEST_F(PreviewDraw, ThePageShowsTheStripOfEachPaper) {
  struct {
    int width, length, gap, printableLeft, printableWidth;
    Drawings drawings;
  } const cases[] = {
      // A square of 120 pixels, gap 8, eye-mark 8.
      {480,
       480,
       30,
       40,
       400,
       {"160 0 0 120 189", "white 0 98 120 218", "155 35 133 85 183", "white 0 0 120 90",
        "155 35 5 85 55"}},
      // 60 × 120.
      {240,
       480,
       30,
       0,
       240,
       {"160 0 0 120 189", "white 30 98 90 218", "black 0 98 30 106", "black 90 98 120 106",
        "155 45 143 75 173", "white 30 0 90 90", "155 45 15 75 45"}},
      // 120 × 60.
      {480,
       240,
       30,
       0,
       480,
       {"160 0 0 120 189", "white 0 98 120 158", "155 45 113 75 143", "white 0 30 120 90",
        "155 45 45 75 75", "white 0 0 120 22", "155 45 0 75 7", "white 0 166 120 226",
        "155 45 181 75 189"}},
      // Without a gap; the label begins in the middle.
      {480,
       480,
       0,
       0,
       480,
       {"160 0 0 120 189", "white 0 94 120 214", "155 30 124 90 184", "white 0 0 120 94",
        "155 30 4 90 64"}},
      // Nothing printable across.
      {480, 480, 30, 0, 0, {"160 0 0 120 189", "white 0 98 120 218", "white 0 0 120 90"}},
      // No size at all, and negative sizes.
      {0, 0, 30, 0, 0, {"160 0 0 120 189"}},
      {-100, -200, 30, 0, -100, {"160 0 0 120 189"}},
  };
  for (const auto& c : cases) {
    KeepPaper(c.width, c.length, c.gap, c.printableLeft, c.printableWidth);
    SeesDrawn(IDC_PAPER_PICTURE, c.drawings);
    RunToCancel();
  }
}

TEST_F(PreviewDraw, OrientationAndRotationChooseThePicture) {
  KeepPaper(480, 480, 30, 40, 400);
  const auto shows = [this](int picture) {
    Then([picture](Desk& desk) {
      const platform::DisplayList list = desk.Control(IDC_PAPER_PICTURE).drawing;
      ASSERT_EQ(list.size(), 5u);
      EXPECT_EQ(list[2].bitmap, picture);
    });
  };
  shows(IDB_PORTRAIT);
  Click(IDC_PAPER_LANDSCAPE);
  shows(IDB_LANDSCAPE);
  Click(IDC_PAPER_FLIP);
  shows(IDB_LANDSCAPE_ROTATED);
  Click(IDC_PAPER_PORTRAIT);
  shows(IDB_PORTRAIT_ROTATED);
  RunToCancel();
}

TEST_F(PreviewDraw, MarkersShowTheTypedOffsets) {
  KeepPaper(240, 480, 30, 0, 240);
  Type(IDC_PAPER_VERT_BASE, u"20");  // 5 pixels
  Type(IDC_PAPER_HORZ_BASE, u"40");  // 10 pixels
  Type(IDC_PAPER_TEAR_OFFSET, u"80");
  const auto marked = [this](Drawings expected) {
    Then([=](Desk& desk) {
      Drawings found;
      for (const DrawOp& op : desk.Control(IDC_PAPER_PICTURE).drawing) {
        if (op.kind == DrawOp::Kind::kLine) found.push_back(Describe(op));
      }
      EXPECT_EQ(found, expected);
    });
  };
  marked({});
  Click(IDC_PAPER_WHOLE_LABEL);
  marked({"marker 40 103 120 103", "marker 40 103 40 189", "marker 0 98 120 98",
          "marker 0 114 120 114"});
  Click(IDC_PAPER_LANDSCAPE);
  marked({});
  RunToCancel();

  DriverSettingsBlock block = Fresh();
  block.Record.Private.PaperID = 256;
  block.Record.Private.FreePaper.LabelWidth = 240;
  block.Record.Private.FreePaper.LabelHeight = 480;
  block.Record.Private.nSensor = 1;
  block.Record.Private.nPeelOffset = -40;
  block.Printer.Mecha = 2;
  Keep(block);
  Click(IDC_PAPER_WHOLE_LABEL);
  marked(
      {"marker 30 98 120 98", "marker 30 98 30 189", "marker 0 90 120 90", "marker 0 84 120 84"});
  RunToCancel();
}

TEST_F(PreviewDraw, FieldsShowTheirSketchWhileTheyHaveTheFocus) {
  const struct {
    int field, sketch;
  } rows[] = {
      {IDC_PAPER_VERT_BASE, IDB_SKETCH_BASE_POINTS},
      {IDC_PAPER_HORZ_BASE, IDB_SKETCH_BASE_POINTS},
      {IDC_PAPER_TEAR_OFFSET, IDB_SKETCH_FEED_OFFSETS},
      {IDC_PAPER_PITCH_OFFSET, IDB_SKETCH_PITCH_EYE_MARK},
  };
  for (const auto& row : rows) {
    Focus(row.field);
    SeesDrawn(IDC_PAPER_PICTURE, {std::to_string(row.sketch) + " 0 0 120 189"});
  }
  RunToCancel();
  DriverSettingsBlock block = Fresh();
  block.Record.Private.nSensor = 1;
  block.Printer.Mecha = 2;
  Keep(block);
  Focus(IDC_PAPER_PITCH_OFFSET);
  SeesDrawn(IDC_PAPER_PICTURE, {"165 0 0 120 189"});
  Focus(IDC_PAPER_PEEL_OFFSET);
  SeesDrawn(IDC_PAPER_PICTURE, {"163 0 0 120 189"});
  SeesDrawn(IDC_PAPER_FEED_PICTURE, {"159 0 0 24 102"});
  Then([](Desk& desk) {
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
  });
  RunToCancel();
}

// The dialog's box is 138 × 246 pixels.
TEST_F(PreviewDraw, TheDialogShowsSketchesAndTheWholeLabelOfWhatWasTyped) {
  Click(IDC_PAPER_REGISTER);
  SeesDrawn(IDC_PAPER_REGISTER_PICTURE, {"160 0 0 138 246"});
  SeesDrawn(IDC_PAPER_REGISTER_FEED_PICTURE, {"159 0 0 24 102"});
  Then([](Desk& desk) {
    EXPECT_EQ(desk.Control(IDC_PAPER_REGISTER_FEED_TEXT).background, RGB(255, 255, 255));
  });
  const struct {
    int field, sketch;
  } rows[] = {{IDC_PAPER_REGISTER_WIDTH, IDB_SKETCH_WIDTH},
              {IDC_PAPER_REGISTER_LENGTH, IDB_SKETCH_LENGTH},
              {IDC_PAPER_REGISTER_GAP, IDB_SKETCH_GAP},
              {IDC_PAPER_REGISTER_NAME, IDB_BACKGROUND}};
  for (const auto& row : rows) {
    Focus(row.field);
    SeesDrawn(IDC_PAPER_REGISTER_PICTURE, {std::to_string(row.sketch) + " 0 0 138 246"});
  }
  // 55.2 mm are 138 pixels; 25 pixels a centimetre: 48.0 mm printable are 120, the gap 10 pixels.
  FillPaper(u"", u"55.2", u"55.2", u"4.0");
  Click(IDC_PAPER_REGISTER_WHOLE_LABEL);
  SeesDrawn(IDC_PAPER_REGISTER_PICTURE,
            {"160 0 0 138 246", "white 0 89 138 227", "white 9 89 129 227", "155 39 128 99 188",
             "white 0 0 138 79", "white 9 0 129 79", "155 39 0 99 40", "white 0 237 138 375",
             "white 9 237 129 246"});
  Focus(IDC_PAPER_REGISTER_GAP);
  SeesDrawn(IDC_PAPER_REGISTER_PICTURE, {"140 0 0 138 246"});
  Click(IDCANCEL);
  RunToCancel();
}

TEST_F(PreviewDraw, AThousandRedrawsLeaveNoObject) {
  KeepPaper(240, 480, 30, 0, 240);
  const auto redraw = [this](int id) {
    Then([id](Desk& desk) {
      const HWND box = desk.Control(id).handle;
      const int objects = platform::LiveGdiObjects();
      const int contexts = platform::LiveDcs();
      for (int i = 0; i < 1000; ++i) {
        InvalidateRect(box, nullptr, TRUE);
        UpdateWindow(box);
      }
      EXPECT_EQ(platform::LiveGdiObjects(), objects);
      EXPECT_EQ(platform::LiveDcs(), contexts);
    });
  };
  Click(IDC_PAPER_WHOLE_LABEL);
  redraw(IDC_PAPER_PICTURE);
  redraw(IDC_PAPER_FEED_TEXT);
  Focus(IDC_PAPER_VERT_BASE);
  redraw(IDC_PAPER_PICTURE);
  Click(IDC_PAPER_EDIT);
  Click(IDC_PAPER_REGISTER_WHOLE_LABEL);
  redraw(IDC_PAPER_REGISTER_PICTURE);
  Click(IDCANCEL);
  RunToCancel();
}

// Each creation of a drawing object fails in turn: what can be drawn is, and nothing stays behind.
TEST_F(PreviewDraw, ADrawingThatGetsNoObjectLeavesNone) {
  KeepPaper(240, 480, 30, 0, 240);
  Click(IDC_PAPER_WHOLE_LABEL);
  Then([this](Desk& desk) {
    const HWND box = desk.Control(IDC_PAPER_PICTURE).handle;
    const int objects = platform::LiveGdiObjects();
    const int contexts = platform::LiveDcs();
    const auto draw = [&] {
      InvalidateRect(box, nullptr, TRUE);
      UpdateWindow(box);
      const bool struck = machine().faults.Struck(platform::Fault::kWindow);
      machine().faults.Clear();
      EXPECT_EQ(platform::LiveGdiObjects(), objects);
      EXPECT_EQ(platform::LiveDcs(), contexts);
      return struck;
    };
    int n = 0;
    do {
      machine().faults.FailNth(platform::Fault::kWindow, ++n);
    } while (draw());
    EXPECT_GT(n, 5);  // two pictures with their contexts, and a pen
    draw();
    EXPECT_EQ(desk.Control(IDC_PAPER_PICTURE).drawing.size(), 11u);
  });
  RunToCancel();
}

}  // namespace
}  // namespace kestrel
