#include "sheets/own_page.h"

#include "fonts/font_store.h"
#include "sheets/page_services.h"

namespace kestrel {
namespace {

void Apply(const OwnPage& work, DriverUiData& session) {
  if (work.apply == ApplyOrder::kSaveThenConfirm) SaveFontStore(session.printer, session.fonts);
  ConfirmSheetResult(session);
  if (work.apply == ApplyOrder::kConfirmThenSave) SaveFontStore(session.printer, session.fonts);
}

INT_PTR Notify(const OwnPage& work, HWND page, DriverUiData& session, UINT code) {
  // No page holds the sheet back.
  SetWindowLongPtrW(page, DWLP_MSGRESULT, PSNRET_NOERROR);
  switch (code) {
    case PSN_SETACTIVE:
      if (work.activate != nullptr) work.activate(page, session);
      return TRUE;
    case PSN_KILLACTIVE:
      if (work.leave != nullptr) work.leave(page, session);
      RefreshPublicFields(session);
      return TRUE;
    case PSN_APPLY:
      Apply(work, session);
      return TRUE;
    default:
      return FALSE;
  }
}

// A notification of the sheet, told from those of controls by its code.
bool FromSheet(UINT code) { return code <= PSN_FIRST && code >= PSN_LAST; }

}  // namespace

INT_PTR RunOwnPage(const OwnPage& work, HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    // A later one does not come from the dialog manager: any process of the desktop can send it,
    // with a pointer of its choice.
    if (GetWindowLongPtrW(page, DWLP_USER) != 0) return FALSE;
    SetWindowLongPtrW(page, DWLP_USER, lParam);
  }
  DriverUiData* session = PageSession(page);
  if (session == nullptr) return FALSE;
  switch (message) {
    case WM_INITDIALOG:
      if (work.create != nullptr) work.create(page, *session);
      return TRUE;
    case WM_COMMAND:
      if (work.command != nullptr) work.command(page, *session, LOWORD(wParam), HIWORD(wParam));
      return TRUE;
    case WM_NOTIFY: {
      const UINT code = reinterpret_cast<const NMHDR*>(lParam)->code;
      if (FromSheet(code)) return Notify(work, page, *session, code);
      break;
    }
    default:
      break;
  }
  return work.other != nullptr ? work.other(page, *session, message, wParam, lParam) : FALSE;
}

}  // namespace kestrel
