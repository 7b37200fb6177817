// Settings and printers as values of the store.
#include <algorithm>
#include <concepts>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <tuple>

#include "platform/machine/code_page.h"
#include "platform/machine/machine_impl.h"
#include "platform/machine/text.h"

namespace platform {
namespace {

constexpr WCHAR kComputer[] = u"COMPUTER";  // settings, and the id of the newest printer
constexpr WCHAR kSettings[] = u"facts";
constexpr WCHAR kLastPrinter[] = u"printers";
constexpr WCHAR kPrinters[] = u"PRINTERS";
constexpr WCHAR kRecords[] = u"RECORDS";  // default records, by printer

// The parts of a stored value, in their stored order.
auto PartsOf(auto& settings) {
  return std::tie(settings.administrator, settings.executablePath, settings.os.major,
                  settings.os.minor, settings.os.platformId, settings.os.productType,
                  settings.os.servicePack, settings.os.verifies, settings.registryReadable,
                  settings.registryWritable, settings.highContrast, settings.ansiPage,
                  settings.codePage932, settings.hideExtensions);
}
auto PrinterParts(auto& id, auto& setup) {
  return std::tie(id, setup.driverName, setup.portName, setup.printProcessor, setup.helpFile,
                  setup.dataFile, setup.attributes, setup.administer, setup.writable);
}

// A value of several parts is a text: each part, numbers as digits, followed by NUL.
std::u16string TextOf(const std::u16string& part) { return part; }
std::u16string TextOf(std::integral auto part) { return ToUtf16(std::to_string(part)); }
void FromText(std::u16string& part, std::u16string text) { part = std::move(text); }
void FromText(std::integral auto& part, const std::u16string& text) {
  part = static_cast<std::remove_reference_t<decltype(part)>>(std::atoll(ToUtf8(text).c_str()));
}

template <typename Parts>
DataValue Packed(const Parts& parts) {
  std::u16string text;
  std::apply([&](const auto&... part) { ((text += TextOf(part) + u'\0'), ...); }, parts);
  DataValue value;
  value.bytes.resize(text.size() * sizeof(WCHAR));
  std::memcpy(value.bytes.data(), text.data(), value.bytes.size());
  return value;
}

// Parts that the value lacks stay unchanged.
template <typename Parts>
void Unpack(const DataValue& value, Parts parts) {
  std::u16string text(value.bytes.size() / sizeof(WCHAR), u'\0');
  std::memcpy(text.data(), value.bytes.data(), text.size() * sizeof(WCHAR));
  size_t at = 0;
  const auto assign = [&](auto& part) {
    if (at >= text.size()) return;
    const size_t end = std::min(text.find(u'\0', at), text.size());
    FromText(part, text.substr(at, end - at));
    at = end + 1;
  };
  std::apply([&](auto&... part) { (assign(part), ...); }, parts);
}

}  // namespace

std::u16string DataPath(int64_t printer) { return u"DATA\\" + TextOf(printer); }

std::shared_ptr<const CachedState> Machine::Impl::ReadState() {
  const uint64_t version = store.Version();
  {
    const std::lock_guard lock(mutex);
    if (cached != nullptr && cached->version == version) return cached;
  }
  auto read = std::make_shared<CachedState>();
  read->version = version;
  if (const auto settings = store.Get(kComputer, kSettings))
    Unpack(*settings, PartsOf(read->settings));
  for (const auto& [folded, row] : store.All(kPrinters)) {
    StoredPrinter& printer = read->printers[folded];
    printer.setup.name = row.name;
    Unpack(row.data, PrinterParts(printer.id, printer.setup));
  }
  const std::lock_guard lock(mutex);
  return cached = read;
}

void Machine::Impl::ChangeSettings(const std::function<void(MachineSettings&)>& change) {
  store.Transaction([&] {
    MachineSettings settings = ReadState()->settings;
    change(settings);
    store.Put(kComputer, kSettings, Packed(PartsOf(settings)));
  });
}

std::shared_ptr<const StoredPrinter> Machine::Impl::FindPrinter(std::u16string_view name) {
  const auto all = ReadState();
  const auto found = all->printers.find(FoldCase(name));
  if (found == all->printers.end()) return nullptr;
  return {all, &found->second};
}

std::shared_ptr<const StoredPrinter> Machine::Impl::FindPrinter(const PrinterHandle& handle) {
  const auto printer = FindPrinter(handle.name);
  return printer != nullptr && printer->id == handle.id ? printer : nullptr;
}

bool Machine::Impl::DropPrinter(std::u16string_view name) {
  const auto printer = FindPrinter(name);
  if (!printer) return false;
  store.Remove(kPrinters, name);
  store.Remove(kRecords, name);
  store.RemoveAll(DataPath(printer->id));
  return true;
}

void Machine::Transaction(const std::function<void()>& body) { impl_->store.Transaction(body); }

void Machine::RequireWritable() {
  impl_->ChangeSettings([](MachineSettings&) {});
}

OsVersion Machine::os() const { return impl_->ReadState()->settings.os; }
void Machine::SetOs(const OsVersion& os) {
  impl_->ChangeSettings([&os](MachineSettings& settings) { settings.os = os; });
}

bool Machine::administrator() const { return impl_->ReadState()->settings.administrator; }
void Machine::SetAdministrator(bool yes) {
  impl_->ChangeSettings([yes](MachineSettings& settings) { settings.administrator = yes; });
}

bool Machine::highContrast() const { return impl_->ReadState()->settings.highContrast; }
void Machine::SetHighContrast(bool yes) {
  impl_->ChangeSettings([yes](MachineSettings& settings) { settings.highContrast = yes; });
}

void Machine::Impl::LoadCodePages() {
  const MachineSettings settings = ReadState()->settings;
  ansiPage =
      CodePage::Find(settings.ansiPage) != nullptr ? settings.ansiPage : MachineSettings().ansiPage;
  codePage932 = settings.codePage932;
  // A file that was read under another page is read anew.
  const std::lock_guard lock(profiles.mutex);
  profiles.Forget();
}

UINT Machine::ansiPage() const { return impl_->ReadState()->settings.ansiPage; }
void Machine::SetAnsiPage(UINT page) {
  if (CodePage::Find(page) == nullptr) throw std::invalid_argument("no such code page");
  impl_->ChangeSettings([page](MachineSettings& settings) { settings.ansiPage = page; });
  impl_->LoadCodePages();
}
bool Machine::codePage932() const {
  const auto state = impl_->ReadState();
  return state->settings.codePage932 || state->settings.ansiPage == 932;
}
void Machine::SetCodePage932(bool installed) {
  impl_->ChangeSettings(
      [installed](MachineSettings& settings) { settings.codePage932 = installed; });
  impl_->LoadCodePages();
}

bool Machine::hidesExtensions() const { return impl_->ReadState()->settings.hideExtensions; }
void Machine::SetHidesExtensions(bool yes) {
  impl_->ChangeSettings([yes](MachineSettings& settings) { settings.hideExtensions = yes; });
}

std::u16string Machine::executablePath() const {
  return impl_->ReadState()->settings.executablePath;
}
void Machine::SetExecutablePath(std::u16string path) {
  impl_->ChangeSettings([&path](MachineSettings& settings) { settings.executablePath = path; });
}

void Machine::AddPrinter(const PrinterSetup& setup) {
  Store& store = impl_->store;
  store.Transaction([&] {
    impl_->DropPrinter(setup.name);
    int64_t id = 0;  // never reused
    if (const auto last = store.Get(kComputer, kLastPrinter)) Unpack(*last, std::tie(id));
    ++id;
    store.Put(kComputer, kLastPrinter, Packed(std::tie(id)));
    store.Put(kPrinters, setup.name, Packed(PrinterParts(id, setup)));
  });
}

bool Machine::RemovePrinter(std::u16string_view name) {
  bool removed = false;
  Transaction([&] {
    removed = impl_->DropPrinter(name);
    if (removed) RemoveRegistryKey(PrinterKey(name));
  });
  return removed;
}

std::vector<PrinterSetup> Machine::Printers() const {
  std::map<int64_t, PrinterSetup> byId;
  const auto state = impl_->ReadState();
  for (const auto& [folded, printer] : state->printers) {
    byId[printer.id] = printer.setup;
  }
  std::vector<PrinterSetup> printers;
  for (const auto& [id, setup] : byId) printers.push_back(setup);
  return printers;
}

std::optional<PrinterSetup> Machine::FindPrinter(std::u16string_view name) const {
  const auto printer = impl_->FindPrinter(name);
  if (!printer) return std::nullopt;
  return printer->setup;
}

void Machine::SetPermission(std::u16string_view name, bool administer, bool writable) {
  Transaction([&] {
    const auto found = impl_->FindPrinter(name);
    if (found == nullptr) return;
    StoredPrinter printer = *found;
    printer.setup.administer = administer;
    printer.setup.writable = writable;
    impl_->store.Put(kPrinters, printer.setup.name,
                     Packed(PrinterParts(printer.id, printer.setup)));
  });
}

void Machine::SetDefaultRecord(std::u16string_view name, const std::vector<std::byte>& record) {
  Transaction([&] {
    if (!FindPrinter(name)) throw std::runtime_error("the printer is not installed any more");
    impl_->store.Put(kRecords, name, {0, record});
  });
}

std::vector<std::byte> Machine::DefaultRecord(std::u16string_view name) const {
  const auto record = impl_->store.Get(kRecords, name);
  return record ? record->bytes : std::vector<std::byte>();
}

void Machine::SetData(std::u16string_view printer, std::u16string_view value, DataValue data) {
  Transaction([&] {
    const auto found = impl_->FindPrinter(printer);
    if (found) impl_->store.Put(DataPath(found->id), value, std::move(data));
  });
}

std::optional<DataValue> Machine::Data(std::u16string_view printer,
                                       std::u16string_view value) const {
  const auto found = impl_->FindPrinter(printer);
  if (!found) return std::nullopt;
  return impl_->store.Get(DataPath(found->id), value);
}

std::map<std::u16string, DataValue> Machine::AllData(std::u16string_view printer) const {
  std::map<std::u16string, DataValue> all;
  const auto found = impl_->FindPrinter(printer);
  if (!found) return all;
  for (auto& [folded, row] : impl_->store.All(DataPath(found->id))) all[row.name] = row.data;
  return all;
}

bool Machine::RemoveData(std::u16string_view printer, std::u16string_view value) {
  const auto found = impl_->FindPrinter(printer);
  return found && impl_->store.Remove(DataPath(found->id), value);
}

}  // namespace platform
