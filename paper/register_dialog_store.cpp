#include <iterator>

#include "driver/text.h"
#include "paper/fields/controls.h"
#include "paper/fields/option_table.h"
#include "paper/paper_checks.h"
#include "paper/paper_options.h"
#include "paper/paper_table.h"
#include "paper/register_dialog_data.h"

namespace kestrel {
namespace {

int ControlOf(PaperInput input) {
  switch (input) {
    case PaperInput::kWidth:
      return IDC_PAPER_REGISTER_WIDTH;
    case PaperInput::kLength:
      return IDC_PAPER_REGISTER_LENGTH;
    case PaperInput::kEyeMark:
      return IDC_PAPER_REGISTER_EYE_MARK;
    case PaperInput::kGap:
      return IDC_PAPER_REGISTER_GAP;
    case PaperInput::kName:
      break;
  }
  return IDC_PAPER_REGISTER_NAME;
}

// Shows a refusal and moves the focus to what it is about. True when there is nothing to refuse.
bool Accept(HWND dialog, const PaperVerdict& verdict, int unit) {
  if (verdict.Passed()) return true;
  // The messages without a limit have no place for it and leave it out.
  ShowBound(dialog, verdict.message, verdict.bound, unit);
  MoveFocus(dialog, ControlOf(verdict.input));
  return false;
}

PaperSizes TypedSizes(HWND dialog, int unit) {
  const auto read = [&](int edit) { return ReadField(RegisterFields(dialog), edit, unit); };
  // The template has no eye-mark field, which then reads as 0.
  return {
      .width = read(IDC_PAPER_REGISTER_WIDTH),
      .length = read(IDC_PAPER_REGISTER_LENGTH),
      .eyeMark = read(IDC_PAPER_REGISTER_EYE_MARK),
      .gap = read(IDC_PAPER_REGISTER_GAP),
  };
}

bool ReadName(HWND dialog, DriverUiData& session) {
  PaperDialogState& state = session.paper.dialog;
  if (session.paper.mode == kEditFreePaper) return true;
  WCHAR name[kPaperNameLength] = {};
  GetDlgItemTextW(dialog, IDC_PAPER_REGISTER_NAME, name, static_cast<int>(std::size(name)));
  const int edited = session.paper.mode == kEditPaper ? state.edited : -1;
  if (!Accept(dialog, CheckPaperName(*session.settings, name, edited), state.work.Unit)) {
    return false;
  }
  CopyText(state.work.PaperName, name);
  return true;
}

}  // namespace

bool ReadPaper(HWND dialog, DriverUiData& session) {
  PaperDialogState& state = session.paper.dialog;
  PaperInfo& paper = state.work;
  const int unit = paper.Unit;
  const PaperSizes sizes = TypedSizes(dialog, unit);
  if (!Accept(dialog, CheckPaperSizes(sizes, state.limits, unit), unit)) return false;
  const auto read = [&](int list, const OptionTable& table) {
    return static_cast<uint16_t>(SelectedOption(dialog, list, table));
  };
  paper.PaperKind = read(IDC_PAPER_REGISTER_GRADE, PaperGradeOptions());
  paper.Thickness = read(IDC_PAPER_REGISTER_THICKNESS, PaperDarknessOptions());
  paper.LabelWidth = static_cast<int16_t>(sizes.width);
  paper.LabelHeight = static_cast<int16_t>(sizes.length);
  paper.GapSize = static_cast<int16_t>(sizes.gap);
  paper.Unit =
      IsDlgButtonChecked(dialog, IDC_PAPER_REGISTER_MM) == BST_CHECKED ? kMillimetre : kInch;
  DerivePrintableArea(paper);
  paper.Yoshi = IsDlgButtonChecked(dialog, IDC_PAPER_REGISTER_YOSHI) == BST_CHECKED;
  return Accept(dialog, CheckPrintableArea(paper), unit);
}

bool StorePaper(HWND dialog, DriverUiData& session) {
  if (!ReadName(dialog, session) || !ReadPaper(dialog, session)) return false;
  DriverSettingsBlock& block = *session.settings;
  const PaperDialogState& state = session.paper.dialog;
  switch (session.paper.mode) {
    case kNewPaper:
      return AppendPaper(block, state.work);
    case kEditPaper:
      ReplacePaper(block, state.edited, state.work);
      return true;
    case kEditFreePaper:
      block.Record.Private.FreePaper = state.work;
      return true;
  }
  return false;
}

}  // namespace kestrel
