#include "paper/reference_dialog.h"

#include <iterator>

#include "paper/paper_table.h"
#include "resources/resource.h"
#include "sheets/dialog_handlers.h"

namespace kestrel {
namespace {

struct Choice {
  const DriverSettingsBlock& block;
  int slot = -1;
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
  static_assert(CB_ERR == -1);
  choice.slot =
      static_cast<int>(SendDlgItemMessageW(dialog, IDC_PAPER_REFERENCE_LIST, CB_GETCURSEL, 0, 0));
  return true;
}

// Closing the window ends the dialog as OK does, but chooses no paper.
constexpr DialogHandlers<Choice> kDialog = {
    .templateId = IDD_PAPER_REFERENCE, .open = Open, .accept = Accept, .close = IDOK};

}  // namespace

int ChooseReferencePaper(HWND owner, const DriverSettingsBlock& block) {
  Choice choice = {block};
  return ShowModalDialog(kDialog, owner, choice) == IDOK ? choice.slot : -1;
}

}  // namespace kestrel
