// A computer with two printers of the driver and the companion libraries in place.
#pragma once

#include <cstring>
#include <string>
#include <vector>

#include "driver/settings_block.h"
#include "tests/support/bin_dir.h"
#include "tests/support/open_sheet.h"
#include "tests/support/test_machine.h"

namespace kestrel {

constexpr char16_t kSecond[] = u"倉庫 2F";

class Road : public support::SheetTest {
 protected:
  void SetUp() override {
    SheetTest::SetUp();
    platform::PrinterSetup second;
    second.name = kSecond;
    machine().AddPrinter(second);
    for (const char* companion : {"QM610rLIB", "QM610rBAR"}) {
      const std::u16string file(companion, companion + std::strlen(companion));
      machine().InstallModule(machine().driverDirectory() + u"\\3\\" + file + u".DLL",
                              support::Built(std::string(companion) + ".so"));
    }
    Install(support::kPrinter);
    Install(kSecond);
  }

  // What the spooler does with a new printer: tells the driver, then keeps the driver's default
  // record.
  void Install(const std::u16string& name) {
    std::u16string text = name;
    EXPECT_TRUE(exports_.DrvPrinterEvent(text.data(), PRINTER_EVENT_INITIALIZE, 0, 0));
    SettingsRecord record = {};
    LONG size = sizeof(record);
    EXPECT_TRUE(exports_.DrvConvertDevMode(text.data(), nullptr, &record.Public, &size,
                                           CDM_DRIVER_DEFAULT));
    machine().SetDefaultRecord(name, support::BytesOf(record));
  }

  // A user-default sheet whose result the spooler keeps.
  void ShowUserDefault(const std::u16string& printer, support::Steps steps) {
    const support::SheetAsk ask = {.kind = support::SheetKind::kUserDefault, .printer = printer};
    ASSERT_EQ(Show(ask, std::move(steps)).result, CPSUI_OK);
  }

  // The settings of a printer as an application gets them, with its own record when it has one.
  SettingsRecord Resolve(const std::u16string& printer, const SettingsRecord* input = nullptr) {
    const support::OpenedPrinter opened(printer);
    std::u16string name = printer;
    SettingsRecord record = {};
    auto* given = const_cast<DEVMODEW*>(input != nullptr ? &input->Public : nullptr);
    const DWORD mode = input != nullptr ? DM_COPY | DM_MODIFY : DM_COPY;
    EXPECT_EQ(
        exports_.DrvDocumentProperties(nullptr, opened, name.data(), &record.Public, given, mode),
        IDOK);
    return record;
  }

  std::vector<std::byte> Data(const std::u16string& printer, const char16_t* value) {
    const auto data = machine().Data(printer, value);
    return data ? data->bytes : std::vector<std::byte>();
  }
};

}  // namespace kestrel
