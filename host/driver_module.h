// The driver's module, put where the spooler keeps it and loaded as the spooler loads it.
#pragma once

#include <windows.h>
#include <winddiui.h>

#include <filesystem>
#include <string>

#include "platform/machine/guard.h"
#include "platform/machine/machine.h"

namespace printhost {

// The version of the driver package that this build belongs to: four numbers with points between.
std::string DriverPackageVersion();

// Links the companion libraries of this build into the driver directory, and puts the package's
// monitors into the system directory as files that have a version.
void InstallCompanions(platform::Machine& machine);

// The driver's file in the driver directory of a computer, whether it is there or not.
std::filesystem::path InstalledDriver(const platform::Machine& machine);

// The two files that the module is built as: the Windows DLL, which this processor has to be able
// to run, and a shared object of this system.
enum class DriverFile { kAsInstalled, kImage, kNative };

// An export of the module. What was thrown while it ran is thrown after it has returned.
template <typename Function>
class Export;
template <typename Answer, typename... Parameters>
class Export<Answer(WINAPI*)(Parameters...)> {
 public:
  using Function = Answer(WINAPI*)(Parameters...);
  Answer operator()(Parameters... parameters) const {
    const Answer answer = function(parameters...);
    platform::RethrowPendingException();
    return answer;
  }
  Function function = nullptr;
};

// The loaded module with its exports. Every construction links the libraries of this build anew
// (the companions only where they are installed), so that none of them is ever an old copy.
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

// An open printer, opened as the control panel does: with all access where the person is allowed
// it, else for use.
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
