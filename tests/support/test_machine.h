// A fresh computer with one printer and the built module: the native one, or the Windows image that
// the environment's DRIVER_MODULE names.
#pragma once

#include <windows.h>
#include <gtest/gtest.h>
#include <winddiui.h>
#include <winspool.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/desk.h"
#include "platform/machine.h"
#include "tests/support/settings.h"

namespace support {

// Numbers and addresses of any type side by side, to be compared at once.
template <typename... T>
std::vector<ULONG_PTR> Words(T... values) {
  return {(ULONG_PTR)(values)...};
}

// The exports as a caller finds them in the loaded module; throws when one is missing.
struct Exports {
  HMODULE module;
  void* Find(const char* name) const;
#define EXPORT(name) decltype(&::name) name = reinterpret_cast<decltype(&::name)>(Find(#name));
  EXPORT(DrvPrinterEvent)
  EXPORT(DrvUpgradePrinter)
  EXPORT(DevQueryPrint)
  EXPORT(DevQueryPrintEx)
  EXPORT(DrvDocumentEvent)
  EXPORT(DrvQueryJobAttributes)
  EXPORT(DrvQueryColorProfile)
  EXPORT(DrvDocumentProperties)
  EXPORT(DrvAdvancedDocumentProperties)
  EXPORT(PrinterProperties)
  EXPORT(DrvConvertDevMode)
  EXPORT(DrvDeviceCapabilities)
  EXPORT(DrvSplDeviceCaps)
  EXPORT(DrvDocumentPropertySheets)
  EXPORT(DrvDevicePropertySheets)
#undef EXPORT
};

// An open printer, null when it could not be opened.
class OpenedPrinter {
 public:
  // With this access, 0 for none asked for; without one, as the control panel does, with all access
  // or else for use.
  explicit OpenedPrinter(std::u16string name = kPrinter, std::optional<ACCESS_MASK> access = {}) {
    PRINTER_DEFAULTSW defaults = {nullptr, nullptr, access.value_or(PRINTER_ALL_ACCESS)};
    const bool opened = OpenPrinterW(name.data(), &handle_, access == 0u ? nullptr : &defaults);
    if (!opened && !access) OpenPrinterW(name.data(), &handle_, nullptr);
  }
  ~OpenedPrinter() {
    if (handle_ != nullptr) ClosePrinter(handle_);
  }
  OpenedPrinter(const OpenedPrinter&) = delete;
  OpenedPrinter& operator=(const OpenedPrinter&) = delete;
  operator HANDLE() const { return handle_; }

 private:
  HANDLE handle_ = nullptr;
};

// The module's objects in the test program have the resources of the loaded module. At the end of
// each test nothing may be left behind.
class MachineTest : public testing::Test {
 protected:
  MachineTest();
  ~MachineTest() override;

  platform::Machine& machine() { return *machine_; }
  platform::Desk& desk() { return machine_->desk(); }

  std::unique_ptr<platform::Machine> machine_ = platform::Machine::Create();
  HMODULE module_;
  Exports exports_;
};

}  // namespace support
