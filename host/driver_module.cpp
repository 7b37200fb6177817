#include "host/driver_module.h"

#include <windows.h>
#include <winspool.h>

#include <filesystem>
#include <system_error>

#include "host/failure.h"
#include "host/utf8.h"

namespace printhost {
namespace {

constexpr char16_t kModule[] = u"QM610rDRV1";
constexpr const char16_t* kCompanions[] = {u"QM610rLIB", u"QM610rBAR"};
// The driver package's monitors. The version page shows the versions of their files.
constexpr const char16_t* kMonitors[] = {u"QM6_1rLMNT", u"QM6_1rPM_UI", u"QM6_1rPMCOM",
                                         u"QM6_1rPMLAN"};
constexpr WORD kVersion[] = {14, 0, 1, 20};

// The build writes shared objects beside the program and the x64 DLL into build/windows/x64.
std::filesystem::path ProgramFolder() {
  return std::filesystem::read_symlink("/proc/self/exe").parent_path();
}
std::filesystem::path SharedObject(std::u16string_view name) {
  return ProgramFolder() / (ToUtf8(name) + ".so");
}
#if defined(__x86_64__)
constexpr bool kCanRunImages = true;
#else
constexpr bool kCanRunImages = false;
#endif
std::filesystem::path DriverToInstall(const platform::Machine& machine, DriverFile file) {
  std::error_code ignored;
  const bool native = file == DriverFile::kNative || !kCanRunImages ||
                      (file == DriverFile::kAsInstalled &&
                       read_symlink(InstalledDriver(machine), ignored).extension() == ".so");
  return native ? SharedObject(kModule)
                : ProgramFolder().parent_path().parent_path() / "windows/x64/QM610rDRV1.dll";
}

std::u16string InstalledPath(const platform::Machine& machine, std::u16string_view name) {
  return machine.driverDirectory().append(u"\\3\\").append(name).append(u".DLL");
}

bool IsInstalled(const platform::Machine& machine, std::u16string_view name) {
  std::error_code error;
  const auto status =
      std::filesystem::symlink_status(machine.HostPath(InstalledPath(machine, name)), error);
  return std::filesystem::exists(status);
}

void Install(platform::Machine& machine, std::u16string_view name,
             const std::filesystem::path& source) {
  if (!std::filesystem::exists(source))
    throw Failure{kFailed, source.string() + " is missing; build it with \"./run list\""};
  machine.InstallModule(InstalledPath(machine, name), source);
}

template <typename Function>
void FindExport(HMODULE module, const char* name, Export<Function>& entry) {
  const FARPROC address = GetProcAddress(module, name);
  if (address == nullptr) throw Failure{kFailed, std::string("the module does not export ") + name};
  entry.function = reinterpret_cast<Function>(reinterpret_cast<void (*)()>(address));
}

}  // namespace

std::string DriverPackageVersion() {
  std::string text;
  for (const WORD part : kVersion) text += '.' + std::to_string(part);
  return text.substr(1);
}

void InstallCompanions(platform::Machine& machine) {
  for (const char16_t* name : kCompanions) Install(machine, name, SharedObject(name));
  for (const char16_t* name : kMonitors) {
    const std::u16string path =
        machine.systemDirectory().append(u"\\").append(name).append(u".DLL");
    if (!machine.ReadFile(path))
      machine.WriteVersionedFile(path, MAKELONG(kVersion[1], kVersion[0]),
                                 MAKELONG(kVersion[3], kVersion[2]));
  }
}

std::filesystem::path InstalledDriver(const platform::Machine& machine) {
  return machine.HostPath(InstalledPath(machine, kModule));
}

DriverModule::DriverModule(platform::Machine& machine, DriverFile file) {
  Install(machine, kModule, DriverToInstall(machine, file));
  for (const char16_t* name : kCompanions) {
    if (IsInstalled(machine, name)) Install(machine, name, SharedObject(name));
  }
  const std::u16string path = InstalledPath(machine, kModule);
  module_ = LoadLibraryW(path.c_str());
  if (module_ == nullptr)
    throw Failure{
        kFailed, ToUtf8(path) + " cannot be loaded (error " + std::to_string(GetLastError()) + ")"};
  FindExport(module_, "DrvPrinterEvent", printerEvent);
  FindExport(module_, "DrvConvertDevMode", convertDevMode);
  FindExport(module_, "DrvDeviceCapabilities", deviceCapabilities);
  FindExport(module_, "DrvDocumentProperties", documentProperties);
  FindExport(module_, "DrvAdvancedDocumentProperties", advancedDocumentProperties);
  FindExport(module_, "DrvDocumentPropertySheets", documentPropertySheets);
  FindExport(module_, "PrinterProperties", printerProperties);
}

DriverModule::~DriverModule() { FreeLibrary(module_); }

PrinterHandle::PrinterHandle(std::u16string name) : name_(std::move(name)) {
  PRINTER_DEFAULTSW allAccess = {nullptr, nullptr, PRINTER_ALL_ACCESS};
  if (!OpenPrinterW(name_.data(), &printer_, &allAccess) &&
      !OpenPrinterW(name_.data(), &printer_, nullptr))
    throw Failure{kFailed, "the printer \"" + ToUtf8(name_) + "\" cannot be opened (error " +
                               std::to_string(GetLastError()) + ")"};
}

PrinterHandle::~PrinterHandle() { ClosePrinter(printer_); }

}  // namespace printhost
