#include <windows.h>
#include <winddiui.h>

#include "driver/handles.h"
#include "driver/printer_access.h"
#include "driver/property_sheet_library.h"

using namespace kestrel;

namespace {

// Only a write shows whether the caller may write; the value stays.
bool MayChangePrinterData(HANDLE printer) {
  constexpr DWORD kYes = 1;
  return WritePrinterData(printer, TEXT("Permission"), REG_DWORD, &kYes, sizeof kYes);
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
  if (!MayChangePrinterData(hPrinter)) header->Flags = DPS_NOPERMISSION;

  DWORD result = CPSUI_CANCEL;
  const bool shown = ShowCommonPropertySheet(hwnd, DrvDevicePropertySheets,
                                             reinterpret_cast<LPARAM>(header.get()), &result);
  return shown && result != DWORD{CPSUI_CANCEL} ? TRUE : FALSE;
}
