#include <iterator>

#include "try/answers.h"

namespace kestrel_try {
namespace {

constexpr LONG kUntouched = 77;

// An object for one call with its result and, after a failure, the last error.
void WriteResult(Json& json, const char* function, const char* arguments, LONG result,
                 LONG failure) {
  const DWORD error = GetLastError();
  json.OpenCall(function, arguments);
  json.Member("result", result);
  if (result == failure) json.Member("error", error);
  json.CloseCall();
}

constexpr const char* kEvents[] = {"event 0", "event 1", "event 2", nullptr,   "event 4",
                                   "event 5", "event 6", "event 7", "event 8", "event 9"};

// Every event but PRINTER_EVENT_INITIALIZE, which stores the printer's settings.
void WritePrinterEvents(const Target& target, Json& json) {
  for (INT event = 0; event < static_cast<INT>(std::size(kEvents)); ++event) {
    if (event == PRINTER_EVENT_INITIALIZE) continue;
    SetLastError(ERROR_SUCCESS);
    const BOOL result = target.exports.printerEvent(target.printerName(), event, 0, 0);
    WriteResult(json, "DrvPrinterEvent", kEvents[event], result, FALSE);
  }
}

void WriteUpgrades(const Target& target, Json& json) {
  constexpr const char* kLevels[] = {"level 0", "level 1", "level 2", "level 3"};
  BYTE information[64] = {};
  for (DWORD level = 0; level < std::size(kLevels); ++level) {
    SetLastError(ERROR_SUCCESS);
    const BOOL result = target.exports.upgradePrinter(level, information);
    WriteResult(json, "DrvUpgradePrinter", kLevels[level], result, FALSE);
  }
  SetLastError(ERROR_SUCCESS);
  const BOOL result = target.exports.upgradePrinter(1, nullptr);
  WriteResult(json, "DrvUpgradePrinter", "level 1 without information", result, FALSE);
}

void WriteRefusedArguments(const Target& target, Json& json) {
  struct Refused {
    const char* what;
    DWORD mode;
  };
  constexpr Refused kRefused[] = {{"mode 0", 0},
                                  {"DM_COPY without output", DM_COPY},
                                  {"DM_IN_BUFFER without input", DM_IN_BUFFER},
                                  {"DM_UPDATE without output", DM_UPDATE}};
  for (const Refused& each : kRefused) {
    SetLastError(ERROR_SUCCESS);
    const LONG result = target.exports.documentProperties(
        nullptr, target.printer, target.printerName(), nullptr, nullptr, each.mode);
    WriteResult(json, "DrvDocumentProperties", each.what, result, -1);
  }
  SetLastError(ERROR_SUCCESS);
  const LONG result = target.exports.advancedDocumentProperties(
      nullptr, target.printer, target.printerName(), nullptr, nullptr);
  WriteResult(json, "DrvAdvancedDocumentProperties", "without output", result, -1);
}

void WriteJobAttributes(const Target& target, Json& json, const DEVMODEW& record) {
  constexpr const char* kLevels[] = {"level 1", "level 2", "level 3", "level 4"};
  for (DWORD level = 1; level <= std::size(kLevels); ++level) {
    ATTRIBUTE_INFO_4 info = {};
    info.dwJobNumberOfCopies = kUntouched;
    info.dwColorOptimization = kUntouched;
    info.dmPrintQuality = kUntouched;
    info.dmYResolution = kUntouched;
    const BOOL result = target.exports.queryJobAttributes(
        target.printer, const_cast<DEVMODEW*>(&record), level, reinterpret_cast<LPBYTE>(&info));
    json.OpenCall("DrvQueryJobAttributes", kLevels[level - 1]);
    json.Member("result", LONG{result});
    json.Member("dwJobNumberOfCopies", info.dwJobNumberOfCopies);
    json.Member("dwColorOptimization", info.dwColorOptimization);
    json.Member("dmPrintQuality", LONG{info.dmPrintQuality});
    json.Member("dmYResolution", LONG{info.dmYResolution});
    json.CloseCall();
  }
}

void WriteQueries(const Target& target, Json& json, DEVMODEW& record) {
  DWORD resource = kUntouched;
  const BOOL result = target.exports.queryPrint(target.printer, &record, &resource);
  json.OpenCall("DevQueryPrint");
  json.Member("result", LONG{result});
  json.Member("resourceId", resource);
  json.CloseCall();

  DEVQUERYPRINT_INFO info = {};
  info.cbSize = sizeof info;
  info.Level = 1;
  info.hPrinter = target.printer;
  info.pDevMode = &record;
  WriteResult(json, "DevQueryPrintEx", nullptr, target.exports.queryPrintEx(&info), FALSE);

  // Event 1 is sent before a device context is reset, event 14 queries the supported events.
  for (const INT event : {1, 14}) {
    const INT answer =
        target.exports.documentEvent(target.printer, nullptr, event, 0, nullptr, 0, nullptr);
    json.OpenCall("DrvDocumentEvent", event == 1 ? "event 1" : "event 14");
    json.Member("result", LONG{answer});
    json.CloseCall();
  }

  ULONG size = 0;
  ULONG flags = 0;
  SetLastError(ERROR_SUCCESS);
  const BOOL profile =
      target.exports.queryColorProfile(target.printer, &record, 1, nullptr, &size, &flags);
  WriteResult(json, "DrvQueryColorProfile", nullptr, profile, FALSE);
}

}  // namespace

bool WriteFixedAnswers(const Target& target, Json& json) {
  const auto record = kestrel::HeapBlock<kestrel::SettingsRecord>::One();
  if (!record) return false;
  target.exports.documentProperties(nullptr, target.printer, target.printerName(), &record->Public,
                                    nullptr, DM_COPY);
  WriteRefusedArguments(target, json);
  WriteQueries(target, json, record->Public);
  WriteJobAttributes(target, json, record->Public);
  WritePrinterEvents(target, json);
  WriteUpgrades(target, json);
  json.OpenCall("DrvDevicePropertySheets", "without a sheet");
  json.Member("result", target.exports.devicePropertySheets(nullptr, 0));
  json.CloseCall();
  return true;
}

}  // namespace kestrel_try
