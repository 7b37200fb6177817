// The paper page: the user chooses the label paper, orientation, base points and offsets of a
// document, and registers, edits and deletes papers.
//
// The parts follow in this order: offset fields and help, filling, drawing, the user's actions,
// storing on leaving.
#include <windows.h>
#include <commctrl.h>

#include <algorithm>
#include <iterator>

#include "paper/fields/controls.h"
#include "paper/fields/help_text.h"
#include "paper/fields/immediate_list.h"
#include "paper/fields/measured_value.h"
#include "paper/fields/numeric_field.h"
#include "paper/paper_checks.h"
#include "paper/paper_table.h"
#include "paper/preview_draw.h"
#include "paper/register_dialog.h"
#include "resources/resource.h"
#include "sheets/messages.h"
#include "sheets/page_handlers.h"
#include "sheets/page_procs.h"
#include "sheets/page_services.h"
#include "sheets/session_fonts.h"

namespace kestrel {
namespace {

constexpr int16_t kEyeMarkSensor = 0;  // value of nSensor
constexpr WCHAR kFeedDirection[] = TEXT("搬送方向");

// ---- Offset fields and help ----

// An offset field, its range in dots, the setting that it edits and the typed value.
struct SpinRangeRow {
  NumericField field;
  int16_t PrivateDevMode::*setting;
  int16_t PaperOffsets::*typed;
};
constexpr SpinRangeRow SpinRangeTable[] = {
    {{IDC_PAPER_VERT_BASE, IDC_PAPER_VERT_BASE_SPIN, -300, 300, kPlain},
     &PrivateDevMode::nVertBase,
     &PaperOffsets::vertBase},
    {{IDC_PAPER_HORZ_BASE, IDC_PAPER_HORZ_BASE_SPIN, -300, 300, kPlain},
     &PrivateDevMode::nHorzBase,
     &PaperOffsets::horzBase},
    {{IDC_PAPER_PEEL_OFFSET, IDC_PAPER_PEEL_OFFSET_SPIN, -40, 99, kPlain},
     &PrivateDevMode::nPeelOffset,
     &PaperOffsets::peel},
    {{IDC_PAPER_TEAR_OFFSET, IDC_PAPER_TEAR_OFFSET_SPIN, -99, 99, kPlain},
     &PrivateDevMode::nTearOffset,
     &PaperOffsets::tear},
    {{IDC_PAPER_PITCH_OFFSET, IDC_PAPER_PITCH_OFFSET_SPIN, -40, 99, kPlain},
     &PrivateDevMode::nPitchOffset,
     &PaperOffsets::pitch},
};
// The template has no cutter field and the record no cutter offset; the help text has a range.
constexpr SizeLimit kCutterRange = {-99, 99};

// Returns null for a control that is not an offset field.
constexpr const SpinRangeRow* FindOffset(int edit) {
  for (const SpinRangeRow& row : SpinRangeTable) {
    if (row.field.edit == edit) return &row;
  }
  return nullptr;
}

constexpr HelpRow OffsetHelp(int edit, int text) {
  const NumericField& field = FindOffset(edit)->field;
  return Ranged(edit, text, kHelpDotRange, field.minimum, field.maximum);
}
constexpr HelpRow kHelp[] = {
    Plain(IDC_PAPER_LIST, IDS_HELP_PAPER_LIST),
    Plain(IDC_PAPER_PORTRAIT, IDS_HELP_PAPER_PORTRAIT),
    Plain(IDC_PAPER_LANDSCAPE, IDS_HELP_PAPER_LANDSCAPE),
    Plain(IDC_PAPER_FLIP, IDS_HELP_PAPER_FLIP),
    OffsetHelp(IDC_PAPER_VERT_BASE, IDS_HELP_PAPER_VERT_BASE),
    OffsetHelp(IDC_PAPER_HORZ_BASE, IDS_HELP_PAPER_HORZ_BASE),
    Ranged(IDC_PAPER_CUT_OFFSET, IDS_HELP_PAPER_CUT_OFFSET, kHelpDotRange, kCutterRange.minimum,
           kCutterRange.maximum),
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

// ---- Filling ----

void ShowPicture(HWND page, PaperPageState& state, PaperPicture picture) {
  state.picture = picture;
  InvalidateRect(GetDlgItem(page, IDC_PAPER_PICTURE), nullptr, FALSE);
}

void ShowSelectedPaper(HWND page, DriverUiData& session) {
  session.paper.preview = PaperOfEntry(*session.settings, session.paper.selected);
  ShowPicture(page, session.paper, kWholeLabelPicture);
}

void ListPapers(HWND page, DriverUiData& session, int selected) {
  const DriverSettingsBlock& block = *session.settings;
  SendDlgItemMessageW(page, IDC_PAPER_LIST, CB_RESETCONTENT, 0, 0);
  for (int entry = 0; entry < PaperEntryCount(block); ++entry) {
    WCHAR name[kPaperNameLength];
    PaperEntryName(block, entry, name, std::size(name));
    SendDlgItemMessageW(page, IDC_PAPER_LIST, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name));
  }
  SendDlgItemMessageW(page, IDC_PAPER_LIST, CB_SETCURSEL, static_cast<WPARAM>(selected), 0);
  session.paper.selected = selected;
}

void ChooseOrientationPicture(DriverUiData& session) {
  const PrivateDevMode& settings = session.settings->Record.Private;
  const bool landscape = settings.Orient != DMORIENT_PORTRAIT;
  const bool rotated = settings.nFlip != 0;
  session.paper.orientationPicture =
      rotated ? (landscape ? IDB_LANDSCAPE_ROTATED : IDB_PORTRAIT_ROTATED)
              : (landscape ? IDB_LANDSCAPE : IDB_PORTRAIT);
}

void SetTypedOffset(DriverUiData& session, const SpinRangeRow& row, int value) {
  const NumericField& field = row.field;
  session.paper.offsets.*row.typed =
      static_cast<int16_t>(std::clamp(value, field.minimum, field.maximum));
}

void FillOffset(HWND page, DriverUiData& session, const SpinRangeRow& row, bool attach) {
  const NumericField& field = row.field;
  const int stored = session.settings->Record.Private.*row.setting;
  InitField({page, {&field, 1}}, field.edit, field.minimum, field.maximum, stored, kPlain, attach);
  SetTypedOffset(session, row, stored);
}

void ShowCapacity(HWND page) {
  WCHAR format[kMessageLength];
  LoadMessageText(IDS_PAPER_LIMIT, format, std::size(format));
  WCHAR text[kMessageLength + kMeasureTextLength];
  wsprintfW(text, format, kPaperCapacity);
  SetDlgItemTextW(page, IDC_PAPER_LIMIT_TEXT, text);
}

void EnableControls(HWND page, const DriverUiData& session) {
  const auto enable = [page](int control, bool on) { EnableWindow(GetDlgItem(page, control), on); };
  const uint16_t mode = session.settings->Printer.Mecha;
  enable(IDC_PAPER_PEEL_OFFSET, mode == kPeelMode);
  enable(IDC_PAPER_TEAR_OFFSET, mode == kTearOffMode);
  enable(IDC_PAPER_PITCH_OFFSET, true);
  enable(IDC_PAPER_CUT_OFFSET, false);

  const bool tableEditable = session.mode == kUserDefaultSession;
  for (const int button : {IDC_PAPER_REGISTER, IDC_PAPER_EDIT, IDC_PAPER_DELETE}) {
    enable(button, tableEditable);
  }
  LockControls(page, IDD_PAPER, session.permission != FALSE);
  // The up-down of a disabled edit would still change the value.
  for (const SpinRangeRow& row : SpinRangeTable) {
    enable(row.field.spin, IsWindowEnabled(GetDlgItem(page, row.field.edit)) != FALSE);
  }
}

// Fills every control from the working block; creating attaches the up-downs to their edits.
void FillPage(HWND page, DriverUiData& session, bool creating) {
  const PrivateDevMode& settings = session.settings->Record.Private;
  session.paper.filling = true;
  SetDlgItemTextW(page, IDC_HELP_TEXT, kFirstHelpCursor);

  ListPapers(page, session, PaperEntryOrFree(*session.settings, settings.PaperID));
  CheckRadioButton(page, IDC_PAPER_PORTRAIT, IDC_PAPER_LANDSCAPE,
                   settings.Orient == DMORIENT_PORTRAIT ? IDC_PAPER_PORTRAIT : IDC_PAPER_LANDSCAPE);
  CheckDlgButton(page, IDC_PAPER_FLIP, settings.nFlip != 0 ? BST_CHECKED : BST_UNCHECKED);
  for (const SpinRangeRow& row : SpinRangeTable) FillOffset(page, session, row, creating);
  CheckDlgButton(page, IDC_PAPER_POSITION, settings.Position != 0 ? BST_CHECKED : BST_UNCHECKED);
  ChooseOrientationPicture(session);
  ShowSelectedPaper(page, session);
  ShowCapacity(page);
  EnableControls(page, session);
  session.paper.filling = false;
}

void Create(HWND page, DriverUiData& session) {
  session.paper.preview = {};
  session.paper.dataReference = false;
  CheckDlgButton(page, IDC_PAPER_REFERENCE, BST_UNCHECKED);
  EnableWindow(GetDlgItem(page, IDC_PAPER_PICTURE), FALSE);
  SetDlgItemTextW(page, IDC_PAPER_WHOLE_LABEL, TEXT("全体図表示"));
  FillPage(page, session, true);
}

void Activate(HWND page, DriverUiData& session) { FillPage(page, session, false); }

// ---- Drawing ----

void DrawMarkers(HDC dc, const DriverUiData& session, const PreviewGeometry& geometry) {
  const DriverSettingsBlock& block = *session.settings;
  const bool peel = block.Printer.Mecha == kPeelMode;
  const bool eyeMarkSensor = block.Record.Private.nSensor == kEyeMarkSensor;
  for (const int field : {IDC_PAPER_VERT_BASE, IDC_PAPER_PITCH_OFFSET,
                          peel ? IDC_PAPER_PEEL_OFFSET : IDC_PAPER_TEAR_OFFSET}) {
    MarkerLine lines[kMaxMarkerLines];
    const int count = LayOutMarker(geometry, field, session.paper.offsets, eyeMarkSensor, lines);
    DrawMarkerLines(dc, {lines, static_cast<size_t>(count)});
  }
}

void DrawPictureBox(DriverUiData& session, const DRAWITEMSTRUCT& item) {
  const PaperPageState& state = session.paper;
  if (state.picture == kFieldPicture) {
    DrawPicture(item.hDC, item.rcItem, state.fieldPicture);
    return;
  }
  const PreviewGeometry geometry = DrawWholeLabel(item.hDC, item.rcItem, state.preview,
                                                  PreviewPlace::kPage, state.orientationPicture);
  if (state.picture == kMarkedLabelPicture && geometry.scale > 0) {
    DrawMarkers(item.hDC, session, geometry);
  }
}

bool DrawItem(DriverUiData& session, const DRAWITEMSTRUCT& item) {
  switch (item.CtlID) {
    case IDC_PAPER_FEED_PICTURE:
      DrawPicture(item.hDC, item.rcItem, IDB_FEED_DIRECTION);
      return true;
    case IDC_PAPER_FEED_TEXT:
      DrawVerticalText(item.hDC, item.rcItem, kFeedDirection);
      return true;
    case IDC_PAPER_PICTURE:
      DrawPictureBox(session, item);
      return true;
    default:
      return false;
  }
}

// ---- The user's actions ----

void OnPaperSelected(HWND page, DriverUiData& session) {
  const LRESULT entry = SendDlgItemMessageW(page, IDC_PAPER_LIST, CB_GETCURSEL, 0, 0);
  if (entry == CB_ERR) return;
  session.paper.selected = static_cast<int>(entry);
  session.settings->Record.Private.PaperID =
      PaperEntryId(*session.settings, session.paper.selected);
  ShowSelectedPaper(page, session);
  MarkPageChanged(page);
}

void ReadOrientation(HWND page, PrivateDevMode& settings) {
  const bool portrait = IsDlgButtonChecked(page, IDC_PAPER_PORTRAIT) == BST_CHECKED;
  settings.Orient = portrait ? DMORIENT_PORTRAIT : DMORIENT_LANDSCAPE;
  settings.nFlip = IsDlgButtonChecked(page, IDC_PAPER_FLIP) == BST_CHECKED;
}

void OnOrientationClicked(HWND page, DriverUiData& session) {
  ReadOrientation(page, session.settings->Record.Private);
  ChooseOrientationPicture(session);
  ShowPicture(page, session.paper, kWholeLabelPicture);
  MarkPageChanged(page);
}

// Accepts the stored value, every number of the field's range and, while the user is still typing,
// a text without a number, which stands for the stored value. Replaces a number outside the range
// by the stored value.
void OnOffsetTyped(HWND page, DriverUiData& session, const SpinRangeRow& row) {
  if (session.paper.filling) return;
  const NumericField& field = row.field;
  const TypedNumber typed = OnPlainTyped({page, {&field, 1}}, field.edit);
  // The replacement of a rejected text has sent a notification of its own.
  if (typed.isRejected) return;
  const int stored = session.settings->Record.Private.*row.setting;
  const int value = typed.isNumber ? typed.value : stored;
  if (value != stored && (value < field.minimum || value > field.maximum)) {
    session.paper.filling = true;
    FillOffset(page, session, row, false);
    session.paper.filling = false;
    return;
  }
  SetTypedOffset(session, row, value);
  if (value != stored) MarkPageChanged(page);
}

void OnOffsetNotified(HWND page, DriverUiData& session, const SpinRangeRow& row, int notification) {
  PaperPageState& state = session.paper;
  switch (notification) {
    case EN_SETFOCUS:
      state.fieldPicture = FieldSketch(IDD_PAPER, row.field.edit);
      if (state.fieldPicture == IDB_SKETCH_PITCH &&
          session.settings->Record.Private.nSensor == kEyeMarkSensor) {
        state.fieldPicture = IDB_SKETCH_PITCH_EYE_MARK;
      }
      ShowPicture(page, state, kFieldPicture);
      break;
    case EN_KILLFOCUS:
      ShowPicture(page, state, kWholeLabelPicture);
      break;
    case EN_CHANGE:
      OnOffsetTyped(page, session, row);
      break;
    default:
      break;
  }
}

void RunRegistration(HWND page, DriverUiData& session, PaperDialogMode mode, int entry) {
  DriverSettingsBlock& block = *session.settings;
  int16_t& paperId = block.Record.Private.PaperID;
  // After a deletion PaperID may name no paper; a paper appended now would get that id.
  paperId = PaperEntryId(block, session.paper.selected);
  if (RunPaperDialog(page, block, session.permission != FALSE, mode, entry)) {
    ListPapers(page, session, PaperEntryOrFree(block, paperId));
    MarkPageChanged(page);
  }
  ShowSelectedPaper(page, session);
  SetDlgItemTextW(page, IDC_HELP_TEXT, kFirstHelpCursor);
}

void RegisterPaper(HWND page, DriverUiData& session) {
  if (PaperCount(*session.settings) >= kPaperCapacity) {
    ShowMessage(page, IDS_PAPER_TABLE_FULL, MB_ICONEXCLAMATION);
    return;
  }
  const PaperPageState& state = session.paper;
  RunRegistration(page, session, kNewPaper, state.dataReference ? state.selected : -1);
}

void EditSelectedPaper(HWND page, DriverUiData& session) {
  const int entry = session.paper.selected;
  const bool registered = entry < PaperCount(*session.settings);
  RunRegistration(page, session, registered ? kEditPaper : kEditFreePaper, entry);
}

bool ConfirmDeletion(HWND page, const DriverUiData& session, int entry) {
  WCHAR question[kDeleteQuestionLength];
  FormatDeleteQuestion(*session.settings, entry, question);
  WCHAR caption[kMessageLength];
  LoadMessageText(IDS_PAPER_DELETE_CAPTION, caption, std::size(caption));
  return MessageBoxW(page, question, caption, MB_OKCANCEL | MB_ICONEXCLAMATION) == IDOK;
}

void DeleteSelectedPaper(HWND page, DriverUiData& session) {
  const int entry = session.paper.selected;
  const PaperCheckResult result = CheckPaperDeletion(*session.settings, entry);
  if (!result.Passed()) {
    ShowMessage(page, result.message, MB_ICONEXCLAMATION);
    return;
  }
  if (!ConfirmDeletion(page, session, entry) || !DeletePaper(*session.settings, entry)) return;
  // The same entry is now the next paper, or the free-size paper after the last one.
  ListPapers(page, session, entry);
  ShowSelectedPaper(page, session);
  MarkPageChanged(page);
}

void OnClicked(HWND page, DriverUiData& session, int control) {
  switch (control) {
    case IDC_PAPER_PORTRAIT:
    case IDC_PAPER_LANDSCAPE:
    case IDC_PAPER_FLIP:
      return OnOrientationClicked(page, session);
    case IDC_PAPER_REFERENCE:
      session.paper.dataReference = IsDlgButtonChecked(page, IDC_PAPER_REFERENCE) == BST_CHECKED;
      return;
    case IDC_PAPER_POSITION:
      MarkPageChanged(page);
      return;
    case IDC_PAPER_WHOLE_LABEL:
      return ShowPicture(page, session.paper, kMarkedLabelPicture);
    case IDC_PAPER_REGISTER:
      return RegisterPaper(page, session);
    case IDC_PAPER_EDIT:
      return EditSelectedPaper(page, session);
    case IDC_PAPER_FREE_EDIT:
      return RunRegistration(page, session, kEditFreePaper, -1);
    case IDC_PAPER_DELETE:
      return DeleteSelectedPaper(page, session);
    default:
      return;
  }
}

void Command(HWND page, DriverUiData& session, int control, int notification) {
  const auto showHelp = [&] {
    ShowHelp(page, kHelp, control, IDC_HELP_TEXT, kPlain, session.settings->Printer.HeadDensity);
  };
  if (const SpinRangeRow* row = FindOffset(control)) {
    if (notification == EN_SETFOCUS) showHelp();
    OnOffsetNotified(page, session, *row, notification);
  } else if (control == IDC_PAPER_LIST) {
    if (notification == CBN_SETFOCUS) showHelp();
    const ListAction action = OnListNotified(page, control, notification, session.paper.list);
    if (action == ListAction::kChoose || action == ListAction::kRestore) {
      OnPaperSelected(page, session);
    }
  } else if (notification == BN_CLICKED) {
    showHelp();
    OnClicked(page, session, control);
  }
}

INT_PTR Other(HWND page, DriverUiData& session, UINT message, WPARAM, LPARAM lParam) {
  if (message == WM_DRAWITEM) {
    return DrawItem(session, *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
  }
  if (message == WM_NOTIFY && reinterpret_cast<const NMHDR*>(lParam)->code == UDN_DELTAPOS) {
    MarkPageChanged(page);
  }
  return FALSE;
}

// ---- Storing ----

void Leave(HWND page, DriverUiData& session) {
  PrivateDevMode& settings = session.settings->Record.Private;
  settings.PaperID = PaperEntryId(*session.settings, session.paper.selected);
  ReadOrientation(page, settings);
  for (const SpinRangeRow& row : SpinRangeTable) {
    settings.*row.setting = session.paper.offsets.*row.typed;
  }
  settings.Position = IsDlgButtonChecked(page, IDC_PAPER_POSITION) == BST_CHECKED;
}

constexpr PageHandlers kPage = {.create = Create,
                                .activate = Activate,
                                .leave = Leave,
                                .command = Command,
                                .other = Other,
                                .apply = SaveFontsThenConfirm};

}  // namespace

INT_PTR CALLBACK PaperPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
  return HandlePageMessage(kPage, page, message, wParam, lParam);
}

}  // namespace kestrel
