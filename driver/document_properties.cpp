#include "driver/document_properties.h"

#include "driver/handles.h"
#include "driver/property_sheet_library.h"
#include "driver/resolve_settings.h"

using namespace kestrel;

namespace kestrel {

LONG ResolveWithoutSheet(DOCUMENTPROPERTYHEADER& header) {
  header.cbOut = kRecordSize;
  if (header.fMode == 0 || header.pdmOut == nullptr) return LONG{kRecordSize};
  if ((header.fMode & (DM_UPDATE | DM_COPY)) == 0) return 1;
  const bool resolved = ResolveSettings(header.pdmOut, RecordView(header.pdmIn), header.hPrinter,
                                        header.pszPrinterName, DM_COPY | DM_IN_BUFFER);
  return resolved ? 1 : 0;
}

}  // namespace kestrel

namespace {

constexpr LONG kFailed = -1;

}  // namespace

extern "C" LONG WINAPI DrvDocumentProperties(HWND hwnd, HANDLE hPrinter, LPWSTR pDeviceName,
                                             DEVMODEW* pdmOut, DEVMODEW* pdmIn, DWORD fMode) {
  if (fMode == 0) return LONG{kRecordSize};
  if (((fMode & DM_COPY) != 0 && pdmOut == nullptr) ||
      ((fMode & DM_MODIFY) != 0 && pdmIn == nullptr)) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return kFailed;
  }
  DOCUMENTPROPERTYHEADER header{};
  header.cbSize = sizeof header;
  header.hPrinter = hPrinter;
  header.pszPrinterName = pDeviceName;
  header.pdmIn = pdmIn;
  header.pdmOut = pdmOut;
  header.fMode = fMode;
  if ((fMode & DM_PROMPT) == 0) return ResolveWithoutSheet(header);

  // The parameter of a property-sheet function must not be a stack address (PFNPROPSHEETUI).
  const auto parameter = HeapBlock<DOCUMENTPROPERTYHEADER>::One();
  if (!parameter) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return kFailed;
  }
  *parameter = header;
  DWORD result = 0;
  if (!ShowCommonPropertySheet(hwnd, DrvDocumentPropertySheets,
                               reinterpret_cast<LPARAM>(parameter.get()), &result))
    return kFailed;
  return parameter->cbOut == kSheetNotOpened ? kFailed : static_cast<LONG>(result);
}

extern "C" LONG WINAPI DrvAdvancedDocumentProperties(HWND hwnd, HANDLE hPrinter, LPWSTR pDeviceName,
                                                     DEVMODEW* pdmOut, DEVMODEW* pdmIn) {
  return DrvDocumentProperties(hwnd, hPrinter, pDeviceName, pdmOut, pdmIn,
                               DM_COPY | DM_PROMPT | DM_ADVANCED);
}
