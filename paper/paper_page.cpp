// The page on which the label paper of a document, its orientation, base points and offsets are
// chosen, and from which papers are registered, edited and deleted.
#include <windows.h>
#include <commctrl.h>

#include "paper/fields/help_text.h"
#include "paper/fields/immediate_list.h"
#include "paper/paper_page_data.h"
#include "paper/paper_table.h"
#include "paper/preview_draw.h"
#include "sheets/own_page.h"
#include "sheets/page_procs.h"
#include "sheets/page_services.h"

namespace kestrel {
namespace {

constexpr HelpRow OffsetHelp(int edit, int text) {
  return Ranged(edit, text, kHelpDotRange, OffsetRange(edit).minimum, OffsetRange(edit).maximum);
}
constexpr HelpRow kHelp[] = {
    Plain(IDC_PAPER_LIST, IDS_HELP_PAPER_LIST),
    Plain(IDC_PAPER_PORTRAIT, IDS_HELP_PAPER_PORTRAIT),
    Plain(IDC_PAPER_LANDSCAPE, IDS_HELP_PAPER_LANDSCAPE),
    Plain(IDC_PAPER_FLIP, IDS_HELP_PAPER_FLIP),
    OffsetHelp(IDC_PAPER_VERT_BASE, IDS_HELP_PAPER_VERT_BASE),
    OffsetHelp(IDC_PAPER_HORZ_BASE, IDS_HELP_PAPER_HORZ_BASE),
    OffsetHelp(IDC_PAPER_CUT_OFFSET, IDS_HELP_PAPER_CUT_OFFSET),
    OffsetHelp(IDC_PAPER_PEEL_OFFSET, IDS_HELP_PAPER_PEEL_OFFSET),
    OffsetHelp(IDC_PAPER_TEAR_OFFSET, IDS_HELP_PAPER_TEAR_OFFSET),
    OffsetHelp(IDC_PAPER_PITCH_OFFSET, IDS_HELP_PAPER_PITCH_OFFSET),
    Plain(IDC_PAPER_REGISTER, IDS_HELP_PAPER_REGISTER),
    Plain(IDC_PAPER_EDIT, IDS_HELP_PAPER_EDIT),
    Plain(IDC_PAPER_DELETE, IDS_HELP_PAPER_DELETE),
    Plain(IDC_PAPER_FREE_EDIT, IDS_HELP_PAPER_FREE_EDIT),
    Plain(IDC_PAPER_VERSION, IDS_HELP_PAPER_VERSION),
    Plain(IDC_PAPER_REFERENCE, IDS_HELP_PAPER_REFERENCE),
    Plain(IDC_PAPER_WHOLE_LABEL, IDS_HELP_WHOLE_LABEL),
    Plain(IDC_PAPER_POSITION, IDS_HELP_PAPER_POSITION),
};

constexpr WCHAR kFeedDirection[] = TEXT("搬送方向");

void Create(HWND page, DriverUiData& session) {
  session.paper.preview = {};
  session.paper.dataReference = false;
  CheckDlgButton(page, IDC_PAPER_REFERENCE, BST_UNCHECKED);
  EnableWindow(GetDlgItem(page, IDC_PAPER_PICTURE), FALSE);
  SetDlgItemTextW(page, IDC_PAPER_WHOLE_LABEL, TEXT("全体図表示"));
  FillPaperPage(page, session, true);
}

void Activate(HWND page, DriverUiData& session) { FillPaperPage(page, session, false); }

void Leave(HWND page, DriverUiData& session) {
  PrivateDevMode& settings = session.settings->Record.Private;
  settings.PaperID = PaperEntryId(*session.settings, session.paper.selected);
  ReadOrientation(page, settings);
  for (const OffsetField& field : kOffsetFields) {
    settings.*field.setting = TypedOffset(page, settings, field);
  }
  settings.Position = IsDlgButtonChecked(page, IDC_PAPER_POSITION) == BST_CHECKED;
}

void OnClicked(HWND page, DriverUiData& session, int control) {
  PaperPageState& state = session.paper;
  switch (control) {
    case IDC_PAPER_PORTRAIT:
    case IDC_PAPER_LANDSCAPE:
    case IDC_PAPER_FLIP:
      return OnOrientationClicked(page, session);
    case IDC_PAPER_REFERENCE:
      state.dataReference = IsDlgButtonChecked(page, IDC_PAPER_REFERENCE) == BST_CHECKED;
      return;
    case IDC_PAPER_POSITION:
      MarkPageChanged(page);
      return;
    case IDC_PAPER_WHOLE_LABEL:
      return ShowPicture(page, state, kMarkedLabelPicture);
    case IDC_PAPER_REGISTER:
      return RegisterPaper(page, session);
    case IDC_PAPER_EDIT:
      return EditPaper(page, session);
    case IDC_PAPER_FREE_EDIT:
      return EditFreePaper(page, session);
    case IDC_PAPER_DELETE:
      return DeleteSelectedPaper(page, session);
    default:
      return;
  }
}

void Command(HWND page, DriverUiData& session, int control, int notification) {
  const auto help = [&] {
    ShowHelp(page, kHelp, control, IDC_HELP_TEXT, kPlain, session.settings->Printer.HeadDensity);
  };
  if (const OffsetField* field = FindOffsetField(control)) {
    if (notification == EN_SETFOCUS) help();
    OnOffsetNotified(page, session, *field, notification);
  } else if (control == IDC_PAPER_LIST) {
    if (notification == CBN_SETFOCUS) help();
    const ListAction action = OnListNotified(page, control, notification, session.paper.list);
    if (action == ListAction::kChoose || action == ListAction::kRestore) {
      OnPaperSelected(page, session);
    }
  } else if (notification == BN_CLICKED) {
    help();
    OnClicked(page, session, control);
  }
}

MarkerValues ReadMarkerValues(HWND page, const DriverUiData& session) {
  const PrivateDevMode& settings = session.settings->Record.Private;
  const auto dots = [&](int edit) { return TypedOffset(page, settings, *FindOffsetField(edit)); };
  return {
      .vertBase = dots(IDC_PAPER_VERT_BASE),
      .horzBase = dots(IDC_PAPER_HORZ_BASE),
      .pitchOffset = dots(IDC_PAPER_PITCH_OFFSET),
      .peelOffset = dots(IDC_PAPER_PEEL_OFFSET),
      .tearOffset = dots(IDC_PAPER_TEAR_OFFSET),
      .eyeMarkSensor = settings.nSensor == kEyeMarkSensor,
  };
}

void DrawMarkers(HWND page, HDC dc, const DriverUiData& session, const PreviewGeometry& geometry) {
  const bool peel = session.settings->Printer.Mecha == kPeelMode;
  const int fields[] = {IDC_PAPER_VERT_BASE, IDC_PAPER_PITCH_OFFSET,
                        peel ? IDC_PAPER_PEEL_OFFSET : IDC_PAPER_TEAR_OFFSET};
  const MarkerValues values = ReadMarkerValues(page, session);
  for (const int field : fields) {
    MarkerLine lines[kMaxMarkerLines];
    const int count = LayOutMarker(geometry, field, values, lines);
    DrawMarkerLines(dc, {lines, static_cast<size_t>(count)});
  }
}

void DrawBox(HWND page, DriverUiData& session, const DRAWITEMSTRUCT& item) {
  PaperPageState& state = session.paper;
  if (state.picture == kFieldPicture) {
    DrawPicture(item.hDC, item.rcItem, state.fieldPicture);
    return;
  }
  const PreviewGeometry drawn = DrawWholeLabel(item.hDC, item.rcItem, state.preview,
                                               PreviewPlace::kPage, state.orientationPicture);
  if (state.picture == kMarkedLabelPicture && drawn.scale > 0) {
    DrawMarkers(page, item.hDC, session, drawn);
  }
}

bool DrawItem(HWND page, DriverUiData& session, const DRAWITEMSTRUCT& item) {
  switch (item.CtlID) {
    case IDC_PAPER_FEED_PICTURE:
      DrawPicture(item.hDC, item.rcItem, IDB_FEED_DIRECTION);
      return true;
    case IDC_PAPER_FEED_TEXT:
      DrawVerticalText(item.hDC, item.rcItem, kFeedDirection);
      return true;
    case IDC_PAPER_PICTURE:
      DrawBox(page, session, item);
      return true;
    default:
      return false;
  }
}

INT_PTR Other(HWND page, DriverUiData& session, UINT message, WPARAM, LPARAM lParam) {
  if (message == WM_DRAWITEM) {
    return DrawItem(page, session, *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
  }
  if (message == WM_NOTIFY && reinterpret_cast<const NMHDR*>(lParam)->code == UDN_DELTAPOS) {
    MarkPageChanged(page);
  }
  return FALSE;
}

constexpr OwnPage kPage = {Create, Activate, Leave, Command, Other, ApplyOrder::kSaveThenConfirm};

}  // namespace

INT_PTR CALLBACK PaperPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
  return RunOwnPage(kPage, page, message, wParam, lParam);
}

}  // namespace kestrel
