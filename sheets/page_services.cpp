#include "sheets/page_services.h"

#include "driver/default_settings.h"
#include "driver/os_version.h"

namespace kestrel {

bool IsValidUiSession(const DriverUiData* session) {
  return session != nullptr && session->self == session && session->size == sizeof(DriverUiData) &&
         session->selfEnd == session;
}

DriverUiData* PageSession(HWND page) {
  const auto* sheetPage =
      reinterpret_cast<const PROPSHEETPAGEW*>(GetWindowLongPtrW(page, DWLP_USER));
  if (sheetPage == nullptr) return nullptr;
  auto* session = reinterpret_cast<DriverUiData*>(sheetPage->lParam);
  return IsValidUiSession(session) ? session : nullptr;
}

void RefreshPublicFields(DriverUiData& session) {
  FillPublicFields(*session.settings, session.printer, session.printerName);
}

BOOL MarkPageChanged(HWND page) {
  if (GetOsVersionCode() >= kOsWindows2000) {
    SendMessageW(GetParent(page), PSM_CHANGED, reinterpret_cast<WPARAM>(page), 0);
  }
  return TRUE;
}

bool ConfirmSheetResult(DriverUiData& session) {
  const bool firstIsDialog = session.pageCount >= 1 && session.pages[0].kind == kPageDialog;
  return firstIsDialog && session.comPropSheet != nullptr &&
         session.comPropSheet(session.comPropSheetHandle, CPSFUNC_SET_RESULT,
                              session.pageHandles[0], CPSUI_OK) > 0;
}

}  // namespace kestrel
