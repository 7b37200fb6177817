#include <windows.h>
#include <winddiui.h>

#include <cstring>

#include "driver/handles.h"
#include "driver/printer_access.h"
#include "driver/resolve_settings.h"

using namespace kestrel;

namespace {

BOOL Fail(DWORD error) {
  SetLastError(error);
  return FALSE;
}

BOOL FailBufferTooSmall(LONG& size) {
  size = LONG{kRecordSize};
  return Fail(ERROR_INSUFFICIENT_BUFFER);
}

// Resolves a printer's settings, merged with input when it is given, into output. size always
// reports kRecordSize bytes, so the bytes after a shorter record are cleared.
BOOL ConvertForPrinter(const WCHAR* name, const RecordView& input, DEVMODEW* output, LONG& size,
                       DWORD mode) {
  HANDLE handle = nullptr;
  if (!OpenPrinterForDriver(name, kDefaultAccess, &handle)) return Fail(ERROR_INVALID_PARAMETER);
  const Printer printer(handle);
  const bool resolved = ResolveSettings(output, input, printer.get(), name, mode);
  size = resolved ? LONG{kRecordSize} : 0;
  if (resolved) {
    const size_t written = SettingsRecordSize(input);
    std::memset(reinterpret_cast<BYTE*>(output) + written, 0, kRecordSize - written);
  }
  return resolved ? TRUE : FALSE;
}

}  // namespace

extern "C" BOOL WINAPI DrvConvertDevMode(LPWSTR pPrinterName, DEVMODEW* pdmIn, DEVMODEW* pdmOut,
                                         PLONG pcbNeeded, DWORD fMode) {
  switch (fMode) {
    case CDM_CONVERT:
      if (pdmIn == nullptr || pdmOut == nullptr || pcbNeeded == nullptr)
        return Fail(ERROR_INVALID_PARAMETER);
      if (*pcbNeeded < LONG{kRecordSize}) return FailBufferTooSmall(*pcbNeeded);
      return ConvertForPrinter(pPrinterName, RecordView(pdmIn), pdmOut, *pcbNeeded,
                               DM_COPY | DM_IN_BUFFER);
    case CDM_DRIVER_DEFAULT:
      if (pcbNeeded == nullptr) return Fail(ERROR_INVALID_PARAMETER);
      if (*pcbNeeded < LONG{kRecordSize} || pdmOut == nullptr)
        return FailBufferTooSmall(*pcbNeeded);
      return ConvertForPrinter(pPrinterName, RecordView(), pdmOut, *pcbNeeded, DM_COPY);
    default:
      return Fail(ERROR_INVALID_PARAMETER);
  }
}
