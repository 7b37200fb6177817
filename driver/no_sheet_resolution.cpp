#include "driver/no_sheet_resolution.h"

#include "driver/resolve_settings.h"

namespace kestrel {

LONG ResolveWithoutSheet(DOCUMENTPROPERTYHEADER& header) {
  header.cbOut = kRecordSize;
  if (header.fMode == 0 || header.pdmOut == nullptr) return static_cast<LONG>(kRecordSize);
  if ((header.fMode & (DM_UPDATE | DM_COPY)) == 0) return IDOK;
  // DM_UPDATE is not passed on: nothing is stored in the printer.
  const DWORD mode = DM_COPY | (header.pdmIn != nullptr ? DM_IN_BUFFER : 0);
  return ResolveSettings(header.pdmOut, header.pdmIn, header.hPrinter, header.pszPrinterName, mode)
             ? IDOK
             : 0;
}

}  // namespace kestrel
