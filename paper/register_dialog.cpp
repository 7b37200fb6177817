// The parts follow in this order: fields and help, opening and filling, drawing, reading and
// storing, the user's actions.
#include "paper/register_dialog.h"

#include <windows.h>
#include <commctrl.h>

#include <iterator>

#include "driver/text.h"
#include "paper/fields/controls.h"
#include "paper/fields/help_text.h"
#include "paper/fields/measured_value.h"
#include "paper/fields/numeric_field.h"
#include "paper/fields/option_table.h"
#include "paper/paper_checks.h"
#include "paper/paper_limits.h"
#include "paper/paper_options.h"
#include "paper/paper_table.h"
#include "paper/preview_draw.h"
#include "paper/reference_dialog.h"
#include "resources/resource.h"
#include "sheets/dialog_handlers.h"
#include "sheets/messages.h"

namespace kestrel {
namespace {

// ---- The dialog's data, fields and help ----

struct RegisterDialog {
  DriverSettingsBlock& block;
  bool permission;
  PaperDialogMode mode;
  int entry;  // of the edited paper, or of the one whose values a new paper starts with; -1: none

  PaperInfo work = {};      // the edited copy
  PaperLimits limits = {};  // in the unit of work
  int fieldPicture = IDB_BACKGROUND;
  bool wholeLabel = false;  // the picture box shows the whole label in place of fieldPicture

  int dpi() const { return block.Printer.HeadDensity; }
};

constexpr NumericField Measured(int edit, int spin, SizeLimit range) {
  return {edit, spin, range.minimum, range.maximum, kMillimetre};
}
constexpr NumericField kFields[] = {
    Measured(IDC_PAPER_REGISTER_WIDTH, IDC_PAPER_REGISTER_WIDTH_SPIN, kLabelWidths),
    Measured(IDC_PAPER_REGISTER_LENGTH, IDC_PAPER_REGISTER_LENGTH_SPIN, kLabelLengths),
    Measured(IDC_PAPER_REGISTER_GAP, IDC_PAPER_REGISTER_GAP_SPIN, kGaps),
    Measured(IDC_PAPER_REGISTER_PRINTABLE_LEFT, IDC_PAPER_REGISTER_PRINTABLE_LEFT_SPIN,
             {0, kLabelWidths.maximum}),
    Measured(IDC_PAPER_REGISTER_PRINTABLE_TOP, IDC_PAPER_REGISTER_PRINTABLE_TOP_SPIN,
             {0, kLabelLengths.maximum}),
    Measured(IDC_PAPER_REGISTER_PRINTABLE_WIDTH, IDC_PAPER_REGISTER_PRINTABLE_WIDTH_SPIN,
             kPrintableWidths),
    Measured(IDC_PAPER_REGISTER_PRINTABLE_HEIGHT, IDC_PAPER_REGISTER_PRINTABLE_HEIGHT_SPIN,
             kPrintableHeights),
};
FieldDialog Fields(HWND window) { return {window, kFields}; }

// The number that a field edits, and its limit.
struct SizeField {
  int edit;
  int16_t PaperInfo::*size;
  SizeLimit PaperLimits::*limit;
};
constexpr SizeField kSizeFields[] = {
    {IDC_PAPER_REGISTER_WIDTH, &PaperInfo::LabelWidth, &PaperLimits::width},
    {IDC_PAPER_REGISTER_LENGTH, &PaperInfo::LabelHeight, &PaperLimits::length},
    {IDC_PAPER_REGISTER_GAP, &PaperInfo::GapSize, &PaperLimits::gap},
    {IDC_PAPER_REGISTER_PRINTABLE_LEFT, &PaperInfo::PrintableLeft, &PaperLimits::printableLeft},
    {IDC_PAPER_REGISTER_PRINTABLE_TOP, &PaperInfo::PrintableTop, &PaperLimits::printableTop},
    {IDC_PAPER_REGISTER_PRINTABLE_WIDTH, &PaperInfo::PrintableWidth, &PaperLimits::printableWidth},
    {IDC_PAPER_REGISTER_PRINTABLE_HEIGHT, &PaperInfo::PrintableHeight,
     &PaperLimits::printableHeight},
};

bool IsSizeField(int control) {
  for (const SizeField& field : kSizeFields) {
    if (field.edit == control) return true;
  }
  return false;
}

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

void ShowControlHelp(HWND window, const RegisterDialog& dialog, int control) {
  ShowHelp(window, kHelp, control, IDC_HELP_TEXT, dialog.work.Unit, dialog.dpi());
}

// ---- Opening and filling ----

// Copies a paper into the working copy, in millimetres unless it is in inches: the dialog edits no
// other unit.
void CopyToWork(RegisterDialog& dialog, const PaperInfo& paper) {
  dialog.work = paper;
  if (dialog.work.Unit != kInch) ConvertPaper(dialog.work, kMillimetre, dialog.dpi());
  dialog.limits = BuildPaperLimits(dialog.dpi(), dialog.work.Unit);
}

void LoadEditedPaper(RegisterDialog& dialog) {
  switch (dialog.mode) {
    case kEditPaper:
      CopyToWork(dialog, PaperOfEntry(dialog.block, dialog.entry));
      break;
    case kEditFreePaper:
      CopyToWork(dialog, dialog.block.Record.Private.FreePaper);
      CopyText(dialog.work.PaperName, kFreePaperName);
      break;
    case kNewPaper:
      CopyToWork(dialog, dialog.entry >= 0 ? PaperOfEntry(dialog.block, dialog.entry) : NewPaper());
      CopyText(dialog.work.PaperName, TEXT(""));
      break;
  }
}

void ShowCaption(HWND window, PaperDialogMode mode) {
  if (mode == kNewPaper) return;  // the template has this caption
  WCHAR caption[kMessageLength];
  LoadMessageText(mode == kEditPaper ? IDS_PAPER_EDIT_CAPTION : IDS_FREE_SIZE_CAPTION, caption,
                  std::size(caption));
  SetWindowTextW(window, caption);
}

// The grade "as the printer is set" leaves no darkness level to choose.
void EnableDarknessList(HWND window, const RegisterDialog& dialog) {
  const bool hasLevel =
      SelectedOption(window, IDC_PAPER_REGISTER_GRADE, PaperGradeOptions()) != kFollowPrinter;
  EnableWindow(GetDlgItem(window, IDC_PAPER_REGISTER_THICKNESS), hasLevel && dialog.permission);
}

// Fills the controls from the working copy, except the name and the entries of the lists.
void FillFromWork(HWND window, const RegisterDialog& dialog, bool attach) {
  const PaperInfo& paper = dialog.work;
  for (const SizeField& field : kSizeFields) {
    const SizeLimit limit = dialog.limits.*field.limit;
    InitField(Fields(window), field.edit, limit.minimum, limit.maximum, paper.*field.size,
              paper.Unit, attach);
  }
  EnableDarknessList(window, dialog);
  CheckRadioButton(window, IDC_PAPER_REGISTER_MM, IDC_PAPER_REGISTER_INCH,
                   paper.Unit == kInch ? IDC_PAPER_REGISTER_INCH : IDC_PAPER_REGISTER_MM);
  CheckDlgButton(window, IDC_PAPER_REGISTER_YOSHI, paper.Yoshi != 0 ? BST_CHECKED : BST_UNCHECKED);
}

void Open(HWND window, RegisterDialog& dialog) {
  LoadEditedPaper(dialog);
  ShowCaption(window, dialog.mode);
  if (dialog.mode == kEditFreePaper) {
    EnableWindow(GetDlgItem(window, IDC_PAPER_REGISTER_NAME), FALSE);
  } else {
    HideControl(window, IDC_PAPER_REGISTER_REFERENCE);
  }
  SendDlgItemMessageW(window, IDC_PAPER_REGISTER_NAME, EM_LIMITTEXT, kPaperNameLength - 1, 0);
  WCHAR name[kPaperNameLength];
  CopyField(name, std::size(name), dialog.work.PaperName, kPaperNameLength);
  SetDlgItemTextW(window, IDC_PAPER_REGISTER_NAME, name);
  FillOptionList(window, IDC_PAPER_REGISTER_GRADE, PaperGradeOptions(), dialog.work.PaperKind);
  FillOptionList(window, IDC_PAPER_REGISTER_THICKNESS, PaperDarknessOptions(),
                 dialog.work.Thickness);
  FillFromWork(window, dialog, true);
  LockControls(window, IDD_PAPER_REGISTER, dialog.permission);
}

// ---- Drawing ----

void RepaintPicture(HWND window) {
  InvalidateRect(GetDlgItem(window, IDC_PAPER_REGISTER_PICTURE), nullptr, FALSE);
}

bool DrawItem(HWND, RegisterDialog& dialog, const DRAWITEMSTRUCT& item) {
  switch (item.CtlID) {
    case IDC_PAPER_REGISTER_FEED_PICTURE:
      DrawPicture(item.hDC, item.rcItem, IDB_FEED_DIRECTION);
      return true;
    case IDC_PAPER_REGISTER_PICTURE:
      if (dialog.wholeLabel) {
        DrawWholeLabel(item.hDC, item.rcItem, dialog.work, PreviewPlace::kDialog, IDB_PORTRAIT);
      } else {
        DrawPicture(item.hDC, item.rcItem, dialog.fieldPicture);
      }
      return true;
    default:
      return false;
  }
}

// Draws the text of the feed direction black on white with every colour scheme of the user.
INT_PTR Other(HWND, RegisterDialog&, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message != WM_CTLCOLORSTATIC ||
      GetDlgCtrlID(reinterpret_cast<HWND>(lParam)) != IDC_PAPER_REGISTER_FEED_TEXT) {
    return FALSE;
  }
  const auto dc = reinterpret_cast<HDC>(wParam);
  SetTextColor(dc, RGB(0, 0, 0));
  SetBkColor(dc, RGB(255, 255, 255));
  return reinterpret_cast<INT_PTR>(GetStockObject(WHITE_BRUSH));
}

// ---- Reading and storing ----

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

// Returns true when the check passed; otherwise shows its message and moves the focus to the
// rejected input.
bool ReportCheck(HWND window, const PaperCheckResult& result, int unit) {
  if (result.Passed()) return true;
  // A message without a limit has no placeholder for it.
  ShowBound(window, result.message, result.bound, unit);
  MoveFocus(window, ControlOf(result.input));
  return false;
}

bool ReadName(HWND window, RegisterDialog& dialog) {
  if (dialog.mode == kEditFreePaper) return true;
  WCHAR name[kPaperNameLength] = {};
  GetDlgItemTextW(window, IDC_PAPER_REGISTER_NAME, name, static_cast<int>(std::size(name)));
  const int edited = dialog.mode == kEditPaper ? dialog.entry : -1;
  if (!ReportCheck(window, CheckPaperName(dialog.block, name, edited), dialog.work.Unit)) {
    return false;
  }
  CopyText(dialog.work.PaperName, name);
  return true;
}

PaperSizes ReadSizes(HWND window, int unit) {
  const auto read = [&](int edit) { return ReadField(Fields(window), edit, unit); };
  // The template has no eye-mark field, which then reads as 0.
  return {
      .width = read(IDC_PAPER_REGISTER_WIDTH),
      .length = read(IDC_PAPER_REGISTER_LENGTH),
      .eyeMark = read(IDC_PAPER_REGISTER_EYE_MARK),
      .gap = read(IDC_PAPER_REGISTER_GAP),
  };
}

// Checks the typed sizes, then copies everything but the name into the working copy and derives the
// printable area. Returns false after a failed check, whose message was shown.
bool ReadPaper(HWND window, RegisterDialog& dialog) {
  PaperInfo& paper = dialog.work;
  const int unit = paper.Unit;
  const PaperSizes sizes = ReadSizes(window, unit);
  if (!ReportCheck(window, CheckPaperSizes(sizes, dialog.limits, unit), unit)) return false;
  const auto selected = [&](int list, const OptionTable& table) {
    return static_cast<uint16_t>(SelectedOption(window, list, table));
  };
  paper.PaperKind = selected(IDC_PAPER_REGISTER_GRADE, PaperGradeOptions());
  paper.Thickness = selected(IDC_PAPER_REGISTER_THICKNESS, PaperDarknessOptions());
  paper.LabelWidth = static_cast<int16_t>(sizes.width);
  paper.LabelHeight = static_cast<int16_t>(sizes.length);
  paper.GapSize = static_cast<int16_t>(sizes.gap);
  paper.Unit =
      IsDlgButtonChecked(window, IDC_PAPER_REGISTER_MM) == BST_CHECKED ? kMillimetre : kInch;
  DerivePrintableArea(paper);
  paper.Yoshi = IsDlgButtonChecked(window, IDC_PAPER_REGISTER_YOSHI) == BST_CHECKED;
  return ReportCheck(window, CheckPrintableArea(paper), unit);
}

bool Accept(HWND window, RegisterDialog& dialog) {
  if (!ReadName(window, dialog) || !ReadPaper(window, dialog)) return false;
  switch (dialog.mode) {
    case kNewPaper:
      return AppendPaper(dialog.block, dialog.work);
    case kEditPaper:
      ReplacePaper(dialog.block, dialog.entry, dialog.work);
      return true;
    case kEditFreePaper:
      dialog.block.Record.Private.FreePaper = dialog.work;
      return true;
  }
  return false;
}

// ---- The user's actions ----

void OnUnitClicked(HWND window, RegisterDialog& dialog) {
  const int oldUnit = dialog.work.Unit;
  const uint16_t unit =
      IsDlgButtonChecked(window, IDC_PAPER_REGISTER_MM) == BST_CHECKED ? kMillimetre : kInch;
  if (unit == oldUnit) return;
  ConvertPaper(dialog.work, unit, dialog.dpi());
  ConvertPaperLimits(dialog.limits, oldUnit, unit);
  const SuppressCommands suppress(window);
  for (const SizeField& field : kSizeFields) {
    ChangeFieldUnit(Fields(window), field.edit, oldUnit, unit, dialog.dpi());
  }
}

// The user chooses a registered paper, whose values replace those of the dialog except the name.
void CopyReferencePaper(HWND window, RegisterDialog& dialog) {
  const int slot = ChooseReferencePaper(window, dialog.block);
  if (slot < 0) return;
  CopyToWork(dialog, PaperOfEntry(dialog.block, slot));
  const SuppressCommands suppress(window);
  SelectOption(window, IDC_PAPER_REGISTER_GRADE, PaperGradeOptions(), dialog.work.PaperKind);
  SelectOption(window, IDC_PAPER_REGISTER_THICKNESS, PaperDarknessOptions(), dialog.work.Thickness);
  FillFromWork(window, dialog, false);
  RepaintPicture(window);
}

void ShowWholeLabel(HWND window, RegisterDialog& dialog) {
  if (!ReadPaper(window, dialog)) return;
  dialog.wholeLabel = true;
  RepaintPicture(window);
}

void OnSizeNotified(HWND window, RegisterDialog& dialog, int edit, int notification) {
  switch (notification) {
    case EN_SETFOCUS:
      dialog.wholeLabel = false;
      dialog.fieldPicture = FieldSketch(IDD_PAPER_REGISTER, edit);
      RepaintPicture(window);
      ShowControlHelp(window, dialog, edit);
      break;
    case EN_CHANGE: {
      const SuppressCommands suppress(window);
      OnMeasureTyped(Fields(window), edit, dialog.work.Unit);
      break;
    }
    case EN_KILLFOCUS: {
      const SuppressCommands suppress(window);
      ReformatField(Fields(window), edit, dialog.work.Unit);
      dialog.fieldPicture = IDB_BACKGROUND;
      RepaintPicture(window);
      break;
    }
    default:
      break;
  }
}

void OnClicked(HWND window, RegisterDialog& dialog, int control) {
  ShowControlHelp(window, dialog, control);
  switch (control) {
    case IDC_PAPER_REGISTER_MM:
    case IDC_PAPER_REGISTER_INCH:
      return OnUnitClicked(window, dialog);
    case IDC_PAPER_REGISTER_REFERENCE:
      return CopyReferencePaper(window, dialog);
    case IDC_PAPER_REGISTER_WHOLE_LABEL:
      return ShowWholeLabel(window, dialog);
    default:
      return;
  }
}

void Command(HWND window, RegisterDialog& dialog, int control, int notification) {
  switch (control) {
    case IDC_PAPER_REGISTER_NAME:
      if (notification == EN_SETFOCUS) ShowControlHelp(window, dialog, control);
      return;
    case IDC_PAPER_REGISTER_GRADE:
      EnableDarknessList(window, dialog);
      [[fallthrough]];
    case IDC_PAPER_REGISTER_THICKNESS:
      if (notification == CBN_SETFOCUS) ShowControlHelp(window, dialog, control);
      return;
    default:
      break;
  }
  if (IsSizeField(control)) {
    OnSizeNotified(window, dialog, control, notification);
  } else if (notification == BN_CLICKED) {
    OnClicked(window, dialog, control);
  }
}

bool Notify(HWND window, RegisterDialog& dialog, const NMHDR& header) {
  if (header.code != UDN_DELTAPOS) return false;
  const SuppressCommands suppress(window);
  return StepField(Fields(window), static_cast<int>(header.idFrom),
                   reinterpret_cast<const NMUPDOWN&>(header).iDelta, dialog.work.Unit);
}

constexpr DialogHandlers<RegisterDialog> kDialog = {.templateId = IDD_PAPER_REGISTER,
                                                    .open = Open,
                                                    .accept = Accept,
                                                    .command = Command,
                                                    .notify = Notify,
                                                    .draw = DrawItem,
                                                    .other = Other};

}  // namespace

bool RunPaperDialog(HWND owner, DriverSettingsBlock& block, bool permission, PaperDialogMode mode,
                    int entry) {
  RegisterDialog dialog = {block, permission, mode, entry};
  return ShowModalDialog(kDialog, owner, dialog) == IDOK;
}

}  // namespace kestrel
