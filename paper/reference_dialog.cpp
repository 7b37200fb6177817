#include "paper/reference_dialog.h"

#include <iterator>

#include "driver/instance.h"
#include "paper/paper_table.h"
#include "resources/resource.h"

namespace kestrel {
namespace {

constexpr int kNone = -1;

struct Choice {
  const DriverSettingsBlock& block;
  int slot;
};

void Fill(HWND dialog, const DriverSettingsBlock& block) {
  for (int slot = 0; slot < PaperCount(block); ++slot) {
    WCHAR name[kPaperNameLength];
    PaperEntryName(block, slot, name, std::size(name));
    SendDlgItemMessageW(dialog, IDC_PAPER_REFERENCE_LIST, CB_ADDSTRING, 0,
                        reinterpret_cast<LPARAM>(name));
  }
  SendDlgItemMessageW(dialog, IDC_PAPER_REFERENCE_LIST, CB_SETCURSEL, 0, 0);
}

int SelectedSlot(HWND dialog) {
  // CB_ERR is the same as none.
  return static_cast<int>(
      SendDlgItemMessageW(dialog, IDC_PAPER_REFERENCE_LIST, CB_GETCURSEL, 0, 0));
}

INT_PTR CALLBACK ReferenceProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrW(dialog, DWLP_USER, lParam);
    Fill(dialog, reinterpret_cast<const Choice*>(lParam)->block);
    return TRUE;
  }
  auto* choice = reinterpret_cast<Choice*>(GetWindowLongPtrW(dialog, DWLP_USER));
  if (choice == nullptr) return FALSE;
  if (message == WM_CLOSE) {
    EndDialog(dialog, IDOK);
    return TRUE;
  }
  if (message != WM_COMMAND) return FALSE;
  switch (LOWORD(wParam)) {
    case IDOK:
      choice->slot = SelectedSlot(dialog);
      EndDialog(dialog, IDOK);
      return TRUE;
    case IDCANCEL:
      EndDialog(dialog, IDCANCEL);
      return TRUE;
    default:
      return FALSE;
  }
}

}  // namespace

int ChooseReferencePaper(HWND owner, const DriverSettingsBlock& block) {
  Choice choice = {block, kNone};
  const INT_PTR result = DialogBoxParamW(ModuleInstance(), MAKEINTRESOURCEW(IDD_PAPER_REFERENCE),
                                         owner, ReferenceProc, reinterpret_cast<LPARAM>(&choice));
  return result == IDOK ? choice.slot : kNone;
}

}  // namespace kestrel
