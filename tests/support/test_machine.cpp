#include "tests/support/test_machine.h"

#include <cstdlib>

#include "driver/instance.h"
#include "tests/support/bin_dir.h"

namespace support {

namespace {

template <typename Proc>
bool Look(HMODULE module, const char* name, Proc& proc) {
  const FARPROC found = GetProcAddress(module, name);
  proc = reinterpret_cast<Proc>(reinterpret_cast<void*>(found));
  return found != nullptr;
}

}  // namespace

bool Exports::Find(HMODULE module) {
  return Look(module, "DrvPrinterEvent", DrvPrinterEvent) &&
         Look(module, "DrvUpgradePrinter", DrvUpgradePrinter) &&
         Look(module, "DevQueryPrint", DevQueryPrint) &&
         Look(module, "DevQueryPrintEx", DevQueryPrintEx) &&
         Look(module, "DrvDocumentEvent", DrvDocumentEvent) &&
         Look(module, "DrvQueryJobAttributes", DrvQueryJobAttributes) &&
         Look(module, "DrvQueryColorProfile", DrvQueryColorProfile) &&
         Look(module, "DrvDocumentProperties", DrvDocumentProperties) &&
         Look(module, "DrvAdvancedDocumentProperties", DrvAdvancedDocumentProperties) &&
         Look(module, "PrinterProperties", PrinterProperties) &&
         Look(module, "DrvConvertDevMode", DrvConvertDevMode) &&
         Look(module, "DrvDeviceCapabilities", DrvDeviceCapabilities) &&
         Look(module, "DrvSplDeviceCaps", DrvSplDeviceCaps) &&
         Look(module, "DrvDocumentPropertySheets", DrvDocumentPropertySheets) &&
         Look(module, "DrvDevicePropertySheets", DrvDevicePropertySheets);
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
