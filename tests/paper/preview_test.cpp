// The picture boxes of the page and the dialog, and the layout of the strip of labels.
#include <tuple>

#include "paper/preview_layout.h"
#include "tests/paper/paper_fixture.h"

namespace kestrel {
namespace {

using platform::DrawOp;

enum Shape { kWhite = -1, kBlack = -2, kMarker = -3, kOther = -4 };
// What is drawn into a box: a bitmap id or a Shape, and left, top, right and bottom.
using Drawn = std::tuple<int, LONG, LONG, LONG, LONG>;

int ShapeOf(const DrawOp& drawn) {
  using enum DrawOp::Kind;
  if (drawn.kind == kImage) return drawn.bitmap;
  if (drawn.kind == kLine)
    return drawn.pen == RGB(255, 0, 0) && drawn.penStyle == PS_DOT ? kMarker : kOther;
  return drawn.brush == 0 ? kBlack : kWhite;
}
std::vector<Drawn> DrawingOf(Desk& desk, int box) {
  std::vector<Drawn> drawing;
  for (const DrawOp& drawn : desk.Control(box).drawing) {
    const RECT& rect = drawn.rect;
    drawing.emplace_back(ShapeOf(drawn), rect.left, rect.top, rect.right, rect.bottom);
  }
  return drawing;
}
Step ExpectDrawing(int box, std::vector<Drawn> expected) {
  return [=](Desk& desk) { EXPECT_EQ(DrawingOf(desk, box), expected); };
}
// Expects the markers in the page's box.
Step ExpectMarkers(std::vector<Drawn> expected) {
  return [=](Desk& desk) {
    std::vector<Drawn> markers = DrawingOf(desk, kPicture);
    std::erase_if(markers, [](const Drawn& drawn) { return std::get<0>(drawn) != kMarker; });
    EXPECT_EQ(markers, expected);
  };
}
Step ExpectPicture(int box, int bitmap) {
  return [=](Desk& desk) { EXPECT_EQ(std::get<0>(DrawingOf(desk, box).back()), bitmap); };
}

PaperInfo Label(int width, int length, int gap, int left, int printableWidth) {
  PaperInfo paper = Paper(u"", width, length);
  paper.GapSize = static_cast<int16_t>(gap);
  paper.PrintableLeft = static_cast<int16_t>(left);
  paper.PrintableTop = static_cast<int16_t>(left / 2);
  paper.PrintableWidth = static_cast<int16_t>(printableWidth);
  return paper;
}
// In the page's box of 120 × 189 pixels, 4 dots are a pixel: 60 × 120 pixels, a gap and an eye-mark
// of 8 pixels. The first label starts half a gap below the middle of the box.
const PaperInfo kNarrow = Label(240, 480, 30, 0, 240);

class Preview : public PaperTest {
 protected:
  void Store(const PaperInfo& paper, PrinterMode mode = kTearOffMode, int16_t sensor = 0) {
    DriverSettingsBlock block = DefaultBlock();
    block.Record.Private.PaperID = kFreePaperId;
    block.Record.Private.FreePaper = paper;
    block.Record.Private.nSensor = sensor;
    block.Printer.Mecha = mode;
    StoreDefaults(block);
  }
};

TEST_F(Preview, PageShowsStripOfLabelsWithOrientation) {
  Store(kNarrow);
  // The picture is a square of half the width in the middle of the printable area.
  Cancel(kPaperTab,
         {ExpectDrawing(kPicture, {{IDB_BACKGROUND, 0, 0, 120, 189},
                                   {kWhite, 30, 98, 90, 218},
                                   {kBlack, 0, 98, 30, 106},
                                   {kBlack, 90, 98, 120, 106},
                                   {IDB_PORTRAIT, 45, 143, 75, 173},
                                   {kWhite, 30, 0, 90, 90},
                                   {IDB_PORTRAIT, 45, 15, 75, 45}}),
          Click(IDC_PAPER_LANDSCAPE), ExpectPicture(kPicture, IDB_LANDSCAPE), Click(IDC_PAPER_FLIP),
          ExpectPicture(kPicture, IDB_LANDSCAPE_ROTATED), Click(IDC_PAPER_PORTRAIT),
          ExpectPicture(kPicture, IDB_PORTRAIT_ROTATED), GoTo(kVersionTab), GoTo(kPaperTab),
          ExpectPicture(kPicture, IDB_PORTRAIT_ROTATED),
          ExpectDrawing(IDC_PAPER_FEED_PICTURE, {{IDB_FEED_DIRECTION, 0, 0, 24, 102}})});
  Store(Label(0, 0, 30, 0, 0));
  Cancel(kPaperTab, {Click(IDC_PAPER_WHOLE_LABEL),
                     ExpectDrawing(kPicture, {{IDB_BACKGROUND, 0, 0, 120, 189}})});
}

TEST_F(Preview, DialogShowsStripOfTypedSizesWithPrintableAreas) {
  // 2.5 pixels a millimetre: 138 × 138 pixels, 120 of them printable, a gap of 10 and an eye-mark
  // of 8 pixels. The first label starts a quarter of its length above the middle of the box.
  Cancel(kPaperTab, {Click(kRegister), Replace(kWidth, u"55.2"), Replace(kLength, u"55.2"),
                     Replace(kGap, u"4.0"), Click(IDC_PAPER_REGISTER_WHOLE_LABEL),
                     ExpectDrawing(kDialogPicture, {{IDB_BACKGROUND, 0, 0, 138, 246},
                                                    {kWhite, 0, 89, 138, 227},
                                                    {kWhite, 9, 89, 129, 227},
                                                    {IDB_PORTRAIT, 39, 128, 99, 188},
                                                    {kWhite, 0, 0, 138, 79},
                                                    {kWhite, 9, 0, 129, 79},
                                                    {IDB_PORTRAIT, 39, 0, 99, 40},
                                                    {kWhite, 0, 237, 138, 375},
                                                    {kWhite, 9, 237, 129, 246}}),
                     Focus(kGap), ExpectDrawing(kDialogPicture, {{IDB_SKETCH_GAP, 0, 0, 138, 246}}),
                     Click(IDCANCEL)});
}

TEST_F(Preview, FocusedFieldShowsItsSketch) {
  Store(kNarrow);
  Cancel(kPaperTab,
         {Focus(kVert), ExpectPicture(kPicture, IDB_SKETCH_BASE_POINTS),
          Focus(IDC_PAPER_PITCH_OFFSET), ExpectPicture(kPicture, IDB_SKETCH_PITCH_EYE_MARK),
          Focus(kList), ExpectPicture(kPicture, IDB_PORTRAIT)});
  Store(kNarrow, kPeelMode, 1);  // the gap sensor
  Cancel(kPaperTab, {Focus(IDC_PAPER_PITCH_OFFSET), ExpectPicture(kPicture, IDB_SKETCH_PITCH)});
}

// Lines from the base point to the right and down, then across the box for pitch and tear-off or
// peel offset.
TEST_F(Preview, WholeLabelShowsTypedOffsetsAsMarkers) {
  const auto show = [](std::initializer_list<std::pair<int, int>> offsets) {
    Steps steps;
    for (const auto& [field, offset] : offsets) steps += Paste(field, Number(offset));
    return Steps{steps, Focus(kList), ExpectMarkers({}), Click(IDC_PAPER_WHOLE_LABEL)};
  };
  Store(kNarrow);  // half pixels are rounded up, negative ones too
  Cancel(kPaperTab, {show({{kVert, 20}, {IDC_PAPER_HORZ_BASE, 40}, {IDC_PAPER_TEAR_OFFSET, 80}}),
                     ExpectMarkers({{kMarker, 40, 103, 120, 103},
                                    {kMarker, 40, 103, 40, 189},
                                    {kMarker, 0, 98, 120, 98},
                                    {kMarker, 0, 114, 120, 114}}),
                     Click(IDC_PAPER_PORTRAIT), show({{kVert, -22}, {IDC_PAPER_TEAR_OFFSET, -2}}),
                     ExpectMarkers({{kMarker, 40, 93, 120, 93},
                                    {kMarker, 40, 93, 40, 189},
                                    {kMarker, 0, 98, 120, 98},
                                    {kMarker, 0, 94, 120, 94}})});
  Store(kNarrow, kPeelMode, 1);  // the gap sensor: the pitch starts at the gap's upper edge
  Cancel(kPaperTab,
         {show({{IDC_PAPER_PEEL_OFFSET, -40}}), ExpectMarkers({{kMarker, 30, 98, 120, 98},
                                                               {kMarker, 30, 98, 30, 189},
                                                               {kMarker, 0, 90, 120, 90},
                                                               {kMarker, 0, 84, 120, 84}})});
}

// Returns the labels in a box 200 pixels wide.
std::vector<PreviewLabel> LayOut(const PaperInfo& paper, int height,
                                 PreviewPlace place = PreviewPlace::kPage) {
  PreviewLabel labels[kMaxPreviewLabels] = {};
  const int count = LayOutLabels(MeasurePreview(paper, {0, 0, 200, height}), place, labels);
  return {labels, labels + count};
}
std::vector<LONG> TopsOf(const std::vector<PreviewLabel>& labels) {
  std::vector<LONG> tops;
  for (const PreviewLabel& label : labels) tops.push_back(label.label.top);
  return tops;
}

TEST(PreviewLayout, LabelsFillTheBoxAndAreClipped) {
  const PaperInfo paper = Label(500, 250, 0, 50, 400);  // 200 × 100 pixels
  using Tops = std::vector<LONG>;
  EXPECT_EQ(TopsOf(LayOut(paper, 200)), (Tops{100, 0})) << "the next only touch the box";
  const std::vector<PreviewLabel> labels = LayOut(paper, 202);
  EXPECT_EQ(TopsOf(labels), (Tops{101, 1, 0, 201})) << "one row of the next";
  EXPECT_EQ(labels[0].printable, (RECT{20, 111, 180, 202})) << "10 pixels below the label";
  EXPECT_EQ(labels[2].printable, (RECT{20, 0, 180, 11}));

  // A gap of 12 pixels: the upper label and its bar of 12 start 4 pixels above the box.
  const std::vector<PreviewLabel> gaps = LayOut(Label(500, 250, 30, 0, 500), 204);
  EXPECT_EQ(TopsOf(gaps), (Tops{108, 0}));
  EXPECT_EQ(gaps[1].eyeMark, 8);

  EXPECT_EQ(LayOut(Label(1000, 10, 0, 0, 9), 300).size(), 16u);
  EXPECT_EQ(TopsOf(LayOut(Label(500, 250, -250, 0, 9), 300)), Tops{100}) << "labels do not move";
  EXPECT_EQ(TopsOf(LayOut(Label(500, 250, 0, 0, 9), 100, PreviewPlace::kDialog)), (Tops{25, 0}))
      << "a label below starts within the height of the box";
}

TEST(PreviewLayout, EveryStoredNumberStaysInRange) {
  EXPECT_TRUE(LayOut(Label(1, -32768, 32767, -32768, 32767), 32767).empty());
  EXPECT_GT(ScaleToPreview(32767, 1e30f), 1 << 20);
  EXPECT_LT(ScaleToPreview(-32768, 1e30f), -(1 << 20));
}

}  // namespace
}  // namespace kestrel
