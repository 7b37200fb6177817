#include "paper/preview_draw.h"

#include "driver/drawing.h"
#include "resources/resource.h"

namespace kestrel {
namespace {

constexpr COLORREF kMarkerColour = RGB(255, 0, 0);
constexpr COLORREF kBlack = RGB(0, 0, 0);
constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr int kCharacterPitch = 16;  // pixels from one vertical character to the next
constexpr int kCharacterInset = 2;

// Restores the objects and modes of a device context. Declare it after the owners of the selected
// objects: an object must not be selected when it is deleted.
class SavedDc {
 public:
  explicit SavedDc(HDC dc) : dc_(dc), state_(SaveDC(dc)) {}
  ~SavedDc() { RestoreDC(dc_, state_); }
  SavedDc(const SavedDc&) = delete;
  SavedDc& operator=(const SavedDc&) = delete;

 private:
  HDC dc_;
  int state_;
};

bool IsEmpty(const RECT& rect) { return rect.right <= rect.left || rect.bottom <= rect.top; }

void Stretch(HDC dc, const RECT& rect, const Picture& picture) {
  if (!picture || IsEmpty(rect)) return;
  const int mode = SetStretchBltMode(dc, BLACKONWHITE);
  StretchBlt(dc, rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top, picture.dc(),
             0, 0, picture.width(), picture.height(), SRCCOPY);
  SetStretchBltMode(dc, mode);
}

void DrawRectangle(HDC dc, const RECT& rect) {
  if (!IsEmpty(rect)) Rectangle(dc, rect.left, rect.top, rect.right, rect.bottom);
}

void DrawLabel(HDC dc, const RECT& box, const PreviewLabel& label, PreviewPlace place) {
  SelectObject(dc, GetStockObject(WHITE_BRUSH));
  DrawRectangle(dc, label.label);
  if (place == PreviewPlace::kDialog) DrawRectangle(dc, label.printable);

  SelectObject(dc, GetStockObject(BLACK_BRUSH));
  const LONG top = label.label.top;
  DrawRectangle(dc, {box.left, top, label.label.left, top + label.eyeMark});
  DrawRectangle(dc, {label.label.right, top, box.right, top + label.eyeMark});
}

struct Sketch {
  int dialogId;
  int field;
  int bitmapId;
};

constexpr Sketch kSketches[] = {
    {IDD_PAPER_REGISTER, IDC_PAPER_REGISTER_WIDTH, IDB_SKETCH_WIDTH},
    {IDD_PAPER_REGISTER, IDC_PAPER_REGISTER_LENGTH, IDB_SKETCH_LENGTH},
    {IDD_PAPER_REGISTER, IDC_PAPER_REGISTER_PRINTABLE_LEFT, IDB_SKETCH_PRINTABLE_LEFT},
    {IDD_PAPER_REGISTER, IDC_PAPER_REGISTER_PRINTABLE_TOP, IDB_SKETCH_PRINTABLE_TOP},
    {IDD_PAPER_REGISTER, IDC_PAPER_REGISTER_PRINTABLE_WIDTH, IDB_SKETCH_PRINTABLE_WIDTH},
    {IDD_PAPER_REGISTER, IDC_PAPER_REGISTER_PRINTABLE_HEIGHT, IDB_SKETCH_PRINTABLE_HEIGHT},
    {IDD_PAPER_REGISTER, IDC_PAPER_REGISTER_GAP, IDB_SKETCH_GAP},
    {IDD_PAPER_REGISTER, IDC_PAPER_REGISTER_EYE_MARK, IDB_SKETCH_EYE_MARK},
    {IDD_PAPER, IDC_PAPER_VERT_BASE, IDB_SKETCH_BASE_POINTS},
    {IDD_PAPER, IDC_PAPER_HORZ_BASE, IDB_SKETCH_BASE_POINTS},
    {IDD_PAPER, IDC_PAPER_CUT_OFFSET, IDB_SKETCH_FEED_OFFSETS},
    {IDD_PAPER, IDC_PAPER_PEEL_OFFSET, IDB_SKETCH_FEED_OFFSETS},
    {IDD_PAPER, IDC_PAPER_TEAR_OFFSET, IDB_SKETCH_FEED_OFFSETS},
    {IDD_PAPER, IDC_PAPER_PITCH_OFFSET, IDB_SKETCH_PITCH},
};

}  // namespace

void DrawPicture(HDC dc, const RECT& rect, int bitmapId) {
  Stretch(dc, rect, Picture(dc, static_cast<WORD>(bitmapId)));
}

PreviewGeometry DrawWholeLabel(HDC dc, const RECT& box, const PaperInfo& paper, PreviewPlace place,
                               int orientationPicture) {
  DrawPicture(dc, box, IDB_BACKGROUND);
  const PreviewGeometry geometry = MeasurePreview(paper, box);
  PreviewLabel labels[kMaxPreviewLabels];
  const int count = LayOutLabels(geometry, place, labels);
  const Picture picture(dc, static_cast<WORD>(orientationPicture));
  const SavedDc saved(dc);
  for (const PreviewLabel& label : std::span(labels, static_cast<size_t>(count))) {
    DrawLabel(dc, box, label, place);
    Stretch(dc, label.picture, picture);
  }
  return geometry;
}

void DrawMarkerLines(HDC dc, std::span<const MarkerLine> lines) {
  const GdiObject pen(CreatePen(PS_DOT, 1, kMarkerColour));
  if (!pen) return;
  const SavedDc saved(dc);
  SelectObject(dc, pen.get());
  // The gaps of the dotted lines do not cover the label.
  SetBkMode(dc, TRANSPARENT);
  for (const MarkerLine& line : lines) {
    MoveToEx(dc, line.from.x, line.from.y, nullptr);
    LineTo(dc, line.to.x, line.to.y);
  }
}

void DrawVerticalText(HDC dc, const RECT& rect, const WCHAR* text) {
  const SavedDc saved(dc);
  FillRect(dc, &rect, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
  SetTextColor(dc, kBlack);
  SetBkColor(dc, kWhite);
  int y = rect.top + kCharacterInset;
  for (; *text != 0; ++text, y += kCharacterPitch) {
    TextOutW(dc, rect.left + kCharacterInset, y, text, 1);
  }
}

int FieldSketch(int dialogId, int field) {
  for (const Sketch& sketch : kSketches) {
    if (sketch.dialogId == dialogId && sketch.field == field) return sketch.bitmapId;
  }
  return IDB_BACKGROUND;
}

}  // namespace kestrel
