// Machine's printers, printer data and registry: names to numbers, then the store.
#include "platform/system/machine_impl.h"

namespace platform {

void Machine::Together(const std::function<void()>& body) { impl_->store.Together(body); }

void Machine::AddPrinter(const PrinterSetup& setup) { impl_->store.AddPrinter(setup); }

bool Machine::RemovePrinter(std::u16string_view name) { return impl_->store.RemovePrinter(name); }

std::vector<PrinterSetup> Machine::Printers() const { return impl_->store.Printers(); }

std::optional<PrinterSetup> Machine::FindPrinter(std::u16string_view name) const {
  const auto printer = impl_->store.FindPrinter(name);
  if (!printer) return std::nullopt;
  return printer->setup;
}

void Machine::SetPermission(std::u16string_view name, bool administer, bool writable) {
  impl_->store.SetPermission(name, administer, writable);
}

void Machine::RequireWritable() {
  impl_->store.ChangeFacts([](Facts&) {});
}

void Machine::SetDefaultRecord(std::u16string_view name, const std::vector<std::byte>& record) {
  impl_->store.SetRecord(name, record);
}

std::vector<std::byte> Machine::DefaultRecord(std::u16string_view name) const {
  const auto printer = impl_->store.FindPrinter(name);
  return printer ? printer->record : std::vector<std::byte>();
}

void Machine::SetData(std::u16string_view printer, std::u16string_view value, DataValue data) {
  impl_->store.SetData(impl_->store.PrinterId(printer), value, data, false);
}

std::optional<DataValue> Machine::Data(std::u16string_view printer,
                                       std::u16string_view value) const {
  return impl_->store.Data(impl_->store.PrinterId(printer), value);
}

std::map<std::u16string, DataValue> Machine::AllData(std::u16string_view printer) const {
  return impl_->store.AllData(impl_->store.PrinterId(printer));
}

bool Machine::RemoveData(std::u16string_view printer, std::u16string_view value) {
  return impl_->store.RemoveData(impl_->store.PrinterId(printer), value);
}

void Machine::SetRegistry(std::u16string_view key, std::u16string_view value, DataValue data) {
  impl_->store.SetRegistry(key, value, data);
}

std::optional<DataValue> Machine::Registry(std::u16string_view key,
                                           std::u16string_view value) const {
  return impl_->store.Registry(key, value);
}

std::map<std::u16string, DataValue> Machine::AllRegistry(std::u16string_view key) const {
  return impl_->store.AllRegistry(key);
}

bool Machine::RemoveRegistry(std::u16string_view key, std::u16string_view value) {
  return impl_->store.RemoveRegistry(key, value);
}

void Machine::RemoveRegistryKey(std::u16string_view key) { impl_->store.RemoveKey(key); }

void Machine::SetRegistryAccess(bool readable, bool writable) {
  impl_->store.ChangeFacts([=](Facts& facts) {
    facts.registryReadable = readable;
    facts.registryWritable = writable;
  });
}

}  // namespace platform
