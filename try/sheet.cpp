#include "try/sheet.h"

#include <algorithm>
#include <iterator>

#include "try/answers.h"

namespace kestrel_try {
namespace {

constexpr WCHAR kSyncPrint[] = TEXT("SyncPrint");
constexpr WCHAR kPrintersKey[] = TEXT("SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\");
constexpr WCHAR kDataKey[] = TEXT("\\PrinterDriverData");

// The registry value SyncPrint of a printer at the time of construction.
class SyncPrintValue {
 public:
  explicit SyncPrintValue(const WCHAR* printer) {
    if (!MakeKeyName(printer)) return;
    HKEY opened = nullptr;
    found_ = RegOpenKeyExW(HKEY_LOCAL_MACHINE, name_, 0, KEY_QUERY_VALUE, &opened);
    if (found_ != ERROR_SUCCESS) return;
    const kestrel::RegistryKey key(opened);
    found_ = RegQueryValueExW(key.get(), kSyncPrint, nullptr, &type_,
                              reinterpret_cast<LPBYTE>(&value_), &size_);
  }
  // Does nothing where the value could not be read or may not be written.
  void Restore() const {
    if (found_ != ERROR_SUCCESS && found_ != ERROR_FILE_NOT_FOUND) return;
    HKEY opened = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, name_, 0, KEY_SET_VALUE, &opened) != ERROR_SUCCESS)
      return;
    const kestrel::RegistryKey key(opened);
    const BYTE* const bytes = reinterpret_cast<const BYTE*>(&value_);
    if (found_ == ERROR_SUCCESS)
      RegSetValueExW(key.get(), kSyncPrint, 0, type_, bytes, size_);
    else
      RegDeleteValueW(key.get(), kSyncPrint);
  }

 private:
  // Backslashes of a printer's name are commas in its key.
  bool MakeKeyName(const WCHAR* printer) {
    WCHAR* out = name_;
    WCHAR* const end = name_ + sizeof name_ / sizeof *name_ - 1;
    for (const WCHAR* from = kPrintersKey; *from != 0 && out < end; ++from) *out++ = *from;
    for (; *printer != 0 && out < end; ++printer)
      *out++ = *printer == TEXT('\\') ? TEXT(',') : *printer;
    for (const WCHAR* from = kDataKey; *from != 0 && out < end; ++from) *out++ = *from;
    return out != end;
  }

  WCHAR name_[512] = {};  // of the key
  LSTATUS found_ = ERROR_INVALID_DATA;
  DWORD type_ = 0;
  DWORD size_ = sizeof(DWORD);
  DWORD value_ = 0;
};

SheetEnd EndOf(LONG result) {
  return result < 0               ? SheetEnd::kFailed
         : result == CPSUI_CANCEL ? SheetEnd::kCancelled
                                  : SheetEnd::kOk;
}

SheetEnd ShowDocument(const Target& target, Sheet sheet, Json& json) {
  const bool advanced = sheet == Sheet::kAdvanced;
  const auto record = kestrel::HeapBlock<kestrel::SettingsRecord>::One();
  if (!record) return SheetEnd::kFailed;
  const Exports& exports = target.exports;
  const LONG result =
      advanced ? exports.advancedDocumentProperties(nullptr, target.printer, target.printerName(),
                                                    &record->Public, nullptr)
               : exports.documentProperties(nullptr, target.printer, target.printerName(),
                                            &record->Public, nullptr, DM_COPY | DM_PROMPT);
  json.OpenCall(advanced ? "DrvAdvancedDocumentProperties" : "DrvDocumentProperties",
                advanced ? nullptr : "DM_COPY | DM_PROMPT");
  json.Member("result", result);
  if (EndOf(result) == SheetEnd::kOk) WriteRecord(target, json, "record", *record, nullptr);
  json.CloseCall();
  return EndOf(result);
}

// Loads the library from the system directory, never from another folder of the search path.
kestrel::Module LoadSheetLibrary() {
  constexpr WCHAR kName[] = TEXT("\\compstui.dll");
  WCHAR path[MAX_PATH + std::size(kName)];
  const UINT length = GetSystemDirectoryW(path, MAX_PATH);
  if (length == 0 || length >= MAX_PATH) return {};
  std::copy(std::begin(kName), std::end(kName), path + length);
  return kestrel::Module(LoadLibraryW(path));
}

// Shows a sheet of the module by the library. Returns what the sheet returned, below 0 on failure.
// The library documents that its parameter must not lie on the stack.
LONG ShowByLibrary(PFNPROPSHEETUI sheets, void* header) {
  const kestrel::Module library = LoadSheetLibrary();
  if (!library) return ERR_CPSUI_GETLASTERROR;
  const auto show = kestrel::EntryPoint<decltype(&::CommonPropertySheetUIW)>(
      library.get(), "CommonPropertySheetUIW");
  if (show == nullptr) return ERR_CPSUI_GETLASTERROR;
  DWORD result = CPSUI_CANCEL;
  const LONG shown = show(nullptr, sheets, reinterpret_cast<LPARAM>(header), &result);
  return shown < 0 ? shown : static_cast<LONG>(result);
}

// The spooler's own way to the user's defaults: no export shows them.
SheetEnd ShowUserDefault(const Target& target, bool mayStore, Json& json) {
  struct Defaults {
    DOCUMENTPROPERTYHEADER header;
    kestrel::SettingsRecord record;
  };
  const auto defaults = kestrel::HeapBlock<Defaults>::One();
  if (!defaults) return SheetEnd::kFailed;
  DOCUMENTPROPERTYHEADER& header = defaults->header;
  header.cbSize = sizeof header;
  header.hPrinter = target.printer;
  header.pszPrinterName = target.printerName();
  header.pdmOut = &defaults->record.Public;
  header.cbOut = kestrel::kRecordSize;
  header.fMode = DM_COPY | DM_PROMPT | DM_USER_DEFAULT | (mayStore ? 0 : DM_NOPERMISSION);
  const LONG result = ShowByLibrary(target.exports.documentPropertySheets, &header);
  json.OpenCall("DrvDocumentPropertySheets", "DM_COPY | DM_PROMPT | DM_USER_DEFAULT");
  json.Member("result", result);
  if (EndOf(result) == SheetEnd::kOk)
    WriteRecord(target, json, "record", defaults->record, nullptr);
  json.CloseCall();
  return EndOf(result);
}

// Does not call PrinterProperties, which would write the value "Permission" to determine the user's
// rights; mayStore states them already.
SheetEnd ShowPrinter(const Target& target, bool mayStore, Json& json) {
  const auto header = kestrel::HeapBlock<DEVICEPROPERTYHEADER>::One();
  if (!header) return SheetEnd::kFailed;
  header->cbSize = sizeof *header;
  header->Flags = mayStore ? 0 : DPS_NOPERMISSION;
  header->hPrinter = target.printer;
  header->pszPrinterName = target.printerName();
  const LONG result = ShowByLibrary(target.exports.devicePropertySheets, header.get());
  json.OpenCall("DrvDevicePropertySheets");
  json.Member("result", result);
  json.CloseCall();
  return EndOf(result);
}

}  // namespace

SheetEnd ShowSheet(const Target& target, Sheet sheet, bool mayStore, Json& json) {
  const SyncPrintValue syncPrint(target.name);
  const SheetEnd end = sheet == Sheet::kPrinter       ? ShowPrinter(target, mayStore, json)
                       : sheet == Sheet::kUserDefault ? ShowUserDefault(target, mayStore, json)
                                                      : ShowDocument(target, sheet, json);
  if (end != SheetEnd::kOk || !StoresOnOk(sheet)) syncPrint.Restore();
  return end;
}

}  // namespace kestrel_try
