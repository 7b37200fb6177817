#include "fonts/deco_dialog.h"

#include <windows.h>
#include <commctrl.h>

#include <algorithm>
#include <iterator>

#include "driver/drawing.h"
#include "fonts/deco_controls.h"
#include "fonts/font_sizes.h"
#include "fonts/resident_fonts.h"
#include "paper/fields/immediate_list.h"
#include "paper/fields/measured_value.h"
#include "sheets/dialog_handlers.h"

namespace kestrel {
namespace {

constexpr HelpRow MagnificationHelp(int edit, int text) {
  return Ranged(edit, text, kHelpDotRange, kMagnifications.minimum, kMagnifications.maximum);
}
constexpr HelpRow SizeHelp(int side, int edit, int text) {
  return Ranged(edit, text, kHelpDotRangeUnits, kFreeSizes[side].minimum, kFreeSizes[side].maximum);
}
constexpr HelpRow kHelp[] = {
    Plain(IDC_DECO_FONT_NAME, IDS_HELP_DECO_FONT_NAME),
    Plain(IDC_DECO_FONT_RESIDENT, IDS_HELP_DECO_FONT_RESIDENT),
    Plain(IDC_DECO_FONT_DECORATE_ON, IDS_HELP_DECO_FONT_DECORATE_ON),
    Plain(IDC_DECO_FONT_DECORATE_OFF, IDS_HELP_DECO_FONT_DECORATE_OFF),
    MagnificationHelp(IDC_DECO_FONT_EXPAND_X, IDS_HELP_DECO_FONT_EXPAND_X),
    MagnificationHelp(IDC_DECO_FONT_EXPAND_Y, IDS_HELP_DECO_FONT_EXPAND_Y),
    SizeHelp(0, IDC_DECO_FONT_WIDTH, IDS_HELP_DECO_FONT_WIDTH),
    SizeHelp(1, IDC_DECO_FONT_HEIGHT, IDS_HELP_DECO_FONT_HEIGHT),
    Plain(IDC_DECO_FONT_SIZE, IDS_HELP_DECO_FONT_SIZE),
    Plain(IDC_DECO_FONT_MM, IDS_HELP_DECO_FONT_MM),
    Plain(IDC_DECO_FONT_INCH, IDS_HELP_DECO_FONT_INCH),
    Plain(IDC_DECO_FONT_DOT, IDS_HELP_DECO_FONT_DOT),
    Plain(IDC_DECO_FONT_PITCH_FIXED, IDS_HELP_DECO_FONT_PITCH_FIXED),
    Plain(IDC_DECO_FONT_PITCH_PROPORTIONAL, IDS_HELP_DECO_FONT_PITCH_PROPORTIONAL),
    Plain(IDC_DECO_FONT_ROTATE_0, IDS_HELP_DECO_FONT_ROTATE_0),
    Plain(IDC_DECO_FONT_ROTATE_90, IDS_HELP_DECO_FONT_ROTATE_90),
    Plain(IDC_DECO_FONT_ROTATE_180, IDS_HELP_DECO_FONT_ROTATE_180),
    Plain(IDC_DECO_FONT_ROTATE_270, IDS_HELP_DECO_FONT_ROTATE_270),
    Plain(IDC_DECO_FONT_REVERSE_ON, IDS_HELP_DECO_FONT_REVERSE_ON),
    Plain(IDC_DECO_FONT_REVERSE_OFF, IDS_HELP_DECO_FONT_REVERSE_OFF),
    Plain(IDC_DECO_FONT_SMOOTH_ON, IDS_HELP_DECO_FONT_SMOOTH_ON),
    Plain(IDC_DECO_FONT_SMOOTH_OFF, IDS_HELP_DECO_FONT_SMOOTH_OFF),
    Plain(IDC_DECO_FONT_BOLD_ON, IDS_HELP_DECO_FONT_BOLD_ON),
    Plain(IDC_DECO_FONT_BOLD_OFF, IDS_HELP_DECO_FONT_BOLD_OFF),
    Plain(IDC_DECO_FONT_OUTLINE_STANDARD, IDS_HELP_DECO_FONT_OUTLINE_STANDARD),
    Plain(IDC_DECO_FONT_OUTLINE_HOLLOW, IDS_HELP_DECO_FONT_OUTLINE_HOLLOW),
    Plain(IDC_DECO_FONT_OUTLINE_GRAY1, IDS_HELP_DECO_FONT_OUTLINE_GRAY1),
    Plain(IDC_DECO_FONT_OUTLINE_GRAY2, IDS_HELP_DECO_FONT_OUTLINE_GRAY2),
    Plain(IDC_DECO_FONT_OUTLINE_GRAY3, IDS_HELP_DECO_FONT_OUTLINE_GRAY3),
    Plain(IDC_DECO_FONT_OUTLINE_SHADOW, IDS_HELP_DECO_FONT_OUTLINE_SHADOW),
    Plain(IDC_DECO_FONT_OUTLINE_HOLLOW_SHADOW, IDS_HELP_DECO_FONT_OUTLINE_HOLLOW_SHADOW),
    Plain(IDC_DECO_FONT_OUTLINE_MIRROR, IDS_HELP_DECO_FONT_OUTLINE_MIRROR),
    Plain(IDC_DECO_FONT_OUTLINE_ITALIC, IDS_HELP_DECO_FONT_OUTLINE_ITALIC),
    Plain(IDC_DECO_FONT_OUTLINE_HOLLOW_SHADOW_ITALIC,
          IDS_HELP_DECO_FONT_OUTLINE_HOLLOW_SHADOW_ITALIC),
    Plain(IDC_DECO_FONT_SERIAL_ON, IDS_HELP_DECO_FONT_SERIAL_ON),
    Plain(IDC_DECO_FONT_SERIAL_OFF, IDS_HELP_DECO_FONT_SERIAL_OFF),
    Plain(IDC_DECO_FONT_HEXADECIMAL, IDS_HELP_DECO_FONT_HEXADECIMAL),
    Plain(IDC_DECO_FONT_DECIMAL, IDS_HELP_DECO_FONT_DECIMAL),
    SerialHelp(kSameIssue, IDC_DECO_FONT_PRINT_NUM, IDS_HELP_DECO_FONT_PRINT_NUM),
    SerialHelp(kStep, IDC_DECO_FONT_INCREMENT, IDS_HELP_DECO_FONT_INCREMENT),
    SerialHelp(kActiveDigits, IDC_DECO_FONT_ACTIVE_DIGITS, IDS_HELP_DECO_FONT_ACTIVE_DIGITS),
    SerialHelp(kLowDigits, IDC_DECO_FONT_LOW_DIGITS, IDS_HELP_DECO_FONT_LOW_DIGITS),
};

bool IsOneOf(RadioGroup controls, int control) {
  return std::find(controls.begin(), controls.end(), control) != controls.end();
}

// Returns the index of a control in a pair for width and height; -1 when it is not in the pair.
int FindSide(const int (&pair)[kSides], int control) {
  const int* found = std::find(pair, std::end(pair), control);
  return found == std::end(pair) ? -1 : static_cast<int>(found - pair);
}

void ShowDecoHelp(DecoDialog& dialog, int control) {
  const int unit = IsOneOf(kSizeEdits, control) ? dialog.font().Unit : int{kPlain};
  ShowHelp(dialog.window, kHelp, control, IDC_HELP_TEXT, unit, dialog.dpi);
}

void OnListChosen(DecoDialog& dialog, int list) {
  if (list == IDC_DECO_FONT_SIZE) {
    ComputeSelectedSize(dialog);
    RefreshDecoDialog(dialog);
    return;
  }
  const auto rows = ResidentFontTable(dialog.dpi);
  const auto row =
      static_cast<size_t>(SendDlgItemMessageW(dialog.window, list, CB_GETCURSEL, 0, 0));
  if (row < rows.size()) ChooseResidentFont(dialog, rows[row]);
}

void OnList(DecoDialog& dialog, int list, int notification) {
  if (notification == CBN_SETFOCUS) ShowDecoHelp(dialog, list);
  switch (OnListNotified(dialog.window, list, notification, dialog.list)) {
    case ListAction::kOpened:
      dialog.fontBefore = dialog.font();
      dialog.rowBefore = dialog.row;
      return;
    case ListAction::kChoose:
      return OnListChosen(dialog, list);
    case ListAction::kRestore:
      return RestoreFont(dialog, list);
    case ListAction::kNone:
      return;
  }
}

void OnMagnification(DecoDialog& dialog, int side) {
  const int edit = kMagnificationEdits[side];
  if (OnPlainTyped(dialog.fields(), edit).isRejected) return;
  dialog.magnification(side) = static_cast<int16_t>(ReadField(dialog.fields(), edit, kPlain));
  ComputeSelectedSize(dialog);
  RefreshDecoDialog(dialog, true);
}

// Formats a free width or height again from the font's value. Preserves the selection: Tab selects
// the whole text before the edit gets the focus.
void ReformatSize(DecoDialog& dialog, int side) {
  const SuppressCommands suppress(dialog.window);
  HWND edit = GetDlgItem(dialog.window, kSizeEdits[side]);
  DWORD start = 0;
  DWORD end = 0;
  SendMessageW(edit, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
  const bool whole = start == 0 && static_cast<int>(end) == GetWindowTextLengthW(edit);
  WCHAR text[kMeasureTextLength];
  FormatMeasure(text, dialog.size(side), dialog.font().Unit);
  SetWindowTextW(edit, text);
  SendMessageW(edit, EM_SETSEL, start, whole ? -1 : static_cast<LPARAM>(end));
}

// Stores a typed width or height in the font. Formats the text when the focus moves to or from the
// field.
void OnSizeField(DecoDialog& dialog, int side, int notification) {
  const int unit = dialog.font().Unit;
  if (notification == EN_CHANGE) {
    if (!OnMeasureTyped(dialog.fields(), kSizeEdits[side], unit)) return;
    dialog.size(side) = static_cast<int16_t>(ReadField(dialog.fields(), kSizeEdits[side], unit));
  } else if (notification == EN_SETFOCUS || notification == EN_KILLFOCUS) {
    ReformatSize(dialog, side);
  } else {
    return;
  }
  RedrawPreview(dialog);
}

void OnEdit(DecoDialog& dialog, int edit, int notification) {
  if (notification == EN_SETFOCUS) ShowDecoHelp(dialog, edit);
  if (const int side = FindSide(kSizeEdits, edit); side >= 0) {
    OnSizeField(dialog, side, notification);
  } else if (const int magnification = FindSide(kMagnificationEdits, edit); magnification >= 0) {
    if (notification == EN_UPDATE) OnMagnification(dialog, magnification);
  } else if (edit == IDC_DECO_FONT_NAME) {
    if (notification != EN_UPDATE) return;
    GetDlgItemTextW(dialog.window, edit, dialog.font().DecoFontName, kFontNameLength);
  } else if (notification == EN_CHANGE) {
    OnPlainTyped(dialog.fields(), edit);
  }
}

// Ignores a click that would turn off both decoration and serial numbering.
void OnSwitch(DecoDialog& dialog, int control) {
  DecoFontInfo& font = dialog.font();
  if (control == IDC_DECO_FONT_SERIAL_ON) font.Range = 1;
  if (control == IDC_DECO_FONT_SERIAL_OFF && font.Decorate == 1) font.Range = 0;
  if (control == IDC_DECO_FONT_DECORATE_ON) font.Decorate = 1;
  if (control == IDC_DECO_FONT_DECORATE_OFF && font.Range == 1) font.Decorate = 0;
  RefreshDecoDialog(dialog);
  EnableSerialFields(dialog.window, kDecoSerial, font.Range == 1);
}

void OnUnit(DecoDialog& dialog, uint16_t unit) {
  if (unit == dialog.font().Unit) return;
  ChangeFontUnit(dialog.font(), unit, dialog.dpi);
  RefreshDecoDialog(dialog);
}

void OnButton(DecoDialog& dialog, int control) {
  ShowDecoHelp(dialog, control);
  DecoFontInfo& font = dialog.font();
  HWND window = dialog.window;
  const auto value = [window](RadioGroup group) {
    return static_cast<uint16_t>(CheckedRadio(window, group));
  };
  if (IsOneOf(kRotateRadios, control)) {
    font.Rotate = static_cast<uint16_t>(90 * value(kRotateRadios));
  } else if (IsOneOf(kReverseRadios, control)) {
    font.ColorRevolution = value(kReverseRadios);
  } else if (IsOneOf(kSmoothRadios, control)) {
    font.Smoothing = value(kSmoothRadios);
  } else if (IsOneOf(kBoldRadios, control)) {
    font.Bold = value(kBoldRadios);
  } else if (IsOneOf(kOutlineRadios, control)) {
    font.OutlineStyle = value(kOutlineRadios);
  } else if (IsOneOf(kPitchRadios, control)) {
    font.Pitch = static_cast<uint16_t>(1 + value(kPitchRadios));
    RedrawPreview(dialog);
  } else if (IsOneOf(kUnitRadios, control)) {
    OnUnit(dialog, value(kUnitRadios));
  } else if (IsOneOf(kSerialRadios, control) || IsOneOf(kDecorateRadios, control)) {
    OnSwitch(dialog, control);
  }
}

void OnCommand(HWND, DecoDialog& dialog, int control, int notification) {
  const bool edit = control == IDC_DECO_FONT_NAME || IsOneOf(kSizeEdits, control) ||
                    IsOneOf(kMagnificationEdits, control) || IsSerialField(kDecoSerial, control);
  if (edit) {
    OnEdit(dialog, control, notification);
  } else if (control == IDC_DECO_FONT_RESIDENT || control == IDC_DECO_FONT_SIZE) {
    OnList(dialog, control, notification);
  } else if (notification == BN_CLICKED) {
    OnButton(dialog, control);
  }
}

// Handles an arrow of a free width or height. The dialog refuses the up-down's own step and sets
// the edit itself, because the up-down cannot format decimals.
bool OnNotify(HWND window, DecoDialog& dialog, const NMHDR& header) {
  const int side = FindSide(kSizeSpins, static_cast<int>(header.idFrom));
  if (header.code != UDN_DELTAPOS || side < 0) return false;
  const SuppressCommands suppress(window);
  StepField(dialog.fields(), kSizeSpins[side], reinterpret_cast<const NMUPDOWN&>(header).iDelta,
            dialog.font().Unit);
  dialog.size(side) = static_cast<int16_t>(SpinPosition(window, kSizeSpins[side]));
  RedrawPreview(dialog);
  return true;
}

// ---- preview ----

constexpr COLORREF kBackground = RGB(20, 20, 20);
constexpr COLORREF kText = RGB(255, 255, 0);
constexpr WCHAR kFixedFace[] = TEXT("ＭＳ ゴシック");
constexpr WCHAR kProportionalFace[] = TEXT("ＭＳ Ｐゴシック");
constexpr WCHAR kSample[] = TEXT("ij");

// A font that is selected into a device context for the lifetime of the object.
class SelectedFont {
 public:
  SelectedFont(HDC dc, int height, int width, DWORD pitch, const WCHAR* face)
      : dc_(dc),
        font_(CreateFontW(height, width, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                          OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                          pitch | FF_DONTCARE, face)),
        selected_(dc, font_.get()) {}

  TEXTMETRICW Metrics() const {
    TEXTMETRICW metrics = {};
    GetTextMetricsW(dc_, &metrics);
    return metrics;
  }
  SIZE Extent(const WCHAR* text, int length) const {
    SIZE size = {};
    GetTextExtentPoint32W(dc_, text, length, &size);
    return size;
  }

 private:
  HDC dc_;
  GdiObject font_;
  SelectedObject selected_;  // restores the context's font before font_ is deleted
};

struct SampleWidths {
  int i;
  int j;
};

SampleWidths WidthsIn(const SelectedFont& font) {
  return {static_cast<int>(font.Extent(kSample, 1).cx),
          static_cast<int>(font.Extent(kSample + 1, 1).cx)};
}

int SizeInDots(const DecoDialog& dialog, int side) {
  const int unit = CheckedRadio(dialog.window, kUnitRadios);
  return ConvertMeasure(ReadField(dialog.fields(), kSizeEdits[side], unit), unit, kDot, dialog.dpi);
}

// Draws "ij" in the size and the pitch that the controls show. The text is centred in the box and
// clipped to it.
void DrawPreview(const DecoDialog& dialog, HDC dc, const RECT& box) {
  const int width = SizeInDots(dialog, 0);
  const int height = SizeInDots(dialog, 1);
  const bool proportional =
      IsDlgButtonChecked(dialog.window, IDC_DECO_FONT_PITCH_PROPORTIONAL) == BST_CHECKED;
  const WCHAR* face = proportional ? kProportionalFace : kFixedFace;

  int natural = 0;
  {
    const SelectedFont measured(dc, height, 0, FIXED_PITCH, face);
    natural = measured.Metrics().tmAveCharWidth;
  }
  const int drawnWidth = height > 0 ? std::max(natural * width / height, 1) : 1;
  const SelectedFont drawn(dc, height, drawnWidth, FIXED_PITCH, face);
  const SampleWidths widths = WidthsIn(drawn);
  SampleWidths shown = widths;
  if (proportional) {
    const TEXTMETRICW metrics = drawn.Metrics();
    shown = WidthsIn(SelectedFont(dc, metrics.tmHeight, metrics.tmAveCharWidth, VARIABLE_PITCH,
                                  kProportionalFace));
  }
  const SIZE text = drawn.Extent(kSample, 2);
  const int centre = std::max(box.right, text.cx) / 2;
  const int boxHeight = box.bottom - box.top;
  const int top = boxHeight > text.cy ? (boxHeight - text.cy) / 2 : 0;
  const int atI = centre + widths.i / 2 - shown.i / 2 - widths.i;
  const int atJ = centre + widths.j / 2 - shown.j / 2;

  const COLORREF backgroundBefore = SetBkColor(dc, kBackground);
  const COLORREF textBefore = SetTextColor(dc, kText);
  ExtTextOutW(dc, atI, top, ETO_OPAQUE | ETO_CLIPPED, &box, kSample, 1, nullptr);
  const int modeBefore = SetBkMode(dc, TRANSPARENT);
  ExtTextOutW(dc, atJ, top, ETO_CLIPPED, &box, kSample + 1, 1, nullptr);
  SetBkMode(dc, modeBefore);
  SetTextColor(dc, textBefore);
  SetBkColor(dc, backgroundBefore);
}

bool OnDrawItem(HWND, DecoDialog& dialog, const DRAWITEMSTRUCT& item) {
  if (item.CtlID != IDC_DECO_FONT_PREVIEW) return false;
  DrawPreview(dialog, item.hDC, item.rcItem);
  return true;
}

constexpr DialogHandlers<DecoDialog> kDialog = {.templateId = IDD_DECO_FONT,
                                                .open = OpenDecoDialog,
                                                .accept = StoreDecoFont,
                                                .command = OnCommand,
                                                .notify = OnNotify,
                                                .draw = OnDrawItem};

}  // namespace

bool RunDecoDialog(HWND owner, FontStore& store, int dpi) {
  DecoDialog dialog = {.store = store, .dpi = dpi, .window = nullptr, .row = {}};
  return ShowModalDialog(kDialog, owner, dialog) == IDOK;
}

}  // namespace kestrel
