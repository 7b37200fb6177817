#include <windows.h>
#include <winddiui.h>

#include "driver/handles.h"
#include "driver/printer_access.h"
#include "driver/resolve_settings.h"

using namespace kestrel;

namespace {

BOOL Fail(DWORD error) {
  SetLastError(error);
  return FALSE;
}

BOOL FailForSize(LONG& size) {
  size = LONG{kRecordSize};
  return Fail(ERROR_INSUFFICIENT_BUFFER);
}

// Resolves a printer's settings, merged with input when there is one, into output.
BOOL ConvertForPrinter(const WCHAR* name, const DEVMODEW* input, DEVMODEW* output, LONG& size,
                       DWORD mode) {
  HANDLE handle = nullptr;
  if (!OpenPrinterForDriver(name, kDefaultAccess, &handle)) return Fail(ERROR_INVALID_PARAMETER);
  const Printer printer(handle);
  const bool resolved = ResolveSettings(output, input, printer.get(), name, mode);
  size = resolved ? LONG{kRecordSize} : 0;
  return resolved ? TRUE : FALSE;
}

}  // namespace

extern "C" BOOL WINAPI DrvConvertDevMode(LPWSTR pPrinterName, DEVMODEW* pdmIn, DEVMODEW* pdmOut,
                                         PLONG pcbNeeded, DWORD fMode) {
  switch (fMode) {
    case CDM_CONVERT:
      if (pdmIn == nullptr || pdmOut == nullptr || pcbNeeded == nullptr)
        return Fail(ERROR_INVALID_PARAMETER);
      if (*pcbNeeded < LONG{kRecordSize}) return FailForSize(*pcbNeeded);
      return ConvertForPrinter(pPrinterName, pdmIn, pdmOut, *pcbNeeded, DM_COPY | DM_IN_BUFFER);
    case CDM_DRIVER_DEFAULT:
      if (pcbNeeded == nullptr) return Fail(ERROR_INVALID_PARAMETER);
      if (*pcbNeeded < LONG{kRecordSize} || pdmOut == nullptr) return FailForSize(*pcbNeeded);
      return ConvertForPrinter(pPrinterName, nullptr, pdmOut, *pcbNeeded, DM_COPY);
    default:
      return Fail(ERROR_INVALID_PARAMETER);
  }
}
