#include "paper/register_dialog.h"

#include <windows.h>
#include <commctrl.h>

#include "paper/fields/help_text.h"
#include "paper/preview_draw.h"
#include "paper/register_dialog_data.h"
#include "sheets/own_dialog.h"

namespace kestrel {
namespace {

constexpr HelpRow Ranged(int control, int text, HelpKind kind, SizeLimit range) {
  return kestrel::Ranged(control, text, kind, range.minimum, range.maximum);
}
constexpr HelpRow kHelp[] = {
    Plain(IDC_PAPER_REGISTER_NAME, IDS_HELP_PAPER_REGISTER_NAME),
    Plain(IDC_PAPER_REGISTER_GRADE, IDS_HELP_PAPER_REGISTER_GRADE),
    Plain(IDC_PAPER_REGISTER_THICKNESS, IDS_HELP_PAPER_REGISTER_THICKNESS),
    Ranged(IDC_PAPER_REGISTER_WIDTH, IDS_HELP_PAPER_REGISTER_WIDTH, kHelpTenthsRange, kLabelWidths),
    Ranged(IDC_PAPER_REGISTER_LENGTH, IDS_HELP_PAPER_REGISTER_LENGTH, kHelpTenthsRange,
           kLabelLengths),
    Ranged(IDC_PAPER_REGISTER_GAP, IDS_HELP_PAPER_REGISTER_GAP, kHelpTenthsUsual, kGaps),
    Ranged(IDC_PAPER_REGISTER_PRINTABLE_LEFT, IDS_HELP_PAPER_REGISTER_PRINTABLE_LEFT, kHelpZero,
           {0, 0}),
    Ranged(IDC_PAPER_REGISTER_PRINTABLE_TOP, IDS_HELP_PAPER_REGISTER_PRINTABLE_TOP, kHelpZero,
           {0, 0}),
    Plain(IDC_PAPER_REGISTER_PRINTABLE_WIDTH, IDS_HELP_PAPER_REGISTER_PRINTABLE_WIDTH),
    Plain(IDC_PAPER_REGISTER_PRINTABLE_HEIGHT, IDS_HELP_PAPER_REGISTER_PRINTABLE_HEIGHT),
    Plain(IDC_PAPER_REGISTER_REFERENCE, IDS_HELP_PAPER_REGISTER_REFERENCE),
    Plain(IDC_PAPER_REGISTER_WHOLE_LABEL, IDS_HELP_WHOLE_LABEL),
    Plain(IDC_PAPER_REGISTER_MM, IDS_HELP_PAPER_REGISTER_MM),
    Plain(IDC_PAPER_REGISTER_INCH, IDS_HELP_PAPER_REGISTER_INCH),
    Plain(IDC_PAPER_REGISTER_YOSHI, IDS_HELP_PAPER_REGISTER_YOSHI),
};

constexpr COLORREF kBlack = RGB(0, 0, 0);
constexpr COLORREF kWhite = RGB(255, 255, 255);

bool IsSizeField(int control) {
  for (const SizeField& field : kSizeFields) {
    if (field.edit == control) return true;
  }
  return false;
}

void ShowControlHelp(HWND dialog, const DriverUiData& session, int control) {
  ShowHelp(dialog, kHelp, control, IDC_HELP_TEXT, session.paper.dialog.work.Unit,
           session.settings->Printer.HeadDensity);
}

void OnSizeNotified(HWND dialog, DriverUiData& session, int edit, int notification) {
  PaperDialogState& state = session.paper.dialog;
  switch (notification) {
    case EN_SETFOCUS:
      state.wholeLabel = false;
      state.fieldPicture = FieldSketch(IDD_PAPER_REGISTER, edit);
      RepaintPicture(dialog);
      ShowControlHelp(dialog, session, edit);
      break;
    case EN_CHANGE: {
      const QuietDialog quiet(dialog);
      OnMeasureTyped(RegisterFields(dialog), edit, state.work.Unit);
      break;
    }
    case EN_KILLFOCUS: {
      const QuietDialog quiet(dialog);
      ReformatField(RegisterFields(dialog), edit, state.work.Unit);
      state.fieldPicture = IDB_BACKGROUND;
      RepaintPicture(dialog);
      break;
    }
    default:
      break;
  }
}

void ShowWholeLabel(HWND dialog, DriverUiData& session) {
  if (!ReadPaper(dialog, session)) return;
  session.paper.dialog.wholeLabel = true;
  RepaintPicture(dialog);
}

void OnClicked(HWND dialog, DriverUiData& session, int control) {
  ShowControlHelp(dialog, session, control);
  switch (control) {
    case IDC_PAPER_REGISTER_MM:
    case IDC_PAPER_REGISTER_INCH:
      return OnUnitClicked(dialog, session);
    case IDC_PAPER_REGISTER_REFERENCE:
      return CopyReferencePaper(dialog, session);
    case IDC_PAPER_REGISTER_WHOLE_LABEL:
      return ShowWholeLabel(dialog, session);
    default:
      return;
  }
}

void Command(HWND dialog, DriverUiData& session, int control, int notification) {
  switch (control) {
    case IDC_PAPER_REGISTER_NAME:
      if (notification == EN_SETFOCUS) ShowControlHelp(dialog, session, control);
      return;
    case IDC_PAPER_REGISTER_GRADE:
      EnableDarknessList(dialog, session);
      [[fallthrough]];
    case IDC_PAPER_REGISTER_THICKNESS:
      if (notification == CBN_SETFOCUS) ShowControlHelp(dialog, session, control);
      return;
    default:
      break;
  }
  if (IsSizeField(control)) {
    OnSizeNotified(dialog, session, control, notification);
  } else if (notification == BN_CLICKED) {
    OnClicked(dialog, session, control);
  }
}

bool Notify(HWND dialog, DriverUiData& session, const NMHDR& header) {
  if (header.code != UDN_DELTAPOS) return false;
  const QuietDialog quiet(dialog);
  return StepField(RegisterFields(dialog), static_cast<int>(header.idFrom),
                   reinterpret_cast<const NMUPDOWN&>(header).iDelta,
                   session.paper.dialog.work.Unit);
}

bool DrawItem(HWND, DriverUiData& session, const DRAWITEMSTRUCT& item) {
  PaperPageState& state = session.paper;
  switch (item.CtlID) {
    case IDC_PAPER_REGISTER_FEED_PICTURE:
      DrawPicture(item.hDC, item.rcItem, IDB_FEED_DIRECTION);
      return true;
    case IDC_PAPER_REGISTER_PICTURE:
      if (state.dialog.wholeLabel) {
        DrawWholeLabel(item.hDC, item.rcItem, state.dialog.work, PreviewPlace::kDialog,
                       IDB_PORTRAIT);
      } else {
        DrawPicture(item.hDC, item.rcItem, state.dialog.fieldPicture);
      }
      return true;
    default:
      return false;
  }
}

// The feed direction is black on white whatever the user's colours are.
INT_PTR Other(HWND, DriverUiData&, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message != WM_CTLCOLORSTATIC ||
      GetDlgCtrlID(reinterpret_cast<HWND>(lParam)) != IDC_PAPER_REGISTER_FEED_TEXT) {
    return FALSE;
  }
  const auto dc = reinterpret_cast<HDC>(wParam);
  SetTextColor(dc, kBlack);
  SetBkColor(dc, kWhite);
  return reinterpret_cast<INT_PTR>(GetStockObject(WHITE_BRUSH));
}

constexpr OwnDialog<DriverUiData> kDialog = {.templateId = IDD_PAPER_REGISTER,
                                             .open = OpenPaperDialog,
                                             .accept = StorePaper,
                                             .command = Command,
                                             .notify = Notify,
                                             .draw = DrawItem,
                                             .other = Other};

}  // namespace

bool RunPaperDialog(HWND owner, DriverUiData& session) {
  return RunOwnDialog(kDialog, owner, session) == IDOK;
}

}  // namespace kestrel
