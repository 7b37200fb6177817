#include "driver/libraries.h"

#include "driver/printer_access.h"
#include "driver/text.h"

namespace kestrel {
namespace {

constexpr int kFileNameLength = 32;
constexpr int kPathLength = MAX_PATH + kFileNameLength;

}  // namespace

Module LoadSystemLibrary(const WCHAR* fileName) {
  WCHAR path[kPathLength];
  const UINT length = GetSystemDirectoryW(path, MAX_PATH);
  if (length == 0 || length >= MAX_PATH) return Module();
  AppendText(path, TEXT("\\"));
  AppendText(path, fileName);
  return Module(LoadLibraryW(path));
}

Module LoadCompanionLibrary(HANDLE printer, const WCHAR* printerName, const WCHAR* fileName,
                            DWORD directoryBytes) {
  WCHAR path[kPathLength];
  if (!GetPrinterInfoValue(printer, printerName, path, directoryBytes, kInfoVersionDirectory)) {
    return Module();
  }
  AppendText(path, TEXT("\\"));
  AppendText(path, fileName);
  return Module(LoadLibraryExW(path, nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
}

}  // namespace kestrel
