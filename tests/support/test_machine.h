// A fresh computer with one printer and the built module in its driver directory: the native one,
// or the file that the environment's DRIVER_MODULE names (the Windows image).
#pragma once

#include <windows.h>
#include <gtest/gtest.h>
#include <winddiui.h>
#include <winspool.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/desk.h"
#include "platform/machine.h"
#include "tests/support/names.h"

namespace support {

// Numbers and addresses of any type side by side, to be compared at once.
template <typename... T>
std::vector<ULONG_PTR> Words(T... values) {
  return {(ULONG_PTR)(values)...};
}

#define EACH_EXPORT(use)                                                                       \
  use(DrvPrinterEvent) use(DrvUpgradePrinter) use(DevQueryPrint) use(DevQueryPrintEx)          \
      use(DrvDocumentEvent) use(DrvQueryJobAttributes) use(DrvQueryColorProfile)               \
          use(DrvDocumentProperties) use(DrvAdvancedDocumentProperties) use(PrinterProperties) \
              use(DrvConvertDevMode) use(DrvDeviceCapabilities) use(DrvSplDeviceCaps)          \
                  use(DrvDocumentPropertySheets) use(DrvDevicePropertySheets)

// The exports as a caller finds them in the loaded module.
struct Exports {
#define DECLARE(name) decltype(&::name) name = nullptr;
  EACH_EXPORT(DECLARE)
#undef DECLARE

  // Looks every export up; false when one is missing.
  bool Find(HMODULE module);
};

// An open printer, closed at the end of its scope. Empty when it could not be opened.
class OpenedPrinter {
 public:
  // As the control panel opens it: with all access where the person is allowed it, else for use.
  explicit OpenedPrinter(std::u16string name = kPrinter);
  // With this access, 0 for none asked for.
  OpenedPrinter(std::u16string name, ACCESS_MASK access) { Open(name, access); }
  ~OpenedPrinter();
  OpenedPrinter(const OpenedPrinter&) = delete;
  OpenedPrinter& operator=(const OpenedPrinter&) = delete;
  operator HANDLE() const { return handle_; }

 private:
  bool Open(std::u16string& name, ACCESS_MASK access);

  HANDLE handle_ = nullptr;
};

// The instance handle of the module's objects in the test program is that of the loaded module, so
// that both find the same resources. At the end of each test nothing may be left behind: no open
// handle, key, module or heap, no block.
class MachineTest : public testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  platform::Machine& machine() { return *machine_; }
  platform::Desk& desk() { return machine_->desk(); }

  std::unique_ptr<platform::Machine> machine_ = platform::Machine::Create();
  HMODULE module_ = nullptr;
  Exports exports_;
  bool expectNothingLeft_ = true;
};

}  // namespace support
