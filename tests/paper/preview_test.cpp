// What the picture boxes of the page and the dialog show, and how the strip of labels is laid out.
#include "paper/preview_layout.h"
#include "platform/desktop/drawing/gdi.h"
#include "platform/desktop/windows/manager.h"
#include "tests/paper/paper_fixture.h"
#include "tests/support/fault_walk.h"

namespace kestrel {
namespace {

using platform::DrawOp;
using Kind = DrawOp::Kind;

std::u16string Numbers(std::initializer_list<LONG> numbers) {
  std::u16string text;
  for (const LONG number : numbers) text += u" " + Number(number);
  return text;
}

// A box's drawings: the kind of each, what it is drawn with, and where. Dotted red lines are
// markers.
Step ExpectDrawn(int box, std::u16string expected) {
  return [=](Desk& desk) {
    std::u16string all;
    for (const DrawOp& op : desk.Control(box).drawing) {
      const bool marker = op.pen == RGB(255, 0, 0) && op.penStyle == PS_DOT && op.penWidth == 1;
      const bool text = op.kind == Kind::kText && op.textColour == 0;
      all += all.empty() ? u"" : u", ";
      all += text                      ? op.text
             : op.kind == Kind::kImage ? Number(op.bitmap)
             : op.kind == Kind::kLine  ? (marker ? u"marker" : u"line")
                                       : (op.brush == 0 ? u"black" : u"white");
      all += Numbers({op.rect.left, op.rect.top, op.rect.right, op.rect.bottom});
    }
    EXPECT_EQ(all, expected);
  };
}

PaperInfo Label(int width, int length, int gap, int left, int printableWidth) {
  return Paper(u"",
               {0, 3, width, length, gap, 30, kMillimetre, left, left / 2, printableWidth, length});
}
// 60 × 120 pixels, with bars at both sides.
const PaperInfo kNarrow = Label(240, 480, 30, 0, 240);
Step ExpectNarrow(std::u16string markers = u"") {
  return ExpectDrawn(kPicture,
                     u"160 0 0 120 189, white 30 98 90 218, black 0 98 30 106, "
                     u"black 90 98 120 106, 155 45 143 75 173, white 30 0 90 90, 155 45 15 75 45" +
                         markers);
}

DriverSettingsBlock Chosen(const PaperInfo& paper, uint16_t mode = 0, int16_t sensor = 0) {
  DriverSettingsBlock block = DefaultBlock();
  block.Record.Private.PaperID = kFreePaperId;
  block.Record.Private.FreePaper = paper;
  block.Record.Private.nSensor = sensor;
  block.Printer.Mecha = mode;
  return block;
}

using Preview = PaperTest;

// The page's box is 120 × 189 pixels.
TEST_F(Preview, ThePageShowsTheStripOfEachPaper) {
  const auto show = [this](const PaperInfo& paper, Steps steps) {
    Keep(Chosen(paper));
    Cancel(kPaperTab, steps);
  };
  show(kNarrow, ExpectNarrow());
  // Nothing printable across; no size at all.
  show(Label(480, 480, 30, 0, 0),
       ExpectDrawn(kPicture, u"160 0 0 120 189, white 0 98 120 218, white 0 0 120 90"));
  show(Label(0, 0, 30, 0, 0), {Click(kPageWholeLabel), ExpectDrawn(kPicture, u"160 0 0 120 189")});
  // A square of 120 pixels.
  const auto shows = [](std::u16string turned) {
    return ExpectDrawn(kPicture, u"160 0 0 120 189, white 0 98 120 218, " + turned +
                                     u" 35 138 85 188, white 0 0 120 90, " + turned +
                                     u" 35 10 85 60");
  };
  show(Label(480, 480, 30, 40, 400),
       {shows(u"155"), Click(kLandscape), shows(u"156"), Click(kFlip), shows(u"158"),
        Click(kPortrait), shows(u"157"), GoTo(kVersionTab), GoTo(kPaperTab), shows(u"157")});
}

TEST_F(Preview, OffsetsAreSketchedInTheirFieldsAndMarkedOnTheLabel) {
  const auto sketch = [](int field, std::u16string bitmap) {
    return Steps{Focus(field), ExpectDrawn(kPicture, bitmap + u" 0 0 120 189")};
  };
  Keep(Chosen(kNarrow));  // a quarter pixel a dot
  Cancel(kPaperTab,
         {sketch(kVert, u"162"), sketch(kHorz, u"162"), sketch(kTear, u"163"),
          sketch(kPitch, u"164"), Paste(kVert, u"20"), Paste(kHorz, u"40"), Paste(kTear, u"80"),
          Focus(kList), ExpectNarrow(), Click(kPageWholeLabel),
          ExpectNarrow(u", marker 40 103 120 103, marker 40 103 40 189, marker 0 98 120 98, "
                       u"marker 0 114 120 114"),
          Click(kPortrait), ExpectNarrow(), Paste(kVert, u"-22"), Paste(kHorz, u"-300"),
          Paste(kTear, u"-2"), Paste(kPitch, u"-6"), Click(kPageWholeLabel),
          // Half pixels go up, below zero too; the left edge holds the base point.
          ExpectNarrow(u", marker 0 93 120 93, marker 0 93 0 189, marker 0 97 120 97, "
                       u"marker 0 94 120 94")});
  Keep(Chosen(kNarrow, 2, 1));  // peel mode, gap sensor
  Cancel(
      kPaperTab,
      {sketch(kPitch, u"165"), sketch(kPeel, u"163"), Paste(kPeel, u"-40"), Click(kPageWholeLabel),
       ExpectNarrow(u", marker 30 98 120 98, marker 30 98 30 189, "
                    u"marker 0 90 120 90, marker 0 84 120 84"),
       ExpectDrawn(IDC_PAPER_FEED_PICTURE, u"159 0 0 24 102"),
       ExpectDrawn(IDC_PAPER_FEED_TEXT,
                   u"white 0 0 24 69, 搬 2 2 14 14, 送 2 18 14 30, 方 2 34 14 46, 向 2 50 14 62")});
}

// The dialog's box is 138 × 246 pixels.
TEST_F(Preview, TheDialogShowsSketchesAndTheWholeLabelOfWhatWasTyped) {
  const auto sketch = [](int field, std::u16string bitmap) {
    return Steps{Focus(field), ExpectDrawn(kDialogPicture, bitmap + u" 0 0 138 246")};
  };
  Cancel(kPaperTab, {Click(kRegister), sketch(kName, u"160"), sketch(kWidth, u"134"),
                     sketch(kLength, u"135"), sketch(kGap, u"140"), sketch(kName, u"160"),
                     ExpectDrawn(IDC_PAPER_REGISTER_FEED_PICTURE, u"159 0 0 24 102"),
                     [](Desk& desk) {
                       EXPECT_EQ(desk.Control(IDC_PAPER_REGISTER_FEED_TEXT).background,
                                 RGB(255, 255, 255));
                       EXPECT_NE(desk.Control(IDC_HELP_TEXT).background, RGB(255, 255, 255));
                     },
                     // 55.2 mm are 138 pixels; 48.0 mm printable are 120, the gap 10 pixels.
                     Fill(u"", u"55.2", u"55.2", u"4.0"), Click(kWholeLabel),
                     ExpectDrawn(kDialogPicture,
                                 u"160 0 0 138 246, white 0 89 138 227, white 9 89 129 227, "
                                 u"155 39 128 99 188, white 0 0 138 79, white 9 0 129 79, "
                                 u"155 39 0 99 40, white 0 237 138 375, white 9 237 129 246"),
                     sketch(kGap, u"140"), Click(IDCANCEL)});
}

// Each creation of a drawing object fails in turn: what can be drawn is, and nothing stays behind.
TEST_F(Preview, ADrawingThatGetsNoObjectLeavesNone) {
  Keep(Chosen(kNarrow));
  const auto look = [this](Desk& desk) {
    const HWND box = desk.Control(kPicture).handle;
    const int contexts = platform::LiveDcs();
    const auto draw = [box] { InvalidateRect(box, nullptr, TRUE), platform::PaintTree(box); };
    const auto check = [=](platform::Fault, bool) { EXPECT_EQ(platform::LiveDcs(), contexts); };
    // Two pictures with their contexts, and a pen.
    EXPECT_EQ(WalkFaults(machine(), {platform::Fault::kWindow}, draw, check), 7);
    EXPECT_EQ(desk.Control(kPicture).drawing.size(), 11u);
  };
  Cancel(kPaperTab, {Click(kPageWholeLabel), look});
}

// The layout alone in a box of 200 pixels' width: where each label begins and ends, its printable
// area likewise, and the height of its bars.
std::vector<std::u16string> LayOut(const PaperInfo& paper, int height,
                                   PreviewPlace place = PreviewPlace::kPage) {
  PreviewLabel labels[kMaxPreviewLabels] = {};
  std::vector<std::u16string> strip(
      static_cast<size_t>(LayOutLabels(MeasurePreview(paper, {0, 0, 200, height}), place, labels)));
  for (size_t i = 0; i < strip.size(); ++i) {
    const auto& [label, printable, picture, eyeMark] = labels[i];
    strip[i] = Numbers({label.top, label.bottom, printable.top, printable.bottom, eyeMark});
  }
  return strip;
}

TEST(PreviewLayout, ShowsEveryLabelOfWhichARowIsInTheBox) {
  using Strip = std::vector<std::u16string>;
  // 200 × 100 pixels without a gap; the next only touch the box.
  const PaperInfo paper = Label(500, 250, 0, 50, 400);
  EXPECT_EQ(LayOut(paper, 200), (Strip{u" 100 200 110 200 12", u" 0 100 10 110 12"}));
  EXPECT_EQ(LayOut(paper, 202), (Strip{u" 101 201 111 202 12", u" 1 101 11 111 12", u" 0 1 0 11 0",
                                       u" 201 301 0 0 12"}));
  // A label that begins 4 pixels above the box keeps 8 of its bar of 12.
  EXPECT_EQ(LayOut(Label(500, 250, 30, 0, 500), 204),
            (Strip{u" 108 208 108 204 12", u" 0 96 0 96 8"}));
  // Sixteen labels at most, and one of a strip that does not move on.
  EXPECT_EQ(LayOut(Label(1000, 10, 0, 0, 9), 300).at(15), u" 120 122 120 122 6");
  EXPECT_EQ(LayOut(Label(1000, 60, 0, 0, 9), 150).size(), 14u);
  EXPECT_EQ(LayOut(Label(500, 250, -250, 0, 9), 300).size(), 1u);
  EXPECT_EQ(LayOut(Label(500, 250, -300, 0, 9), 300, PreviewPlace::kDialog).size(), 1u);
  // The strip goes on below while its distance is less than the box's bottom, whatever is seen.
  EXPECT_EQ(LayOut(Label(500, 250, 0, 0, 9), 100, PreviewPlace::kDialog).size(), 2u);
  // Every stored number stays in range.
  EXPECT_EQ(LayOut(Label(1, -32768, 32767, -32768, 32767), 32767).size(), 0u);
  EXPECT_GT(ScaleToPreview(32767, 1e30f), 1 << 20);
  EXPECT_LT(ScaleToPreview(-32768, 1e30f), -(1 << 20));
}

}  // namespace
}  // namespace kestrel
