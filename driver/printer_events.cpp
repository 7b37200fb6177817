// What the spooler tells the driver about its printers.
#include <windows.h>
#include <winddiui.h>

#include "driver/default_settings.h"
#include "driver/handles.h"
#include "driver/printer_access.h"
#include "driver/resolve_settings.h"
#include "driver/text.h"

using namespace kestrel;

namespace {

BOOL InvalidParameter() {
  SetLastError(ERROR_INVALID_PARAMETER);
  return FALSE;
}

// The rendering module of this driver, as the spooler looks for it. The count of bytes leaves the
// terminator out.
void RegisterRenderingModule(HANDLE printer) {
  WCHAR module[16];
  CopyText(module, TEXT("QM610r"));
  AppendText(module, TEXT("DRV2"));
  WritePrinterData(printer, TEXT("SPLUserModePrinterDriver"), REG_SZ, module,
                   static_cast<DWORD>(TextLength(module)) * DWORD{sizeof(WCHAR)});
}

// Neither a printer that cannot be opened nor a failed write fails towards the spooler: settings
// that are not stored are replaced by the defaults whenever they are asked for.
void InitializePrinter(const WCHAR* name) {
  HANDLE handle = nullptr;
  if (!OpenPrinterForDriver(name, kAdminister, &handle)) return;
  const Printer printer(handle);
  if (const auto block = HeapBlock<DriverSettingsBlock>::One()) {
    FillDefaultSettings(*block, printer.get(), name);
    block->Record.Private.Signature = SETTINGS_SIGNATURE;
    SavePrinterSettings(*block, printer.get(), name);
  }
  RegisterRenderingModule(printer.get());
}

}  // namespace

extern "C" BOOL WINAPI DrvPrinterEvent(LPWSTR pPrinterName, INT DriverEvent, DWORD, LPARAM) {
  switch (DriverEvent) {
    case PRINTER_EVENT_INITIALIZE:
      InitializePrinter(pPrinterName);
      return TRUE;
    case PRINTER_EVENT_ADD_CONNECTION:
    case PRINTER_EVENT_DELETE_CONNECTION:
    case PRINTER_EVENT_DELETE:
    case PRINTER_EVENT_CACHE_REFRESH:
    case PRINTER_EVENT_CACHE_DELETE:
    case PRINTER_EVENT_ATTRIBUTES_CHANGED:
    case PRINTER_EVENT_CONFIGURATION_UPDATE:
      return TRUE;
    default:
      return InvalidParameter();
  }
}

extern "C" BOOL WINAPI DrvUpgradePrinter(DWORD Level, LPBYTE pDriverUpgradeInfo) {
  if ((Level != 1 && Level != 2) || pDriverUpgradeInfo == nullptr) return InvalidParameter();
  return TRUE;
}
