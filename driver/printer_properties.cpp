#include <windows.h>
#include <winddiui.h>

#include "driver/handles.h"
#include "driver/printer_access.h"
#include "driver/property_sheet_library.h"

using namespace kestrel;

namespace {

// Only a write reveals whether the caller has write access. The value is not removed afterwards.
bool CanWritePrinterData(HANDLE printer) {
  constexpr DWORD kOne = 1;
  return WritePrinterData(printer, TEXT("Permission"), REG_DWORD, &kOne, sizeof kOne);
}

}  // namespace

extern "C" BOOL WINAPI PrinterProperties(HWND hwnd, HANDLE hPrinter) {
  // The parameter of a property-sheet function must not be a stack address (PFNPROPSHEETUI).
  const auto header = HeapBlock<DEVICEPROPERTYHEADER>::One();
  if (!header) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return FALSE;
  }
  header->cbSize = sizeof *header;
  header->hPrinter = hPrinter;
  if (!CanWritePrinterData(hPrinter)) header->Flags = DPS_NOPERMISSION;

  DWORD result = CPSUI_CANCEL;
  const bool shown = ShowCommonPropertySheet(hwnd, DrvDevicePropertySheets,
                                             reinterpret_cast<LPARAM>(header.get()), &result);
  return shown && result != DWORD{CPSUI_CANCEL} ? TRUE : FALSE;
}
