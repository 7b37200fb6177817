// The picture boxes of the page and the dialog, and the layout of the strip of labels.
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
// 60 × 120 pixels; the eye-mark bars are visible at both sides.
const PaperInfo kNarrow = Label(240, 480, 30, 0, 240);

class Preview : public PaperTest {
 protected:
  void Store(const PaperInfo& paper, uint16_t mode = 0, int16_t sensor = 0) {
    DriverSettingsBlock block = DefaultBlock();
    block.Record.Private.PaperID = kFreePaperId;
    block.Record.Private.FreePaper = paper;
    block.Record.Private.nSensor = sensor;
    block.Printer.Mecha = mode;
    StoreDefaults(block);
  }
  // Logs the drawing operations of a box, each with its kind or picture and its rectangle. Dotted
  // red lines are markers.
  Step Log(std::u16string what, int box = kPicture) {
    return [=, this](Desk& desk) {
      log_ += what;
      if (desk.Control(box).background == RGB(255, 255, 255)) log_ += u" on white";
      for (const DrawOp& op : desk.Control(box).drawing) {
        const bool marker = op.pen == RGB(255, 0, 0) && op.penStyle == PS_DOT && op.penWidth == 1;
        const bool text = op.kind == Kind::kText && op.textColour == 0;
        log_ += u" | ";
        log_ += text                      ? op.text
                : op.kind == Kind::kImage ? Number(op.bitmap)
                : op.kind == Kind::kLine  ? (marker ? u"marker" : u"line")
                                          : (op.brush == 0 ? u"black" : u"white");
        log_ += Numbers({op.rect.left, op.rect.top, op.rect.right, op.rect.bottom});
      }
      log_ += u"\n";
    };
  }
};

// golden/previews.txt. The page's box has 120 × 189 pixels, the dialog's 138 × 246.
TEST_F(Preview, DrawsStripsSketchesAndMarkers) {
  const auto sketches = [this](std::initializer_list<int> fields, int box = kPicture) {
    Steps steps;
    for (const int field : fields) steps += {Focus(field), Log(u"field " + Number(field), box)};
    return steps;
  };
  const auto markers = [this](std::u16string what,
                              std::initializer_list<std::pair<int, int>> offsets) {
    Steps steps;
    for (const auto& [field, offset] : offsets) steps += Paste(field, Number(offset));
    return Steps{steps, Focus(kList), Log(what + u" before"), Click(kPageWholeLabel), Log(what)};
  };
  Store(Label(480, 480, 30, 0, 0));
  Cancel(kPaperTab, Log(u"nothing printable across"));
  Store(Label(0, 0, 30, 0, 0));
  Cancel(kPaperTab, {Click(kPageWholeLabel), Log(u"no size")});
  Store(Label(480, 480, 30, 40, 400));
  Cancel(kPaperTab,
         {Log(u"a square"), Click(kLandscape), Log(u"landscape"), Click(kFlip), Log(u"flipped"),
          Click(kPortrait), Log(u"portrait"), GoTo(kVersionTab), GoTo(kPaperTab), Log(u"again")});
  Store(kNarrow);  // a quarter pixel per dot; half pixels are rounded up, negative ones too
  Cancel(kPaperTab,
         {Log(u"narrow"), sketches({kVert, kHorz, kTear, kPitch}),
          markers(u"right and down", {{kVert, 20}, {kHorz, 40}, {kTear, 80}}), Click(kPortrait),
          Log(u"upright"),
          markers(u"left and up", {{kVert, -22}, {kHorz, -300}, {kTear, -2}, {kPitch, -6}})});
  Store(Label(60, 60, 0, 0, 60));
  Cancel(kPaperTab, markers(u"beyond the corner", {{kVert, -300}, {kHorz, 300}}));
  Store(Label(100, 100, 220, 0, 100));
  Cancel(kPaperTab, markers(u"no label in the box", {{kVert, -100}}));
  Store(kNarrow, 2, 1);
  Cancel(kPaperTab,
         {sketches({kPitch, kPeel}), markers(u"peel mode and gap sensor", {{kPeel, -40}}),
          Log(u"feed", IDC_PAPER_FEED_PICTURE), Log(u"feed", IDC_PAPER_FEED_TEXT)});
  // 55.2 mm are 138 pixels; 48.0 mm printable are 120, the gap 10 pixels.
  Cancel(kPaperTab,
         {Click(kRegister), sketches({kName, kWidth, kLength, kGap, kGrade}, kDialogPicture),
          Log(u"feed", IDC_PAPER_REGISTER_FEED_PICTURE), Log(u"feed", IDC_PAPER_REGISTER_FEED_TEXT),
          Log(u"help", IDC_HELP_TEXT), Fill(u"", u"55.2", u"55.2", u"4.0"), Click(kWholeLabel),
          Log(u"of what was typed", kDialogPicture), sketches({kGap}, kDialogPicture),
          Click(IDCANCEL)});
  ExpectGolden("previews.txt");
}

// Each creation of a GDI object fails in turn.
TEST_F(Preview, FailedObjectCreationLeaksNothing) {
  Store(kNarrow);
  const auto drawWithFaults = [this](Desk& desk) {
    const HWND box = desk.Control(kPicture).handle;
    const int contexts = platform::LiveDcs();
    const auto draw = [box] { InvalidateRect(box, nullptr, TRUE), platform::PaintTree(box); };
    const auto check = [=](platform::Fault, bool) { EXPECT_EQ(platform::LiveDcs(), contexts); };
    // Two pictures with their device contexts, and a pen for each of three markers.
    EXPECT_EQ(ForEachFault({platform::Fault::kWindow}, draw, check), 7);
    EXPECT_EQ(desk.Control(kPicture).drawing.size(), 11u);
  };
  Cancel(kPaperTab, {Click(kPageWholeLabel), drawWithFaults});
}

// golden/strips.txt: top and bottom of each label and of its printable area, and the height of its
// bars, in a box 200 pixels wide.
TEST_F(Preview, LaysOutEveryVisibleLabel) {
  const auto lay = [&](std::u16string what, const PaperInfo& paper, int height,
                       PreviewPlace place = PreviewPlace::kPage) {
    PreviewLabel labels[kMaxPreviewLabels] = {};
    const int count = LayOutLabels(MeasurePreview(paper, {0, 0, 200, height}), place, labels);
    log_ += what + u": " + Number(count);
    for (const auto& [label, printable, picture, eyeMark] :
         std::span(labels, static_cast<size_t>(count)))
      log_ += u" |" + Numbers({label.top, label.bottom, printable.top, printable.bottom, eyeMark});
    log_ += u'\n';
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
