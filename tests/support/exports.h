// The module under test and its exports.
#pragma once

#include <windows.h>
#include <winddiui.h>
#include <winspool.h>

#include <cstdlib>
#include <stdexcept>
#include <string>

#include "tests/support/bin_dir.h"

namespace support {

// Returns the path of the module under test: the Windows image in the environment variable
// DRIVER_MODULE, otherwise the native module of this build.
inline std::string DriverModule() {
  const char* image = std::getenv("DRIVER_MODULE");
  return image != nullptr ? image : Built("QM610rDRV1.so");
}

// The exports of the loaded module. The constructor throws when one is missing.
struct Exports {
  HMODULE module;
  void* Find(const char* name) const {
    void* const found = reinterpret_cast<void*>(GetProcAddress(module, name));
    return found != nullptr ? found : throw std::runtime_error(std::string("no export ") + name);
  }
#define EXPORT(name) decltype(&::name) name = reinterpret_cast<decltype(&::name)>(Find(#name));
  EXPORT(DrvPrinterEvent)
  EXPORT(DrvUpgradePrinter)
  EXPORT(DevQueryPrint)
  EXPORT(DevQueryPrintEx)
  EXPORT(DrvDocumentEvent)
  EXPORT(DrvQueryJobAttributes)
  EXPORT(DrvQueryColorProfile)
  EXPORT(DrvDocumentProperties)
  EXPORT(DrvAdvancedDocumentProperties)
  EXPORT(PrinterProperties)
  EXPORT(DrvConvertDevMode)
  EXPORT(DrvDeviceCapabilities)
  EXPORT(DrvSplDeviceCaps)
  EXPORT(DrvDocumentPropertySheets)
  EXPORT(DrvDevicePropertySheets)
#undef EXPORT
};

}  // namespace support
