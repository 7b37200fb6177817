// The driver's module, put where the spooler keeps it and loaded as the spooler loads it.
#pragma once

#include <windows.h>
#include <winddiui.h>

#include <string>

#include "platform/machine.h"

namespace printhost {

// Links the companion libraries of this build into the driver directory, and puts the package's
// monitors into the system directory as files that have a version.
void InstallCompanions(platform::Machine& machine);

// The loaded module with its exports. Every construction links the libraries of this build anew
// (the companions only where they are installed), so that none of them is ever an old copy.
class DriverModule {
 public:
  // Throws Failure when the module cannot be loaded or lacks an export.
  explicit DriverModule(platform::Machine& machine);
  ~DriverModule();
  DriverModule(const DriverModule&) = delete;
  DriverModule& operator=(const DriverModule&) = delete;

  HMODULE handle() const { return module_; }

  decltype(&::DrvPrinterEvent) printerEvent = nullptr;
  decltype(&::DrvConvertDevMode) convertDevMode = nullptr;
  decltype(&::DrvDeviceCapabilities) deviceCapabilities = nullptr;
  decltype(&::DrvDocumentProperties) documentProperties = nullptr;
  decltype(&::DrvAdvancedDocumentProperties) advancedDocumentProperties = nullptr;
  decltype(&::DrvDocumentPropertySheets) documentPropertySheets = nullptr;
  decltype(&::PrinterProperties) printerProperties = nullptr;

 private:
  HMODULE module_ = nullptr;
};

// An open printer.
class PrinterHandle {
 public:
  // Throws Failure when the printer cannot be opened.
  explicit PrinterHandle(std::u16string name);
  ~PrinterHandle();
  PrinterHandle(const PrinterHandle&) = delete;
  PrinterHandle& operator=(const PrinterHandle&) = delete;

  HANDLE get() const { return printer_; }
  LPWSTR name() { return name_.data(); }

 private:
  std::u16string name_;
  HANDLE printer_ = nullptr;
};

}  // namespace printhost
