// The two property-sheet functions that the common property-sheet library calls.
#include <windows.h>
#include <winddiui.h>

#include "driver/default_settings.h"
#include "driver/document_properties.h"
#include "driver/handles.h"
#include "driver/instance.h"
#include "driver/os_version.h"
#include "driver/resolve_settings.h"
#include "sheets/activation.h"
#include "sheets/page_services.h"
#include "sheets/ui_session.h"

namespace kestrel {
namespace {

constexpr LONG kDone = 1;
constexpr LONG kFailed = -1;

// Resources of the common property-sheet library.
constexpr WORD kPrinterTitle = 64717;    // string
constexpr ULONG_PTR kSheetIcon = 64062;  // IDI_CPSUI_PRINTER

LONG_PTR AddDialogPage(DriverUiData& session, const PageEntry& entry,
                       const ActivationContext& activation) {
  PROPSHEETPAGEW page = {};
  page.dwSize = sizeof(page);
  if (entry.flags & kPageHasHelp) page.dwFlags |= PSP_HASHELP;
  if (entry.flags & kPageIconById) page.dwFlags |= PSP_USEICONID;
  page.hInstance = entry.flags & kPageUsesInstance ? entry.instance : ModuleInstance();
  page.pszTemplate = MAKEINTRESOURCEW(entry.templateId);
  page.pszIcon = MAKEINTRESOURCEW(entry.iconId);
  page.pfnDlgProc = entry.procedure;
  page.lParam = reinterpret_cast<LPARAM>(&session);
  HPROPSHEETPAGE handle =
      activation.CallWithin([&page] { return CreatePropertySheetPageW(&page); });
  if (handle == nullptr) return 0;
  const LONG_PTR added = session.comPropSheet(
      session.comPropSheetHandle, CPSFUNC_ADD_HPROPSHEETPAGE, reinterpret_cast<LPARAM>(handle), 0);
  if (added == 0) DestroyPropertySheetPage(handle);
  return added;
}

LONG_PTR AddPageSheet(DriverUiData& session, int index) {
  DWORD result = 0;
  return session.comPropSheet(session.comPropSheetHandle, CPSFUNC_ADD_PCOMPROPSHEETUIW,
                              reinterpret_cast<LPARAM>(&session.pageSheets[index]),
                              reinterpret_cast<LPARAM>(&result));
}

bool AddPages(DriverUiData& session) {
  const bool isXpOrLater = GetOsVersionCode() >= kOsXp;
  const ActivationContext activation;
  for (int index = 0; index < session.pageCount; ++index) {
    const PageEntry& entry = session.pages[index];
    const bool direct = entry.kind == kPageDialog && (entry.flags != 0 || isXpOrLater);
    const LONG_PTR added =
        direct ? AddDialogPage(session, entry, activation) : AddPageSheet(session, index);
    if (added == 0) return false;
    session.pageHandles[index] = added;
  }
  return true;
}

LONG StartSheet(PROPSHEETUI_INFO& info, DriverUiData* session) {
  if (session == nullptr) return kFailed;
  session->comPropSheet = info.pfnComPropSheet;
  session->comPropSheetHandle = info.hComPropSheet;
  if (info.pfnComPropSheet == nullptr || !AddPages(*session)) {
    DestroyUiSession(session);
    return kFailed;
  }
  info.UserData = reinterpret_cast<ULONG_PTR>(session);
  info.Result = 0;
  return kDone;
}

LONG FillInfoHeader(LPARAM parameter, LPWSTR title) {
  if (parameter == 0) return kFailed;
  auto& header = *reinterpret_cast<PROPSHEETUI_INFO_HEADER*>(parameter);
  header.Flags = PSUIHDRF_NOAPPLYNOW | PSUIHDRF_PROPTITLE;
  header.pTitle = title;
  header.hInst = ModuleInstance();
  header.IconID = kSheetIcon;
  return kDone;
}

void StorePrinterPart(const DriverUiData& session, HANDLE printer, const WCHAR* name) {
  SavePrinterSettings(*session.settings, printer, name);
  BroadcastDefaultChanged(name);
}

void Finish(DriverUiData& session, const DOCUMENTPROPERTYHEADER& header) {
  if (header.pdmOut == nullptr || (header.fMode & (DM_UPDATE | DM_COPY)) == 0) return;
  // A header without a name refers to the printer of its handle.
  const WCHAR* name = header.pszPrinterName ? header.pszPrinterName : session.printerName;
  FillPublicFields(*session.settings, session.printer, name);
  CopySettingsRecord(header.pdmOut, *session.settings);
  const bool stores = session.mode == kUserDefaultSession &&
                      (session.flags & kMayStorePrinterPart) && session.permission;
  if (stores) StorePrinterPart(session, header.hPrinter, name);
}

// Printer properties edit nothing, and another sheet of the printer may have stored papers while
// this one was open, so the stored settings are loaded again. When they cannot be loaded now, the
// settings of the opening are stored: the defaults would delete the printer's papers.
void Finish(DriverUiData& session, const DEVICEPROPERTYHEADER& header) {
  const auto stored = HeapBlock<DriverSettingsBlock>::One();
  if (stored && LoadPrinterSettings(*stored, header.hPrinter, session.printerName)) {
    *session.settings = *stored;
  }
  RefreshPublicFields(session);
  StorePrinterPart(session, header.hPrinter, session.printerName);
}

// The library reports a sheet that did not open as cancelled, so the header has to say which it
// was.
void MarkNotOpened(DOCUMENTPROPERTYHEADER& header) { header.cbOut = kSheetNotOpened; }
void MarkNotOpened(DEVICEPROPERTYHEADER&) {}  // PrinterProperties treats both alike
LPWSTR SheetTitle(const DOCUMENTPROPERTYHEADER&) { return const_cast<LPWSTR>(TEXT("")); }
LPWSTR SheetTitle(const DEVICEPROPERTYHEADER&) { return MAKEINTRESOURCEW(kPrinterTitle); }

template <typename Header>
LONG HandleSheet(PROPSHEETUI_INFO& info, LPARAM parameter) {
  auto* header = reinterpret_cast<Header*>(info.lParamInit);
  if (header == nullptr) return kFailed;
  if (info.Reason == PROPSHEETUI_REASON_INIT) {
    const LONG started = StartSheet(info, CreateUiSession(header));
    if (started != kDone) MarkNotOpened(*header);
    return started;
  }
  auto* session = reinterpret_cast<DriverUiData*>(info.UserData);
  if (!IsValidUiSession(session)) return kFailed;
  switch (info.Reason) {
    case PROPSHEETUI_REASON_GET_INFO_HEADER:
      return FillInfoHeader(parameter, SheetTitle(*header));
    case PROPSHEETUI_REASON_DESTROY:
      DestroyUiSession(session);
      info.UserData = 0;
      return kDone;
    case PROPSHEETUI_REASON_SET_RESULT: {
      if (parameter == 0) return kFailed;
      const LRESULT result = reinterpret_cast<const SETRESULT_INFO*>(parameter)->Result;
      if (result == CPSUI_OK) Finish(*session, *header);
      info.Result = static_cast<ULONG_PTR>(result);
      return kDone;
    }
    default:
      return kFailed;
  }
}

}  // namespace
}  // namespace kestrel

extern "C" LONG WINAPI DrvDocumentPropertySheets(PPROPSHEETUI_INFO info, LPARAM parameter) {
  using namespace kestrel;
  if (info != nullptr) return HandleSheet<DOCUMENTPROPERTYHEADER>(*info, parameter);
  if (parameter == 0) return kFailed;
  return ResolveWithoutSheet(*reinterpret_cast<DOCUMENTPROPERTYHEADER*>(parameter));
}

extern "C" LONG WINAPI DrvDevicePropertySheets(PPROPSHEETUI_INFO info, LPARAM parameter) {
  using namespace kestrel;
  return info != nullptr ? HandleSheet<DEVICEPROPERTYHEADER>(*info, parameter) : kFailed;
}
