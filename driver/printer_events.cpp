// Printer events that the spooler sends to the driver.
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

// Stores the name of the rendering module where the spooler looks for it. The stored size excludes
// the terminator.
void RegisterRenderingModule(HANDLE printer) {
  WCHAR module[16];
  CopyText(module, TEXT("QM610r"));
  AppendText(module, TEXT("DRV2"));
  WritePrinterData(printer, TEXT("SPLUserModePrinterDriver"), REG_SZ, module,
                   static_cast<DWORD>(TextLength(module)) * DWORD{sizeof(WCHAR)});
}

// Failures are not reported to the spooler: every later query replaces missing settings by the
// defaults.
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
