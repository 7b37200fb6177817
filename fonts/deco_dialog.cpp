#include "fonts/deco_dialog.h"

#include <commctrl.h>

#include "driver/instance.h"
#include "fonts/deco_dialog_data.h"
#include "fonts/deco_preview.h"
#include "resources/resource.h"

namespace kestrel {
namespace {

constexpr INT_PTR kConfirmed = 1;
constexpr INT_PTR kCancelled = 2;

INT_PTR OnCommand(DecoDialog& dialog, WPARAM wParam) {
  const int control = LOWORD(wParam);
  if (control == IDOK) {
    if (StoreDecoFont(dialog)) EndDialog(dialog.window, kConfirmed);
    return TRUE;
  }
  if (control == IDCANCEL) {
    EndDialog(dialog.window, kCancelled);
    return TRUE;
  }
  if (!dialog.initialising) OnDecoCommand(dialog, control, HIWORD(wParam));
  return FALSE;
}

INT_PTR OnNotify(DecoDialog& dialog, const NMHDR& header) {
  if (header.code != UDN_DELTAPOS) return FALSE;
  const auto& step = reinterpret_cast<const NMUPDOWN&>(header);
  const bool refused = OnDecoSpin(dialog, static_cast<int>(header.idFrom), step.iDelta);
  SetWindowLongPtrW(dialog.window, DWLP_MSGRESULT, refused ? TRUE : FALSE);
  return TRUE;
}

INT_PTR CALLBACK DecoDialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    auto* opened = reinterpret_cast<DecoDialog*>(lParam);
    opened->window = window;
    SetWindowLongPtrW(window, DWLP_USER, lParam);
    OpenDecoDialog(*opened);
    return TRUE;
  }
  auto* dialog = reinterpret_cast<DecoDialog*>(GetWindowLongPtrW(window, DWLP_USER));
  if (dialog == nullptr) return FALSE;
  switch (message) {
    case WM_COMMAND:
      return OnCommand(*dialog, wParam);
    case WM_NOTIFY:
      return OnNotify(*dialog, *reinterpret_cast<const NMHDR*>(lParam));
    case WM_DRAWITEM: {
      const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
      if (item.CtlID != IDC_DECO_FONT_PREVIEW) return FALSE;
      DrawFontPreview(dialog->fields(), dialog->dpi, item.hDC, item.rcItem);
      return TRUE;
    }
    case WM_CLOSE:
      EndDialog(window, kCancelled);
      return TRUE;
    default:
      return FALSE;
  }
}

}  // namespace

FieldDialog DecoDialog::fields() const { return {window, kDecoFields}; }

INT_PTR ShowDecoDialog(HWND owner, FontStore& store, int dpi) {
  DecoDialog dialog = {};
  dialog.store = &store;
  dialog.dpi = dpi;
  return DialogBoxParamW(ModuleInstance(), MAKEINTRESOURCEW(IDD_DECO_FONT), owner, DecoDialogProc,
                         reinterpret_cast<LPARAM>(&dialog));
}

}  // namespace kestrel
