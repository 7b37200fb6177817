#include <windows.h>
#include <winddiui.h>

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
  DEVICEPROPERTYHEADER header{};
  header.cbSize = sizeof header;
  header.hPrinter = hPrinter;
  if (!MayChangePrinterData(hPrinter)) header.Flags = DPS_NOPERMISSION;

  DWORD result = CPSUI_CANCEL;
  const bool shown = ShowCommonPropertySheet(hwnd, DrvDevicePropertySheets,
                                             reinterpret_cast<LPARAM>(&header), &result);
  return shown && result != DWORD{CPSUI_CANCEL} ? TRUE : FALSE;
}
