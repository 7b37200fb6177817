// The module under test and its exports.
#pragma once

#include <windows.h>
#include <winddiui.h>
#include <winspool.h>

#include <cstdlib>
#include <string>

#include "driver/handles.h"
#include "tests/support/bin_dir.h"

namespace support {

// Returns the path of the Windows image that the environment variable DRIVER_MODULE names, or else
// of the native module of this build.
inline std::string DriverModule() {
  const char* image = std::getenv("DRIVER_MODULE");
  return image != nullptr ? image : Built("QM610rDRV1.so");
}

// The exports of the loaded module that tests call; null when one is missing.
struct Exports {
  HMODULE module;
#define EXPORT(name) decltype(&::name) name = kestrel::EntryPoint<decltype(&::name)>(module, #name);
  EXPORT(DrvPrinterEvent)
  EXPORT(DrvQueryJobAttributes)
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
