// The driver's user-interface module, loaded from a file.
#pragma once

#include <windows.h>
#include <winddiui.h>

#include "driver/handles.h"

namespace kestrel_try {

// The exports that kestrel-try calls.
struct Exports {
  decltype(&::DrvPrinterEvent) printerEvent;
  decltype(&::DrvUpgradePrinter) upgradePrinter;
  decltype(&::DevQueryPrint) queryPrint;
  decltype(&::DevQueryPrintEx) queryPrintEx;
  decltype(&::DrvDocumentEvent) documentEvent;
  decltype(&::DrvQueryJobAttributes) queryJobAttributes;
  decltype(&::DrvQueryColorProfile) queryColorProfile;
  decltype(&::DrvDocumentProperties) documentProperties;
  decltype(&::DrvAdvancedDocumentProperties) advancedDocumentProperties;
  decltype(&::DrvConvertDevMode) convertDevMode;
  decltype(&::DrvDeviceCapabilities) deviceCapabilities;
  decltype(&::DrvSplDeviceCaps) splDeviceCaps;
  decltype(&::DrvDocumentPropertySheets) documentPropertySheets;
  decltype(&::DrvDevicePropertySheets) devicePropertySheets;

  // Finds all of them. Returns null, or the name of one that the module lacks.
  const char* Find(HMODULE module);
};

// Loads the module from exactly this file: a name without a folder means the current directory, not
// the search path. Returns an empty owner with the last error set on failure.
kestrel::Module LoadModule(const WCHAR* file);

// A call into the module happens on behalf of this printer.
struct Target {
  const Exports& exports;
  HANDLE printer;
  const WCHAR* name;

  // The exports' parameters are not const, but the module only reads the name.
  LPWSTR printerName() const { return const_cast<LPWSTR>(name); }
};

}  // namespace kestrel_try
