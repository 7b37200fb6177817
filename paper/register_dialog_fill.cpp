#include <iterator>

#include "driver/text.h"
#include "paper/fields/controls.h"
#include "paper/fields/option_table.h"
#include "paper/paper_limits.h"
#include "paper/paper_options.h"
#include "paper/paper_table.h"
#include "paper/reference_dialog.h"
#include "paper/register_dialog_data.h"
#include "sheets/messages.h"
#include "sheets/own_dialog.h"

namespace kestrel {
namespace {

int Density(const DriverUiData& session) { return session.settings->Printer.HeadDensity; }

// The dialog edits millimetres and inches only.
void TakePaper(DriverUiData& session, const PaperInfo& paper) {
  PaperDialogState& state = session.paper.dialog;
  state.work = paper;
  if (state.work.Unit != kInch) ConvertPaper(state.work, kMillimetre, Density(session));
  state.limits = BuildPaperLimits(Density(session), state.work.Unit);
}

void TakeEditedPaper(DriverUiData& session) {
  PaperDialogState& state = session.paper.dialog;
  const DriverSettingsBlock& block = *session.settings;
  switch (session.paper.mode) {
    case kEditPaper:
      TakePaper(session, PaperOfEntry(block, state.edited));
      break;
    case kEditFreePaper:
      TakePaper(session, block.Record.Private.FreePaper);
      CopyText(state.work.PaperName, kFreePaperName);
      break;
    case kNewPaper:
      TakePaper(session, session.paper.dataReference ? PaperOfEntry(block, session.paper.selected)
                                                     : NewPaper());
      CopyText(state.work.PaperName, TEXT(""));
      break;
  }
}

void ShowCaption(HWND dialog, PaperDialogMode mode) {
  if (mode == kNewPaper) return;  // the template's
  WCHAR caption[kMessageLength];
  LoadMessageText(mode == kEditPaper ? IDS_PAPER_EDIT_CAPTION : IDS_FREE_SIZE_CAPTION, caption,
                  std::size(caption));
  SetWindowTextW(dialog, caption);
}

// Everything that the working copy gives but the name and the entries of the lists.
void FillFromPaper(HWND dialog, const DriverUiData& session, bool attach) {
  const PaperDialogState& state = session.paper.dialog;
  const PaperInfo& paper = state.work;
  for (const SizeField& field : kSizeFields) {
    const SizeLimit limit = state.limits.*field.limit;
    InitField(RegisterFields(dialog), field.edit, limit.minimum, limit.maximum, paper.*field.size,
              paper.Unit, attach);
  }
  EnableDarknessList(dialog, session);
  CheckRadioButton(dialog, IDC_PAPER_REGISTER_MM, IDC_PAPER_REGISTER_INCH,
                   paper.Unit == kInch ? IDC_PAPER_REGISTER_INCH : IDC_PAPER_REGISTER_MM);
  CheckDlgButton(dialog, IDC_PAPER_REGISTER_YOSHI, paper.Yoshi != 0 ? BST_CHECKED : BST_UNCHECKED);
}

}  // namespace

void EnableDarknessList(HWND dialog, const DriverUiData& session) {
  const bool offered =
      SelectedOption(dialog, IDC_PAPER_REGISTER_GRADE, PaperGradeOptions()) != kFollowPrinter;
  EnableWindow(GetDlgItem(dialog, IDC_PAPER_REGISTER_THICKNESS),
               offered && session.permission != FALSE);
}

void RepaintPicture(HWND dialog) {
  InvalidateRect(GetDlgItem(dialog, IDC_PAPER_REGISTER_PICTURE), nullptr, FALSE);
}

void OpenPaperDialog(HWND dialog, DriverUiData& session) {
  PaperDialogState& state = session.paper.dialog;
  const PaperDialogMode mode = session.paper.mode;
  TakeEditedPaper(session);
  state.fieldPicture = IDB_BACKGROUND;
  state.wholeLabel = false;

  ShowCaption(dialog, mode);
  if (mode == kEditFreePaper) {
    EnableWindow(GetDlgItem(dialog, IDC_PAPER_REGISTER_NAME), FALSE);
  } else {
    HideControl(dialog, IDC_PAPER_REGISTER_REFERENCE);
  }
  SendDlgItemMessageW(dialog, IDC_PAPER_REGISTER_NAME, EM_LIMITTEXT, kPaperNameLength - 1, 0);
  WCHAR name[kPaperNameLength];
  CopyField(name, std::size(name), state.work.PaperName, kPaperNameLength);
  SetDlgItemTextW(dialog, IDC_PAPER_REGISTER_NAME, name);
  FillOptionList(dialog, IDC_PAPER_REGISTER_GRADE, PaperGradeOptions(), state.work.PaperKind);
  FillOptionList(dialog, IDC_PAPER_REGISTER_THICKNESS, PaperDarknessOptions(),
                 state.work.Thickness);
  FillFromPaper(dialog, session, true);
  LockControls(dialog, IDD_PAPER_REGISTER, session.permission != FALSE);
}

void OnUnitClicked(HWND dialog, DriverUiData& session) {
  PaperDialogState& state = session.paper.dialog;
  const int before = state.work.Unit;
  const uint16_t unit =
      IsDlgButtonChecked(dialog, IDC_PAPER_REGISTER_MM) == BST_CHECKED ? kMillimetre : kInch;
  if (unit == before) return;
  ConvertPaper(state.work, unit, Density(session));
  ConvertPaperLimits(state.limits, before, unit);
  const QuietDialog quiet(dialog);
  for (const SizeField& field : kSizeFields) {
    ChangeFieldUnit(RegisterFields(dialog), field.edit, before, unit, Density(session));
  }
}

void CopyReferencePaper(HWND dialog, DriverUiData& session) {
  PaperDialogState& state = session.paper.dialog;
  const int choice = ChooseReferencePaper(dialog, *session.settings);
  if (choice < 0) return;
  TakePaper(session, PaperOfEntry(*session.settings, choice));
  const QuietDialog quiet(dialog);
  SelectOption(dialog, IDC_PAPER_REGISTER_GRADE, PaperGradeOptions(), state.work.PaperKind);
  SelectOption(dialog, IDC_PAPER_REGISTER_THICKNESS, PaperDarknessOptions(), state.work.Thickness);
  FillFromPaper(dialog, session, false);
  RepaintPicture(dialog);
}

}  // namespace kestrel
