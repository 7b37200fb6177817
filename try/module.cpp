#include "try/module.h"

namespace kestrel_try {
namespace {

// Finds one export and remembers the first one that is missing.
class Finder {
 public:
  explicit Finder(HMODULE module) : module_(module) {}
  template <typename Function>
  void Find(Function& function, const char* name) {
    function = kestrel::EntryPoint<Function>(module_, name);
    if (function == nullptr && missing_ == nullptr) missing_ = name;
  }
  const char* missing() const { return missing_; }

 private:
  HMODULE module_;
  const char* missing_ = nullptr;
};

}  // namespace

const char* Exports::Find(HMODULE module) {
  Finder finder(module);
  finder.Find(printerEvent, "DrvPrinterEvent");
  finder.Find(upgradePrinter, "DrvUpgradePrinter");
  finder.Find(queryPrint, "DevQueryPrint");
  finder.Find(queryPrintEx, "DevQueryPrintEx");
  finder.Find(documentEvent, "DrvDocumentEvent");
  finder.Find(queryJobAttributes, "DrvQueryJobAttributes");
  finder.Find(queryColorProfile, "DrvQueryColorProfile");
  finder.Find(documentProperties, "DrvDocumentProperties");
  finder.Find(advancedDocumentProperties, "DrvAdvancedDocumentProperties");
  finder.Find(convertDevMode, "DrvConvertDevMode");
  finder.Find(deviceCapabilities, "DrvDeviceCapabilities");
  finder.Find(splDeviceCaps, "DrvSplDeviceCaps");
  finder.Find(documentPropertySheets, "DrvDocumentPropertySheets");
  finder.Find(devicePropertySheets, "DrvDevicePropertySheets");
  return finder.missing();
}

kestrel::Module LoadModule(const WCHAR* file) {
  // The name with ".\" before it and a terminator after it.
  size_t length = 0;
  bool hasFolder = false;
  for (; file[length] != 0; ++length) {
    const WCHAR unit = file[length];
    hasFolder = hasFolder || unit == TEXT('\\') || unit == TEXT('/') || unit == TEXT(':');
  }
  const kestrel::HeapBlock<WCHAR> path((length + 3) * sizeof(WCHAR));
  if (!path) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return {};
  }
  WCHAR* out = path.get();
  if (!hasFolder) {
    *out++ = TEXT('.');
    *out++ = TEXT('\\');
  }
  // LoadLibraryW documents backslashes alone.
  for (; *file != 0; ++file) *out++ = *file == TEXT('/') ? TEXT('\\') : *file;
  return kestrel::Module(LoadLibraryW(path.get()));
}

}  // namespace kestrel_try
