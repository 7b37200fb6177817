// What the spooler and the graphics subsystem ask about a job.
#include <windows.h>
#include <winddiui.h>

#include "driver/handles.h"
#include "driver/printer_access.h"
#include "driver/record_view.h"
#include "driver/resolve_settings.h"

using namespace kestrel;

namespace {

// The driver's share of a job's attributes; the caller fills the others.
template <typename Info>
void AnswerResolution(Info& info, const RecordView& record) {
  info.dwColorOptimization = 0;
  if (!record.given()) return;
  record.ReadPublic(offsetof(DEVMODEW, dmPrintQuality), &info.dmPrintQuality);
  record.ReadPublic(offsetof(DEVMODEW, dmYResolution), &info.dmYResolution);
}

void AnswerAttributes(DWORD level, LPBYTE attributes, const RecordView& record) {
  switch (level) {
    case 2:
      reinterpret_cast<ATTRIBUTE_INFO_2*>(attributes)->dwColorOptimization = 0;
      break;
    case 3:
      AnswerResolution(*reinterpret_cast<ATTRIBUTE_INFO_3*>(attributes), record);
      break;
    case 4:
      AnswerResolution(*reinterpret_cast<ATTRIBUTE_INFO_4*>(attributes), record);
      break;
    default:
      break;
  }
}

}  // namespace

// Every job can be printed, whatever its record holds.
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

// Always FALSE: the driver reports no attributes of its own and the spooler applies its own.
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
  if (lpAttributeInfo != nullptr) AnswerAttributes(dwLevel, lpAttributeInfo, record);
  return FALSE;
}
