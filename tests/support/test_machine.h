// A fixture with a fresh simulated computer, one printer and the module under test.
#pragma once

#include <windows.h>
#include <gtest/gtest.h>
#include <winddiui.h>
#include <winspool.h>

#include <optional>
#include <string>
#include <vector>

#include "driver/instance.h"
#include "platform/gdi32/gdi.h"
#include "platform/machine/desk.h"
#include "platform/machine/guard.h"
#include "platform/machine/machine.h"
#include "tests/support/exports.h"
#include "tests/support/settings.h"

namespace support {

// A printer handle; null when the printer could not be opened.
struct OpenedPrinter : std::unique_ptr<void, decltype(&ClosePrinter)> {
  // Opens with this access; 0 passes no PRINTER_DEFAULTS. Without a value it opens as the control
  // panel does: with all access or, if that is denied, for use.
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

// The module's code in the test program uses the resources of the loaded module. A test fails when
// it leaves a handle, heap or drawing object open.
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
    EXPECT_EQ(Live(), std::vector(6, 0));
  }

  platform::Machine& machine() { return *machine_; }
  platform::Desk& desk() { return machine_->desk(); }
  // Returns the numbers of open printers, modules and registry keys, of heaps and their blocks, and
  // of drawing objects.
  std::vector<int> Live() {
    return {machine().OpenPrinterHandles(), machine().OpenModules(),
            machine().OpenRegistryKeys(),   machine().LiveHeaps(),
            machine().LiveAllocations(),    platform::LiveGdiObjects() + platform::LiveDcs()};
  }
  // Runs call() again and again; the n-th operation of a kind fails in the n-th run, until a run
  // has no failure. Expects that each run leaves nothing open and calls check(kind, failed) after
  // it. Returns the number of failures.
  template <typename Call, typename Check>
  int ForEachFault(std::initializer_list<platform::Fault> kinds, Call call, Check check) {
    int failures = 0;
    for (const platform::Fault kind : kinds) {
      bool failed = true;
      for (int n = 1; failed && !HasFailure(); ++n) {
        SCOPED_TRACE(testing::Message() << "failure " << n << " of kind " << int(kind));
        const auto before = Live();
        machine().faults.FailNth(kind, n);
        call();
        failed = machine().faults.HasFailed(kind);
        machine().faults.Clear();
        EXPECT_EQ(Live(), before);
        check(kind, failed);
        failures += failed;
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
