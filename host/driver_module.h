// Installs the driver's module in the driver directory and loads it from there, as the spooler
// does.
#pragma once

#include <windows.h>
#include <winddiui.h>

#include <filesystem>
#include <string>

#include "platform/machine/guard.h"
#include "platform/machine/machine.h"

namespace printhost {

// Returns the version of the driver package, like "14.0.1.20".
std::string DriverPackageVersion();

// Links the companion libraries of this build into the driver directory and writes the package's
// monitors, files with a version resource, to the system directory where they are missing.
void InstallCompanions(platform::Machine& machine);

// Returns the path of the driver's file in the driver directory. The file may be missing.
std::filesystem::path InstalledDriver(const platform::Machine& machine);

// Which build of the module to load: the one that is installed, the Windows DLL, or the shared
// object of this system. A processor that cannot run the DLL always gets the shared object.
enum class DriverFile { kAsInstalled, kImage, kNative };

// An export of the module. An exception thrown during the call is rethrown after the call returns.
template <typename Function>
class Export;
template <typename Result, typename... Parameters>
class Export<Result(WINAPI*)(Parameters...)> {
 public:
  using Function = Result(WINAPI*)(Parameters...);
  Result operator()(Parameters... parameters) const {
    const Result result = function(parameters...);
    platform::RethrowPendingException();
    return result;
  }
  Function function = nullptr;
};

// The loaded module with its exports. The constructor links the libraries of this build into the
// driver directory again (companions only where they are installed), so that none is outdated.
class DriverModule {
 public:
  // Throws Failure when the module cannot be loaded or lacks an export.
  explicit DriverModule(platform::Machine& machine, DriverFile file = DriverFile::kAsInstalled);
  ~DriverModule();
  DriverModule(const DriverModule&) = delete;
  DriverModule& operator=(const DriverModule&) = delete;

  HMODULE handle() const { return module_; }

  Export<decltype(&::DrvPrinterEvent)> printerEvent;
  Export<decltype(&::DrvConvertDevMode)> convertDevMode;
  Export<decltype(&::DrvDeviceCapabilities)> deviceCapabilities;
  Export<decltype(&::DrvDocumentProperties)> documentProperties;
  Export<decltype(&::DrvAdvancedDocumentProperties)> advancedDocumentProperties;
  Export<decltype(&::DrvDocumentPropertySheets)> documentPropertySheets;
  Export<decltype(&::PrinterProperties)> printerProperties;

 private:
  HMODULE module_ = nullptr;
};

// A printer handle, opened as the control panel opens it: with all access if the user has it,
// otherwise for use.
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
