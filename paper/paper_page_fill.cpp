#include <algorithm>
#include <iterator>

#include "paper/fields/controls.h"
#include "paper/fields/help_text.h"
#include "paper/fields/measured_value.h"
#include "paper/paper_page_data.h"
#include "paper/paper_table.h"
#include "sheets/messages.h"

namespace kestrel {
namespace {

void Enable(HWND page, int control, bool on) { EnableWindow(GetDlgItem(page, control), on); }

void ShowCapacity(HWND page) {
  WCHAR format[kMessageLength];
  LoadMessageText(IDS_PAPER_LIMIT, format, std::size(format));
  WCHAR text[kMessageLength + kMeasureTextLength];
  wsprintfW(text, format, kPaperCapacity);
  SetDlgItemTextW(page, IDC_PAPER_LIMIT_TEXT, text);
}

void EnableControls(HWND page, const DriverUiData& session) {
  const uint16_t mode = session.settings->Printer.Mecha;
  Enable(page, IDC_PAPER_PEEL_OFFSET, mode == kPeelMode);
  Enable(page, IDC_PAPER_TEAR_OFFSET, mode == kTearOffMode);
  Enable(page, IDC_PAPER_PITCH_OFFSET, true);
  Enable(page, IDC_PAPER_CUT_OFFSET, false);

  const bool tableEditable = session.mode == kUserDefaultSession;
  Enable(page, IDC_PAPER_REGISTER, tableEditable);
  Enable(page, IDC_PAPER_EDIT, tableEditable);
  Enable(page, IDC_PAPER_DELETE, tableEditable);

  LockControls(page, IDD_PAPER, session.permission != FALSE);
  // The arrows of a field that cannot be typed into would still change it.
  for (const OffsetField& field : kOffsetFields) {
    Enable(page, field.spin, IsWindowEnabled(GetDlgItem(page, field.edit)) != FALSE);
  }
}

}  // namespace

const OffsetField* FindOffsetField(int edit) {
  for (const OffsetField& field : kOffsetFields) {
    if (field.edit == edit) return &field;
  }
  return nullptr;
}

void FillOffset(HWND page, DriverUiData& session, const OffsetField& field, bool attach) {
  const SizeLimit range = OffsetRange(field.edit);
  InitField(PaperFields(page), field.edit, range.minimum, range.maximum,
            session.settings->Record.Private.*field.setting, kPlain, attach);
}

int16_t TypedOffset(HWND page, const PrivateDevMode& settings, const OffsetField& field) {
  const SizeLimit range = OffsetRange(field.edit);
  const int offset = ReadWholeNumber(page, field.edit, settings.*field.setting);
  return static_cast<int16_t>(std::clamp<int>(offset, range.minimum, range.maximum));
}

void ListPapers(HWND page, DriverUiData& session, int entry) {
  const DriverSettingsBlock& block = *session.settings;
  SendDlgItemMessageW(page, IDC_PAPER_LIST, CB_RESETCONTENT, 0, 0);
  for (int i = 0; i < PaperEntryCount(block); ++i) {
    WCHAR name[kPaperNameLength];
    PaperEntryName(block, i, name, std::size(name));
    SendDlgItemMessageW(page, IDC_PAPER_LIST, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name));
  }
  SendDlgItemMessageW(page, IDC_PAPER_LIST, CB_SETCURSEL, static_cast<WPARAM>(entry), 0);
  session.paper.selected = entry;
}

void ShowPicture(HWND page, PaperPageState& state, PaperPicture picture) {
  state.picture = picture;
  InvalidateRect(GetDlgItem(page, IDC_PAPER_PICTURE), nullptr, FALSE);
}

void ShowSelectedPaper(HWND page, DriverUiData& session) {
  PaperPageState& state = session.paper;
  state.preview = PaperOfEntry(*session.settings, state.selected);
  ShowPicture(page, state, kWholeLabelPicture);
}

void ChooseOrientationPicture(DriverUiData& session) {
  const PrivateDevMode& settings = session.settings->Record.Private;
  const bool landscape = settings.Orient != DMORIENT_PORTRAIT;
  const bool rotated = settings.nFlip != 0;
  session.paper.orientationPicture =
      rotated ? (landscape ? IDB_LANDSCAPE_ROTATED : IDB_PORTRAIT_ROTATED)
              : (landscape ? IDB_LANDSCAPE : IDB_PORTRAIT);
}

void FillPaperPage(HWND page, DriverUiData& session, bool creating) {
  PaperPageState& state = session.paper;
  const PrivateDevMode& settings = session.settings->Record.Private;
  state.filling = true;
  SetDlgItemTextW(page, IDC_HELP_TEXT, kFirstHelpCursor);

  ListPapers(page, session, PaperEntryOrFree(*session.settings, settings.PaperID));
  CheckRadioButton(page, IDC_PAPER_PORTRAIT, IDC_PAPER_LANDSCAPE,
                   settings.Orient == DMORIENT_PORTRAIT ? IDC_PAPER_PORTRAIT : IDC_PAPER_LANDSCAPE);
  CheckDlgButton(page, IDC_PAPER_FLIP, settings.nFlip != 0 ? BST_CHECKED : BST_UNCHECKED);
  for (const OffsetField& field : kOffsetFields) FillOffset(page, session, field, creating);
  CheckDlgButton(page, IDC_PAPER_POSITION, settings.Position != 0 ? BST_CHECKED : BST_UNCHECKED);
  ChooseOrientationPicture(session);
  ShowSelectedPaper(page, session);
  ShowCapacity(page);
  EnableControls(page, session);
  state.filling = false;
}

}  // namespace kestrel
