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
// The driver package's monitors, of which the sheets show the versions.
constexpr const char16_t* kMonitors[] = {u"QM6_1rLMNT", u"QM6_1rPM_UI", u"QM6_1rPMCOM",
                                         u"QM6_1rPMLAN"};
constexpr WORD kVersion[] = {14, 0, 1, 20};

// Shared objects stand beside the program in its build folder, the DLL in one of its own.
std::filesystem::path BuildFolder() {
  return std::filesystem::read_symlink("/proc/self/exe").parent_path();
}
std::filesystem::path Built(std::u16string_view name) {
  return BuildFolder() / (ToUtf8(name) + ".so");
}
#if defined(__x86_64__)
constexpr bool kRunsImages = true;
#else
constexpr bool kRunsImages = false;
#endif
std::filesystem::path BuiltDriver(const platform::Machine& machine, DriverFile file) {
  std::error_code none;
  const bool native = file == DriverFile::kNative || !kRunsImages ||
                      (file == DriverFile::kAsInstalled &&
                       read_symlink(InstalledDriver(machine), none).extension() == ".so");
  return native ? Built(kModule)
                : BuildFolder().parent_path().parent_path() / "windows/x64/QM610rDRV1.dll";
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
             const std::filesystem::path& built) {
  if (!std::filesystem::exists(built))
    throw Failure{kFailed, built.string() + " is missing; build it with \"./run list\""};
  machine.InstallModule(InstalledPath(machine, name), built);
}

template <typename Function>
void Find(HMODULE module, const char* name, Export<Function>& entry) {
  const FARPROC found = GetProcAddress(module, name);
  if (found == nullptr) throw Failure{kFailed, std::string("the module does not export ") + name};
  entry.function = reinterpret_cast<Function>(reinterpret_cast<void (*)()>(found));
}

}  // namespace

std::string DriverPackageVersion() {
  std::string text;
  for (const WORD part : kVersion) text += '.' + std::to_string(part);
  return text.substr(1);
}

void InstallCompanions(platform::Machine& machine) {
  for (const char16_t* name : kCompanions) Install(machine, name, Built(name));
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
  Install(machine, kModule, BuiltDriver(machine, file));
  for (const char16_t* name : kCompanions) {
    if (IsInstalled(machine, name)) Install(machine, name, Built(name));
  }
  const std::u16string path = InstalledPath(machine, kModule);
  module_ = LoadLibraryW(path.c_str());
  if (module_ == nullptr)
    throw Failure{
        kFailed, ToUtf8(path) + " cannot be loaded (error " + std::to_string(GetLastError()) + ")"};
  Find(module_, "DrvPrinterEvent", printerEvent);
  Find(module_, "DrvConvertDevMode", convertDevMode);
  Find(module_, "DrvDeviceCapabilities", deviceCapabilities);
  Find(module_, "DrvDocumentProperties", documentProperties);
  Find(module_, "DrvAdvancedDocumentProperties", advancedDocumentProperties);
  Find(module_, "DrvDocumentPropertySheets", documentPropertySheets);
  Find(module_, "PrinterProperties", printerProperties);
}

DriverModule::~DriverModule() {
  if (module_ != nullptr) FreeLibrary(module_);
}

PrinterHandle::PrinterHandle(std::u16string name) : name_(std::move(name)) {
  PRINTER_DEFAULTSW all = {nullptr, nullptr, PRINTER_ALL_ACCESS};
  if (!OpenPrinterW(name_.data(), &printer_, &all) &&
      !OpenPrinterW(name_.data(), &printer_, nullptr))
    throw Failure{kFailed, "the printer \"" + ToUtf8(name_) + "\" cannot be opened (error " +
                               std::to_string(GetLastError()) + ")"};
}

PrinterHandle::~PrinterHandle() { ClosePrinter(printer_); }

}  // namespace printhost
