#include "paper/register_dialog.h"

#include <commctrl.h>

#include "driver/instance.h"
#include "paper/fields/help_text.h"
#include "paper/preview_draw.h"
#include "paper/register_dialog_parts.h"

namespace kestrel {
namespace {

constexpr HelpRow kHelp[] = {
    {IDC_PAPER_REGISTER_NAME, IDS_HELP_PAPER_REGISTER_NAME, kHelpPlain, 0, 0, 0, 0},
    {IDC_PAPER_REGISTER_GRADE, IDS_HELP_PAPER_REGISTER_GRADE, kHelpPlain, 0, 0, 0, 0},
    {IDC_PAPER_REGISTER_THICKNESS, IDS_HELP_PAPER_REGISTER_THICKNESS, kHelpPlain, 0, 0, 0, 0},
    {IDC_PAPER_REGISTER_WIDTH, IDS_HELP_PAPER_REGISTER_WIDTH, kHelpTenthsRange, 100, 580, 100, 580},
    {IDC_PAPER_REGISTER_LENGTH, IDS_HELP_PAPER_REGISTER_LENGTH, kHelpTenthsRange, 100, 1630, 100,
     1630},
    {IDC_PAPER_REGISTER_GAP, IDS_HELP_PAPER_REGISTER_GAP, kHelpTenthsUsual, 0, 80, 0, 80},
    {IDC_PAPER_REGISTER_PRINTABLE_LEFT, IDS_HELP_PAPER_REGISTER_PRINTABLE_LEFT, kHelpZero, 0, 0, 0,
     0},
    {IDC_PAPER_REGISTER_PRINTABLE_TOP, IDS_HELP_PAPER_REGISTER_PRINTABLE_TOP, kHelpZero, 0, 0, 0,
     0},
    {IDC_PAPER_REGISTER_PRINTABLE_WIDTH, IDS_HELP_PAPER_REGISTER_PRINTABLE_WIDTH, kHelpPlain, 0, 0,
     0, 0},
    {IDC_PAPER_REGISTER_PRINTABLE_HEIGHT, IDS_HELP_PAPER_REGISTER_PRINTABLE_HEIGHT, kHelpPlain, 0,
     0, 0, 0},
    {IDC_PAPER_REGISTER_REFERENCE, IDS_HELP_PAPER_REGISTER_REFERENCE, kHelpPlain, 0, 0, 0, 0},
    {IDC_PAPER_REGISTER_WHOLE_LABEL, IDS_HELP_WHOLE_LABEL, kHelpPlain, 0, 0, 0, 0},
    {IDC_PAPER_REGISTER_MM, IDS_HELP_PAPER_REGISTER_MM, kHelpPlain, 0, 0, 0, 0},
    {IDC_PAPER_REGISTER_INCH, IDS_HELP_PAPER_REGISTER_INCH, kHelpPlain, 0, 0, 0, 0},
    {IDC_PAPER_REGISTER_YOSHI, IDS_HELP_PAPER_REGISTER_YOSHI, kHelpPlain, 0, 0, 0, 0},
};

constexpr COLORREF kWhite = RGB(255, 255, 255);

const SizeField* FindSizeField(int edit) {
  for (const SizeField& field : kSizeFields) {
    if (field.edit == edit) return &field;
  }
  return nullptr;
}

bool IsSizeSpin(int spin) {
  for (const SizeField& field : kSizeFields) {
    if (field.spin == spin) return true;
  }
  return false;
}

void ShowControlHelp(HWND dialog, const DriverUiData& session, int control) {
  ShowHelp(dialog, kHelp, control, IDC_HELP_TEXT, session.paper.dialog.work.Unit,
           session.settings->Printer.HeadDensity);
}

void RepaintPicture(HWND dialog) {
  InvalidateRect(GetDlgItem(dialog, IDC_PAPER_REGISTER_PICTURE), nullptr, FALSE);
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
    case EN_CHANGE:
      state.field = edit;
      OnMeasureTyped(RegisterFields(dialog), edit, state.work.Unit);
      break;
    case EN_KILLFOCUS:
      state.field = edit;
      OnMeasureTyped(RegisterFields(dialog), edit, state.work.Unit);
      state.fieldPicture = IDB_BACKGROUND;
      InvalidateRect(dialog, nullptr, FALSE);
      RepaintPicture(dialog);
      break;
    default:
      break;
  }
}

// A field whose arrows were clicked shows their position; else the field that was left shows its
// value in full. A field that is being typed into keeps its text.
void RewriteField(HWND dialog, DriverUiData& session) {
  PaperDialogState& state = session.paper.dialog;
  const int spin = state.pendingSpin;
  state.pendingSpin = 0;
  state.refilling = true;
  if (spin != 0) {
    SpinToEdit(RegisterFields(dialog), spin, state.work.Unit);
  } else if (state.field != 0 && GetFocus() != GetDlgItem(dialog, state.field)) {
    ReformatField(RegisterFields(dialog), state.field, state.work.Unit);
  }
  state.refilling = false;
}

void ShowWholeLabel(HWND dialog, DriverUiData& session) {
  if (!ReadPaperSizes(dialog, session)) return;
  session.paper.dialog.wholeLabel = true;
  RepaintPicture(dialog);
}

void OnClicked(HWND dialog, DriverUiData& session, int control) {
  switch (control) {
    case IDOK:
      if (StorePaper(dialog, session)) EndDialog(dialog, IDOK);
      return;
    case IDCANCEL:
      EndDialog(dialog, IDCANCEL);
      return;
    case IDC_PAPER_REGISTER_MM:
    case IDC_PAPER_REGISTER_INCH:
      OnUnitClicked(dialog, session);
      return ShowControlHelp(dialog, session, control);
    case IDC_PAPER_REGISTER_REFERENCE:
      ShowControlHelp(dialog, session, control);
      return CopyReferencePaper(dialog, session);
    case IDC_PAPER_REGISTER_WHOLE_LABEL:
      ShowControlHelp(dialog, session, control);
      return ShowWholeLabel(dialog, session);
    default:
      return ShowControlHelp(dialog, session, control);
  }
}

void Command(HWND dialog, DriverUiData& session, int control, int notification) {
  if (session.paper.dialog.refilling) return;
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
  if (FindSizeField(control) != nullptr) {
    OnSizeNotified(dialog, session, control, notification);
  } else if (notification == BN_CLICKED) {
    OnClicked(dialog, session, control);
  }
}

bool DrawItem(DriverUiData& session, const DRAWITEMSTRUCT& item) {
  PaperPageState& state = session.paper;
  switch (item.CtlID) {
    case IDC_PAPER_REGISTER_FEED_PICTURE:
      DrawPicture(item.hDC, item.rcItem, IDB_FEED_DIRECTION);
      return true;
    case IDC_PAPER_REGISTER_PICTURE:
      if (state.dialog.wholeLabel) {
        DrawWholeLabel(item.hDC, item.rcItem, state.dialog.work, PreviewPlace::kDialog,
                       IDB_PORTRAIT, {state.geometry, state.labels, state.labelCount});
      } else {
        DrawPicture(item.hDC, item.rcItem, state.dialog.fieldPicture);
      }
      return true;
    default:
      return false;
  }
}

void OnNotify(HWND dialog, DriverUiData& session, const NMHDR& header) {
  const int control = static_cast<int>(header.idFrom);
  if (header.code != UDN_DELTAPOS || !IsSizeSpin(control)) return;
  // The position changes after this; the repaint comes when it has.
  session.paper.dialog.pendingSpin = control;
  InvalidateRect(dialog, nullptr, FALSE);
}

// The brush of a static control, or null for the usual one.
HBRUSH StaticBackground(HDC dc, HWND control) {
  if (GetDlgCtrlID(control) != IDC_PAPER_REGISTER_FEED_TEXT) return nullptr;
  SetBkColor(dc, kWhite);
  return static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
}

INT_PTR CALLBACK RegisterProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrW(dialog, DWLP_USER, lParam);
    OpenPaperDialog(dialog, *reinterpret_cast<DriverUiData*>(lParam));
    return TRUE;
  }
  auto* session = reinterpret_cast<DriverUiData*>(GetWindowLongPtrW(dialog, DWLP_USER));
  if (session == nullptr) return FALSE;
  switch (message) {
    case WM_COMMAND:
      Command(dialog, *session, LOWORD(wParam), HIWORD(wParam));
      return TRUE;
    case WM_NOTIFY:
      OnNotify(dialog, *session, *reinterpret_cast<const NMHDR*>(lParam));
      return FALSE;
    case WM_DRAWITEM:
      return DrawItem(*session, *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
    case WM_CTLCOLORSTATIC:
      return reinterpret_cast<INT_PTR>(
          StaticBackground(reinterpret_cast<HDC>(wParam), reinterpret_cast<HWND>(lParam)));
    case WM_PAINT:
      RewriteField(dialog, *session);
      return FALSE;
    case WM_CLOSE:
      EndDialog(dialog, IDCANCEL);
      return TRUE;
    default:
      return FALSE;
  }
}

}  // namespace

bool RunPaperDialog(HWND owner, DriverUiData& session) {
  return DialogBoxParamW(ModuleInstance(), MAKEINTRESOURCEW(IDD_PAPER_REGISTER), owner,
                         RegisterProc, reinterpret_cast<LPARAM>(&session)) == IDOK;
}

}  // namespace kestrel
