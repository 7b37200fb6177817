#include "tests/support/test_machine.h"

#include <cstdlib>
#include <stdexcept>

#include "driver/instance.h"
#include "tests/support/bin_dir.h"

namespace support {
namespace {

HMODULE InstallModule(platform::Machine& machine) {
  const std::u16string path = machine.driverDirectory() + u"\\3\\QM610rDRV1.DLL";
  const char* given = std::getenv("DRIVER_MODULE");
  machine.InstallModule(path, given != nullptr ? given : Built("QM610rDRV1.so"));
  return LoadLibraryW(path.c_str());
}

}  // namespace

void* Exports::Find(const char* name) const {
  void* const found = reinterpret_cast<void*>(GetProcAddress(module, name));
  if (found == nullptr) throw std::runtime_error(std::string("no export ") + name);
  return found;
}

MachineTest::MachineTest() : module_(InstallModule(*machine_)), exports_{module_} {
  machine_->AddPrinter({.name = kPrinter});
  kestrel::SetModuleInstance(module_);
}

MachineTest::~MachineTest() {
  machine_->faults.Clear();
  EXPECT_NO_THROW(platform::RethrowKept());
  kestrel::SetModuleInstance(nullptr);
  FreeLibrary(module_);
  EXPECT_EQ(Words(machine_->OpenModules(), machine_->OpenPrinterHandles(),
                  machine_->OpenRegistryKeys(), machine_->LiveHeaps(), machine_->LiveAllocations()),
            Words(0, 0, 0, 0, 0))
      << "modules, printers, registry keys, heaps, blocks";
}

}  // namespace support
