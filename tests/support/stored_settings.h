// What a printer keeps: its default record and its printer-level part.
#pragma once

#include <cstring>
#include <vector>

#include "driver/default_settings.h"
#include "tests/support/test_machine.h"

namespace support {

// The factory defaults, signed.
inline kestrel::DriverSettingsBlock FreshSettings() {
  kestrel::DriverSettingsBlock block = {};
  kestrel::FillDefaultSettings(block, nullptr, kPrinter);
  block.Record.Private.Signature = kestrel::SETTINGS_SIGNATURE;
  return block;
}

template <typename T>
std::vector<std::byte> BytesOf(const T& value) {
  const auto* bytes = reinterpret_cast<const std::byte*>(&value);
  return {bytes, bytes + sizeof(value)};
}

// The printer has these settings from now on.
inline void KeepSettings(platform::Machine& machine, const kestrel::DriverSettingsBlock& block) {
  machine.SetDefaultRecord(kPrinter, BytesOf(block.Record));
  machine.SetData(kPrinter, u"Private DevMode", {REG_BINARY, BytesOf(block.Printer)});
}

// The printer-level part that the printer has now; fails the test when there is none.
inline kestrel::PrinterSettingsPart KeptPrinterPart(platform::Machine& machine) {
  kestrel::PrinterSettingsPart part = {};
  const auto data = machine.Data(kPrinter, u"Private DevMode");
  EXPECT_TRUE(data.has_value());
  if (!data) return part;
  EXPECT_EQ(data->bytes.size(), sizeof(part));
  if (data->bytes.size() == sizeof(part)) std::memcpy(&part, data->bytes.data(), sizeof(part));
  return part;
}

}  // namespace support
