#include "tests/support/test_machine.h"

#include <cstdlib>
#include <type_traits>

#include "driver/instance.h"
#include "tests/support/bin_dir.h"

namespace support {

bool Exports::Find(HMODULE module) {
  const auto look = [module](const char* name, auto& function) {
    const FARPROC found = GetProcAddress(module, name);
    function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(
        reinterpret_cast<void*>(found));
    return found != nullptr;
  };
#define LOOK(name) &&look(#name, name)
  return true EACH_EXPORT(LOOK);
#undef LOOK
}

OpenedPrinter::OpenedPrinter(std::u16string name) {
  if (!Open(name, PRINTER_ALL_ACCESS)) Open(name, 0);
}

bool OpenedPrinter::Open(std::u16string& name, ACCESS_MASK access) {
  PRINTER_DEFAULTSW defaults = {nullptr, nullptr, access};
  return OpenPrinterW(name.data(), &handle_, access == 0 ? nullptr : &defaults) != FALSE;
}

OpenedPrinter::~OpenedPrinter() {
  if (handle_ != nullptr) ClosePrinter(handle_);
}

void MachineTest::SetUp() {
  platform::PrinterSetup setup;
  setup.name = kPrinter;
  machine_->AddPrinter(setup);
  const std::u16string path = machine_->driverDirectory() + u"\\3\\" + kModuleFile;
  const char* given = std::getenv("DRIVER_MODULE");
  machine_->InstallModule(path, given != nullptr ? given : support::Built("QM610rDRV1.so"));
  module_ = LoadLibraryW(path.c_str());
  ASSERT_NE(module_, nullptr);
  ASSERT_TRUE(exports_.Find(module_));
  kestrel::SetModuleInstance(module_);
}

void MachineTest::TearDown() {
  machine_->faults.Clear();
  EXPECT_NO_THROW(platform::RethrowKept());
  kestrel::SetModuleInstance(nullptr);
  if (module_ != nullptr) FreeLibrary(module_);
  if (!expectNothingLeft_) return;
  EXPECT_EQ(machine_->OpenModules(), 0);
  EXPECT_EQ(machine_->OpenPrinterHandles(), 0);
  EXPECT_EQ(machine_->OpenRegistryKeys(), 0);
  EXPECT_EQ(machine_->LiveHeaps(), 0);
  EXPECT_EQ(machine_->LiveAllocations(), 0);
}

}  // namespace support
