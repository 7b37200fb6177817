// Exports through which the spooler and GDI query a print job.
#include <windows.h>
#include <winddiui.h>

#include "driver/handles.h"
#include "driver/printer_access.h"
#include "driver/record_view.h"
#include "driver/resolve_settings.h"

using namespace kestrel;

namespace {

// Writes the driver's members of a job's attributes. The caller fills the other members.
template <typename Info>
void WriteJobResolution(Info& info, const RecordView& record) {
  info.dwColorOptimization = 0;
  if (!record.hasFields()) return;
  record.ReadPublic(offsetof(DEVMODEW, dmPrintQuality), &info.dmPrintQuality);
  record.ReadPublic(offsetof(DEVMODEW, dmYResolution), &info.dmYResolution);
}

void WriteJobAttributes(DWORD level, LPBYTE attributes, const RecordView& record) {
  switch (level) {
    case 2:
      reinterpret_cast<ATTRIBUTE_INFO_2*>(attributes)->dwColorOptimization = 0;
      break;
    case 3:
      WriteJobResolution(*reinterpret_cast<ATTRIBUTE_INFO_3*>(attributes), record);
      break;
    case 4:
      WriteJobResolution(*reinterpret_cast<ATTRIBUTE_INFO_4*>(attributes), record);
      break;
    default:
      break;
  }
}

}  // namespace

// Every job can be printed, with any settings record.
extern "C" BOOL WINAPI DevQueryPrint(HANDLE, DEVMODEW*, DWORD* pResID) {
  if (pResID != nullptr) *pResID = 0;
  return TRUE;
}

extern "C" BOOL WINAPI DevQueryPrintEx(PDEVQUERYPRINT_INFO) { return TRUE; }

extern "C" INT WINAPI DrvDocumentEvent(HANDLE, HDC, INT, ULONG, PVOID, ULONG, PVOID) {
  return DOCUMENTEVENT_UNSUPPORTED;
}

extern "C" BOOL WINAPI DrvQueryColorProfile(HANDLE, DEVMODEW*, ULONG, PVOID, ULONG*, ULONG*) {
  SetLastError(ERROR_NOT_SUPPORTED);
  return FALSE;
}

// Always returns FALSE: the driver provides no job attributes, so the spooler applies its own.
extern "C" BOOL WINAPI DrvQueryJobAttributes(HANDLE hPrinter, DEVMODEW* pDevMode, DWORD dwLevel,
                                             LPBYTE lpAttributeInfo) {
  WCHAR name[32];
  if (!GetPrinterInfoValue(hPrinter, nullptr, name, sizeof name, kInfoPrinterName)) return FALSE;
  const auto block = HeapBlock<DriverSettingsBlock>::One();
  if (!block) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return FALSE;
  }
  const RecordView record(pDevMode);
  ResolveBlock(*block, record, hPrinter, name);
  if (lpAttributeInfo != nullptr) WriteJobAttributes(dwLevel, lpAttributeInfo, record);
  return FALSE;
}
