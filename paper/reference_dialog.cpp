#include "paper/reference_dialog.h"

#include <iterator>

#include "paper/paper_table.h"
#include "resources/resource.h"
#include "sheets/dialog_handlers.h"

namespace kestrel {
namespace {

constexpr int kNone = -1;

struct Choice {
  const DriverSettingsBlock& block;
  int slot;
};

void Open(HWND dialog, Choice& choice) {
  for (int slot = 0; slot < PaperCount(choice.block); ++slot) {
    WCHAR name[kPaperNameLength];
    PaperEntryName(choice.block, slot, name, std::size(name));
    SendDlgItemMessageW(dialog, IDC_PAPER_REFERENCE_LIST, CB_ADDSTRING, 0,
                        reinterpret_cast<LPARAM>(name));
  }
  SendDlgItemMessageW(dialog, IDC_PAPER_REFERENCE_LIST, CB_SETCURSEL, 0, 0);
}

bool Accept(HWND dialog, Choice& choice) {
  // CB_ERR is the same as none.
  choice.slot =
      static_cast<int>(SendDlgItemMessageW(dialog, IDC_PAPER_REFERENCE_LIST, CB_GETCURSEL, 0, 0));
  return true;
}

// Closing the window is OK without a choice.
constexpr DialogHandlers<Choice> kDialog = {
    .templateId = IDD_PAPER_REFERENCE, .open = Open, .accept = Accept, .close = IDOK};

}  // namespace

int ChooseReferencePaper(HWND owner, const DriverSettingsBlock& block) {
  Choice choice = {block, kNone};
  return ShowModalDialog(kDialog, owner, choice) == IDOK ? choice.slot : kNone;
}

}  // namespace kestrel
