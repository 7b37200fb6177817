#include "sheets/page_handlers.h"

namespace kestrel {
namespace {

INT_PTR HandleSheetNotification(const PageHandlers& handlers, HWND page, DriverUiData& session,
                                UINT code) {
  // Every page allows the sheet to change pages and to close.
  SetWindowLongPtrW(page, DWLP_MSGRESULT, PSNRET_NOERROR);
  switch (code) {
    case PSN_SETACTIVE:
      if (handlers.activate != nullptr) handlers.activate(page, session);
      return TRUE;
    case PSN_KILLACTIVE:
      if (handlers.leave != nullptr) handlers.leave(page, session);
      RefreshPublicFields(session);
      return TRUE;
    case PSN_APPLY:
      handlers.apply(session);
      return TRUE;
    default:
      return FALSE;
  }
}

// Controls of a page send WM_NOTIFY too; only the sheet uses the codes of PSN_FIRST to PSN_LAST.
bool IsSheetNotification(UINT code) { return code <= PSN_FIRST && code >= PSN_LAST; }

}  // namespace

INT_PTR HandlePageMessage(const PageHandlers& handlers, HWND page, UINT message, WPARAM wParam,
                          LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    // The dialog manager sends WM_INITDIALOG once. Any process of the desktop can send it again,
    // with a pointer of its choice.
    if (GetWindowLongPtrW(page, DWLP_USER) != 0) return FALSE;
    SetWindowLongPtrW(page, DWLP_USER, lParam);
  }
  DriverUiData* session = PageSession(page);
  if (session == nullptr) return FALSE;
  switch (message) {
    case WM_INITDIALOG:
      if (handlers.create != nullptr) handlers.create(page, *session);
      return TRUE;
    case WM_COMMAND:
      if (handlers.command != nullptr)
        handlers.command(page, *session, LOWORD(wParam), HIWORD(wParam));
      return TRUE;
    case WM_NOTIFY: {
      const UINT code = reinterpret_cast<const NMHDR*>(lParam)->code;
      if (IsSheetNotification(code)) return HandleSheetNotification(handlers, page, *session, code);
      break;
    }
    default:
      break;
  }
  return handlers.other != nullptr ? handlers.other(page, *session, message, wParam, lParam)
                                   : FALSE;
}

}  // namespace kestrel
