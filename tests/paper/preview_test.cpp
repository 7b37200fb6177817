// What the picture boxes of the page and the dialog show, and how the strip of labels is laid out.
#include "paper/preview_layout.h"
#include "platform/gdi32/gdi.h"
#include "platform/user32/manager.h"
#include "tests/paper/paper_fixture.h"

namespace kestrel {
namespace {

using platform::DrawOp;
using Kind = DrawOp::Kind;

std::u16string Numbers(std::initializer_list<LONG> numbers) {
  std::u16string text;
  for (const LONG number : numbers) text += u" " + Number(number);
  return text;
}

PaperInfo Label(int width, int length, int gap, int left, int printableWidth) {
  return Paper(u"",
               {0, 3, width, length, gap, 30, kMillimetre, left, left / 2, printableWidth, length});
}
// 60 × 120 pixels, with bars at both sides.
const PaperInfo kNarrow = Label(240, 480, 30, 0, 240);

class Preview : public PaperTest {
 protected:
  void Choose(const PaperInfo& paper, uint16_t mode = 0, int16_t sensor = 0) {
    DriverSettingsBlock block = DefaultBlock();
    block.Record.Private.PaperID = kFreePaperId;
    block.Record.Private.FreePaper = paper;
    block.Record.Private.nSensor = sensor;
    block.Printer.Mecha = mode;
    Keep(block);
  }
  // Tells a box's drawings: the kind or picture of each, and where. Dotted red lines are markers.
  Step Look(std::u16string what, int box = kPicture) {
    return [=, this](Desk& desk) {
      told_ += what;
      if (desk.Control(box).background == RGB(255, 255, 255)) told_ += u" on white";
      for (const DrawOp& op : desk.Control(box).drawing) {
        const bool marker = op.pen == RGB(255, 0, 0) && op.penStyle == PS_DOT && op.penWidth == 1;
        const bool text = op.kind == Kind::kText && op.textColour == 0;
        told_ += u" | ";
        told_ += text                      ? op.text
                 : op.kind == Kind::kImage ? Number(op.bitmap)
                 : op.kind == Kind::kLine  ? (marker ? u"marker" : u"line")
                                           : (op.brush == 0 ? u"black" : u"white");
        told_ += Numbers({op.rect.left, op.rect.top, op.rect.right, op.rect.bottom});
      }
      told_ += u"\n";
    };
  }
};

// The page's box is 120 × 189 pixels, the dialog's 138 × 246: golden/previews.txt.
TEST_F(Preview, ShowsStripsSketchesAndMarkers) {
  const auto sketches = [this](std::initializer_list<int> fields, int box = kPicture) {
    Steps steps;
    for (const int field : fields) steps += {Focus(field), Look(u"field " + Number(field), box)};
    return steps;
  };
  const auto markers = [this](std::u16string what,
                              std::initializer_list<std::pair<int, int>> offsets) {
    Steps steps;
    for (const auto& [field, offset] : offsets) steps += Paste(field, Number(offset));
    return Steps{steps, Focus(kList), Look(what + u" before"), Click(kPageWholeLabel), Look(what)};
  };
  Choose(Label(480, 480, 30, 0, 0));
  Cancel(kPaperTab, Look(u"nothing printable across"));
  Choose(Label(0, 0, 30, 0, 0));
  Cancel(kPaperTab, {Click(kPageWholeLabel), Look(u"no size")});
  Choose(Label(480, 480, 30, 40, 400));
  Cancel(kPaperTab,
         {Look(u"a square"), Click(kLandscape), Look(u"landscape"), Click(kFlip), Look(u"flipped"),
          Click(kPortrait), Look(u"portrait"), GoTo(kVersionTab), GoTo(kPaperTab), Look(u"again")});
  Choose(kNarrow);  // a quarter pixel a dot; half pixels go up, below zero too
  Cancel(kPaperTab,
         {Look(u"narrow"), sketches({kVert, kHorz, kTear, kPitch}),
          markers(u"right and down", {{kVert, 20}, {kHorz, 40}, {kTear, 80}}), Click(kPortrait),
          Look(u"upright"),
          markers(u"left and up", {{kVert, -22}, {kHorz, -300}, {kTear, -2}, {kPitch, -6}})});
  Choose(Label(60, 60, 0, 0, 60));
  Cancel(kPaperTab, markers(u"beyond the corner", {{kVert, -300}, {kHorz, 300}}));
  Choose(Label(100, 100, 220, 0, 100));
  Cancel(kPaperTab, markers(u"no label in the box", {{kVert, -100}}));
  Choose(kNarrow, 2, 1);
  Cancel(kPaperTab,
         {sketches({kPitch, kPeel}), markers(u"peel mode and gap sensor", {{kPeel, -40}}),
          Look(u"feed", IDC_PAPER_FEED_PICTURE), Look(u"feed", IDC_PAPER_FEED_TEXT)});
  // 55.2 mm are 138 pixels; 48.0 mm printable are 120, the gap 10 pixels.
  Cancel(
      kPaperTab,
      {Click(kRegister), sketches({kName, kWidth, kLength, kGap, kGrade}, kDialogPicture),
       Look(u"feed", IDC_PAPER_REGISTER_FEED_PICTURE), Look(u"feed", IDC_PAPER_REGISTER_FEED_TEXT),
       Look(u"help", IDC_HELP_TEXT), Fill(u"", u"55.2", u"55.2", u"4.0"), Click(kWholeLabel),
       Look(u"of what was typed", kDialogPicture), sketches({kGap}, kDialogPicture),
       Click(IDCANCEL)});
  ExpectGolden("previews.txt");
}

// Each creation of a drawing object fails in turn: what can be drawn is, and nothing stays behind.
TEST_F(Preview, ADrawingThatGetsNoObjectLeavesNone) {
  Choose(kNarrow);
  const auto look = [this](Desk& desk) {
    const HWND box = desk.Control(kPicture).handle;
    const int contexts = platform::LiveDcs();
    const auto draw = [box] { InvalidateRect(box, nullptr, TRUE), platform::PaintTree(box); };
    const auto check = [=](platform::Fault, bool) { EXPECT_EQ(platform::LiveDcs(), contexts); };
    // Two pictures with their contexts, and a pen.
    EXPECT_EQ(WalkFaults({platform::Fault::kWindow}, draw, check), 7);
    EXPECT_EQ(desk.Control(kPicture).drawing.size(), 11u);
  };
  Cancel(kPaperTab, {Click(kPageWholeLabel), look});
}

// golden/strips.txt: ends of each label and its printable area, and its bars, on 200 pixels' width.
TEST_F(Preview, LaysOutEveryLabelOfWhichARowIsInTheBox) {
  const auto lay = [&](std::u16string what, const PaperInfo& paper, int height,
                       PreviewPlace place = PreviewPlace::kPage) {
    PreviewLabel labels[kMaxPreviewLabels] = {};
    const int count = LayOutLabels(MeasurePreview(paper, {0, 0, 200, height}), place, labels);
    told_ += what + u": " + Number(count);
    for (const auto& [label, printable, picture, eyeMark] :
         std::span(labels, static_cast<size_t>(count)))
      told_ += u" |" + Numbers({label.top, label.bottom, printable.top, printable.bottom, eyeMark});
    told_ += u'\n';
  };
  const PaperInfo paper = Label(500, 250, 0, 50, 400);  // 200 × 100 pixels
  lay(u"the next only touch the box", paper, 200);
  lay(u"a row of the next", paper, 202);
  lay(u"4 pixels above the box, 8 left of the bar of 12", Label(500, 250, 30, 0, 500), 204);
  lay(u"16 at most", Label(1000, 10, 0, 0, 9), 300);
  lay(u"14", Label(1000, 60, 0, 0, 9), 150);
  lay(u"no way on", Label(500, 250, -250, 0, 9), 300);
  lay(u"backwards", Label(500, 250, -300, 0, 9), 300, PreviewPlace::kDialog);
  lay(u"on below while the distance is less than the box's bottom", Label(500, 250, 0, 0, 9), 100,
      PreviewPlace::kDialog);
  lay(u"every stored number", Label(1, -32768, 32767, -32768, 32767), 32767);
  ExpectGolden("strips.txt");
  EXPECT_GT(ScaleToPreview(32767, 1e30f), 1 << 20);
  EXPECT_LT(ScaleToPreview(-32768, 1e30f), -(1 << 20));
}

}  // namespace
}  // namespace kestrel
