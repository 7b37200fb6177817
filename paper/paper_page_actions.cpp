#include <iterator>

#include "paper/fields/help_text.h"
#include "paper/paper_checks.h"
#include "paper/paper_page_data.h"
#include "paper/paper_table.h"
#include "paper/preview_draw.h"
#include "paper/register_dialog.h"
#include "sheets/messages.h"
#include "sheets/page_services.h"

namespace kestrel {
namespace {

// Runs the registration dialog on an entry and shows what came of it.
void RunRegistration(HWND page, DriverUiData& session, PaperDialogMode mode, int entry) {
  PaperPageState& state = session.paper;
  DriverSettingsBlock& block = *session.settings;
  // After a deletion PaperID may name no paper, and a new one would inherit it.
  block.Record.Private.PaperID = PaperEntryId(block, state.selected);
  state.mode = mode;
  state.dialog.edited = entry;
  if (RunPaperDialog(page, session)) {
    ListPapers(page, session, PaperEntryOrFree(block, block.Record.Private.PaperID));
    MarkPageChanged(page);
  }
  ShowSelectedPaper(page, session);
  SetDlgItemTextW(page, IDC_HELP_TEXT, kFirstHelpCursor);
}

bool ConfirmDeletion(HWND page, const DriverUiData& session, int entry) {
  WCHAR question[kDeleteQuestionLength];
  DeleteQuestion(*session.settings, entry, question);
  WCHAR caption[kMessageLength];
  LoadMessageText(IDS_PAPER_DELETE_CAPTION, caption, std::size(caption));
  return MessageBoxW(page, question, caption, MB_OKCANCEL | MB_ICONEXCLAMATION) == IDOK;
}

void OnOffsetTyped(HWND page, DriverUiData& session, const OffsetField& field) {
  PaperPageState& state = session.paper;
  if (state.filling || !OnPlainTyped(PaperFields(page), field.edit)) return;
  const int stored = session.settings->Record.Private.*field.setting;
  const int value = ReadWholeNumber(page, field.edit, stored);
  if (value == stored) return;
  const SizeLimit range = OffsetRange(field.edit);
  if (value >= range.minimum && value <= range.maximum) {
    MarkPageChanged(page);
    return;
  }
  state.filling = true;
  FillOffset(page, session, field, false);
  state.filling = false;
}

}  // namespace

void RegisterPaper(HWND page, DriverUiData& session) {
  const DriverSettingsBlock& block = *session.settings;
  session.paper.mode = kNewPaper;
  if (PaperCount(block) >= kPaperCapacity) {
    ShowMessage(page, IDS_PAPER_TABLE_FULL, MB_ICONEXCLAMATION);
    return;
  }
  RunRegistration(page, session, kNewPaper, -1);
}

void EditPaper(HWND page, DriverUiData& session) {
  const int entry = session.paper.selected;
  const bool registered = entry < PaperCount(*session.settings);
  RunRegistration(page, session, registered ? kEditPaper : kEditFreePaper, entry);
}

void EditFreePaper(HWND page, DriverUiData& session) {
  RunRegistration(page, session, kEditFreePaper, PaperCount(*session.settings));
}

void DeleteSelectedPaper(HWND page, DriverUiData& session) {
  const int entry = session.paper.selected;
  const PaperVerdict verdict = CheckPaperDeletion(*session.settings, entry);
  if (!verdict.Passed()) {
    ShowMessage(page, verdict.message, MB_ICONEXCLAMATION);
    return;
  }
  if (!ConfirmDeletion(page, session, entry) || !DeletePaper(*session.settings, entry)) return;
  // The paper that moved up is selected now, or the free-size paper behind the last one.
  ListPapers(page, session, entry);
  ShowSelectedPaper(page, session);
  MarkPageChanged(page);
}

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

void OnOffsetNotified(HWND page, DriverUiData& session, const OffsetField& field,
                      int notification) {
  PaperPageState& state = session.paper;
  switch (notification) {
    case EN_SETFOCUS:
      state.fieldPicture = FieldSketch(IDD_PAPER, field.edit);
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
      OnOffsetTyped(page, session, field);
      break;
    default:
      break;
  }
}

}  // namespace kestrel
