// The settings of the test printer that the spooler stores, and records of applications.
#pragma once

#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include "driver/default_settings.h"
#include "driver/settings_block.h"
#include "platform/machine/machine.h"

namespace support {

constexpr char16_t kPrinter[] = u"Label Printer";

inline std::vector<std::byte> BytesOf(const void* data, size_t size) {
  const auto* bytes = static_cast<const std::byte*>(data);
  return {bytes, bytes + size};
}

template <typename T>
std::vector<std::byte> BytesOf(const T& value) {
  return BytesOf(&value, sizeof value);
}

// Returns the factory defaults of a printer with a valid signature.
inline kestrel::DriverSettingsBlock DefaultBlock(const char16_t* name = kPrinter) {
  kestrel::DriverSettingsBlock block{};
  kestrel::FillDefaultSettings(block, nullptr, name);
  block.Record.Private.Signature = kestrel::SETTINGS_SIGNATURE;
  return block;
}

// Stores a block as the default record and the printer data of a printer.
inline void StoreBlock(platform::Machine& machine, const kestrel::DriverSettingsBlock& block,
                       const char16_t* name = kPrinter) {
  machine.SetDefaultRecord(name, BytesOf(&block.Record, sizeof block.Record));
  machine.SetData(name, u"Private DevMode",
                  {REG_BINARY, BytesOf(&block.Printer, kestrel::kPrinterPartSize)});
}

// Reads and writes a number at an offset of a stored record or block.
template <typename T = int16_t>
T At(const void* record, size_t offset) {
  T value;
  std::memcpy(&value, static_cast<const std::byte*>(record) + offset, sizeof value);
  return value;
}
template <typename T = int16_t>
void Put(void* record, size_t offset, T value) {
  std::memcpy(static_cast<std::byte*>(record) + offset, &value, sizeof value);
}

// Returns the stored printer-level part of the test printer. Throws when it is missing or has
// another size.
inline kestrel::PrinterSettingsPart StoredPrinterPart(platform::Machine& machine) {
  const auto bytes = machine.Data(kPrinter, u"Private DevMode").value().bytes;
  if (bytes.size() != kestrel::kPrinterPartSize) throw std::length_error("a part of another size");
  return At<kestrel::PrinterSettingsPart>(bytes.data(), 0);
}

}  // namespace support
