// A fresh computer with one printer and the module under test.
#pragma once

#include <windows.h>
#include <gtest/gtest.h>
#include <winddiui.h>
#include <winspool.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "driver/instance.h"
#include "platform/gdi32/gdi.h"
#include "platform/machine/desk.h"
#include "platform/machine/machine.h"
#include "tests/support/exports.h"
#include "tests/support/settings.h"

namespace support {

// Numbers and addresses of any type side by side, to be compared at once.
template <typename... T>
std::vector<ULONG_PTR> Words(T... values) {
  return {(ULONG_PTR)(values)...};
}

// An open printer, null when it could not be opened.
struct OpenedPrinter : std::unique_ptr<void, decltype(&ClosePrinter)> {
  // With this access, 0 for none asked for; without one, as the control panel does, with all access
  // or else for use.
  explicit OpenedPrinter(std::u16string name = kPrinter, std::optional<ACCESS_MASK> access = {})
      : unique_ptr(nullptr, ClosePrinter) {
    HANDLE handle = nullptr;
    PRINTER_DEFAULTSW defaults = {nullptr, nullptr, access.value_or(PRINTER_ALL_ACCESS)};
    const bool opened = OpenPrinterW(name.data(), &handle, access == 0u ? nullptr : &defaults);
    if (!opened && !access) OpenPrinterW(name.data(), &handle, nullptr);
    reset(handle);
  }
  operator HANDLE() const { return get(); }
};

// The module's objects in the test program have the resources of the loaded module. At the end of
// each test nothing may be left behind.
class MachineTest : public testing::Test {
 protected:
  MachineTest() {
    machine_->AddPrinter({.name = kPrinter});
    kestrel::SetModuleInstance(module_);
  }
  ~MachineTest() override {
    machine_->faults.Clear();
    EXPECT_NO_THROW(platform::RethrowPendingException());
    kestrel::SetModuleInstance(nullptr);
    FreeLibrary(module_);
    EXPECT_EQ(Live(), Words(0, 0, 0, 0, 0, 0));
  }

  platform::Machine& machine() { return *machine_; }
  platform::Desk& desk() { return machine_->desk(); }
  // What is open or held: printers, modules, registry keys, heaps, their blocks, drawing objects.
  std::vector<ULONG_PTR> Live() {
    return Words(machine().OpenPrinterHandles(), machine().OpenModules(),
                 machine().OpenRegistryKeys(), machine().LiveHeaps(), machine().LiveAllocations(),
                 platform::LiveGdiObjects() + platform::LiveDcs());
  }
  // Runs call() with each allocation (spooler call, …) failing once, and once without a failure;
  // nothing is left behind. check(kind, whether something failed) looks at what came out. Answers
  // how many failures there were.
  template <typename Call, typename Check>
  int WalkFaults(std::initializer_list<platform::Fault> kinds, Call call, Check check) {
    int failures = 0;
    for (const platform::Fault kind : kinds) {
      bool struck = true;
      for (int n = 1; struck; ++n) {
        SCOPED_TRACE(testing::Message()
                     << "failure " << n << " of kind " << static_cast<int>(kind));
        const auto before = Live();
        machine().faults.FailNth(kind, n);
        call();
        struck = machine().faults.HasFailed(kind);
        machine().faults.Clear();
        EXPECT_EQ(Live(), before);
        check(kind, struck);
        failures += struck;
        if (HasFailure() || n > 5000) return -1;
      }
    }
    return failures;
  }

  std::unique_ptr<platform::Machine> machine_ = platform::Machine::Create();
  HMODULE module_ = [this] {
    const std::u16string path = machine().driverDirectory() + u"\\3\\QM610rDRV1.DLL";
    machine().InstallModule(path, DriverModule());
    return LoadLibraryW(path.c_str());
  }();
  Exports exports_{module_};
};

}  // namespace support
