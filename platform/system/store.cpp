#include "platform/system/store.h"

#include <stdexcept>

#include "platform/system/text.h"

namespace platform {
namespace {

using Run = Database::Run;

constexpr int64_t kSchemaVersion = 1;
constexpr char kSchema[] = R"(
  CREATE TABLE IF NOT EXISTS facts (name TEXT PRIMARY KEY, value) WITHOUT ROWID;
  CREATE TABLE IF NOT EXISTS printers (
    id INTEGER PRIMARY KEY AUTOINCREMENT, folded TEXT UNIQUE NOT NULL, name TEXT NOT NULL,
    driver TEXT NOT NULL, port TEXT NOT NULL, processor TEXT NOT NULL, help TEXT NOT NULL,
    data_file TEXT NOT NULL, attributes INTEGER NOT NULL, administer INTEGER NOT NULL,
    writable INTEGER NOT NULL, record BLOB);
  CREATE TABLE IF NOT EXISTS printer_data (
    printer INTEGER NOT NULL, folded TEXT NOT NULL, name TEXT NOT NULL, type INTEGER NOT NULL,
    bytes BLOB NOT NULL, PRIMARY KEY (printer, folded)) WITHOUT ROWID;
  CREATE TABLE IF NOT EXISTS registry_keys (folded TEXT PRIMARY KEY, name TEXT NOT NULL)
    WITHOUT ROWID;
  CREATE TABLE IF NOT EXISTS registry_values (
    key TEXT NOT NULL, folded TEXT NOT NULL, name TEXT NOT NULL, type INTEGER NOT NULL,
    bytes BLOB NOT NULL, PRIMARY KEY (key, folded)) WITHOUT ROWID;
  PRAGMA user_version = 1;
)";

constexpr char16_t kPrintersKey[] = u"SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\";

// Columns of a printer in the order of ReadPrinter.
#define PRINTER_COLUMNS                                                                    \
  "id, name, driver, port, processor, help, data_file, attributes, administer, writable, " \
  "record"

StoredPrinter ReadPrinter(const Run& run) {
  StoredPrinter printer;
  printer.id = run.Number(0);
  printer.setup.name = run.Text(1);
  printer.setup.driverName = run.Text(2);
  printer.setup.portName = run.Text(3);
  printer.setup.printProcessor = run.Text(4);
  printer.setup.helpFile = run.Text(5);
  printer.setup.dataFile = run.Text(6);
  printer.setup.attributes = run.Word(7);
  printer.setup.administer = run.Number(8) != 0;
  printer.setup.writable = run.Number(9) != 0;
  printer.record = run.Bytes(10);
  return printer;
}

}  // namespace

std::u16string NormalKey(std::u16string_view key) {
  std::u16string normal;
  for (const char16_t c : key) {
    if (c == u'\\' && (normal.empty() || normal.back() == u'\\')) continue;
    normal.push_back(c);
  }
  if (!normal.empty() && normal.back() == u'\\') normal.pop_back();
  return normal;
}

Store::Store(const std::filesystem::path& file) : database_(file), shared_(!file.empty()) {
  database_.Execute("PRAGMA encoding = 'UTF-16le'");
  if (shared_) {
    // Processes die, machines rarely: without a sync a commit outlives its process all the same.
    UseWriteAheadLog();
    database_.Execute("PRAGMA synchronous = NORMAL");
  }
  if (Pragma("PRAGMA user_version") == kSchemaVersion) return;
  Database::Transaction transaction(database_);
  if (const int64_t version = Pragma("PRAGMA user_version"); version > kSchemaVersion) {
    throw std::runtime_error("it was made by a newer version; name another folder");
  }
  database_.Execute(kSchema);
  transaction.Commit();
}

// The change to the log needs the database for itself and does not wait for it; of two processes
// that open a new one at once, the second tries again.
void Store::UseWriteAheadLog() {
  for (;;) {
    try {
      database_.Execute("PRAGMA journal_mode = WAL");
      return;
    } catch (const std::runtime_error&) {
      if (!database_.MayWait()) throw;
    }
  }
}

int64_t Store::Pragma(const char* sql) {
  Run run(database_, sql);
  run.Step();
  return run.Number(0);
}

void Store::Together(const std::function<void()>& body) {
  const std::lock_guard lock(mutex_);
  Database::Transaction transaction(database_);
  try {
    body();
    transaction.Commit();
  } catch (...) {
    factsKnown_ = false;
    last_ = nullptr;
    throw;
  }
}

// ---- facts ----

const Facts& Store::LoadFacts() {
  const int64_t version = shared_ ? Pragma("PRAGMA data_version") : 0;
  if (factsKnown_ && version == factsVersion_) return facts_;
  Facts facts;
  Run run(database_, "SELECT name, value FROM facts");
  while (run.Step()) {
    const std::u16string name = run.Text(0);
    if (name == u"os.major") facts.os.major = run.Word(1);
    if (name == u"os.minor") facts.os.minor = run.Word(1);
    if (name == u"os.servicePack") facts.os.servicePack = run.Word(1);
    if (name == u"os.platform") facts.os.platformId = run.Word(1);
    if (name == u"os.product") facts.os.productType = static_cast<BYTE>(run.Number(1));
    if (name == u"os.verifies") facts.os.verifies = run.Number(1) != 0;
    if (name == u"administrator") facts.administrator = run.Number(1) != 0;
    if (name == u"registry.readable") facts.registryReadable = run.Number(1) != 0;
    if (name == u"registry.writable") facts.registryWritable = run.Number(1) != 0;
    if (name == u"executable") facts.executablePath = run.Text(1);
  }
  facts_ = facts;
  factsVersion_ = version;
  factsKnown_ = true;
  return facts_;
}

Facts Store::ReadFacts() {
  const std::lock_guard lock(mutex_);
  return LoadFacts();
}

void Store::ChangeFacts(const std::function<void(Facts&)>& change) {
  const std::lock_guard lock(mutex_);
  Database::Transaction transaction(database_);
  factsKnown_ = false;
  Facts facts = LoadFacts();
  change(facts);
  factsKnown_ = false;
  SaveFacts(facts);
  transaction.Commit();
}

void Store::SaveFacts(const Facts& facts) {
  const auto put = [this](std::u16string_view name, const auto& value) {
    Run(database_, "INSERT OR REPLACE INTO facts VALUES (?, ?)").Bind(name).Bind(value).Done();
  };
  put(u"os.major", int64_t{facts.os.major});
  put(u"os.minor", int64_t{facts.os.minor});
  put(u"os.servicePack", int64_t{facts.os.servicePack});
  put(u"os.platform", int64_t{facts.os.platformId});
  put(u"os.product", int64_t{facts.os.productType});
  put(u"os.verifies", int64_t{facts.os.verifies});
  put(u"administrator", int64_t{facts.administrator});
  put(u"registry.readable", int64_t{facts.registryReadable});
  put(u"registry.writable", int64_t{facts.registryWritable});
  put(u"executable", std::u16string_view(facts.executablePath));
}

// ---- printers ----

void Store::AddPrinter(const PrinterSetup& setup) {
  const std::u16string folded = FoldCase(setup.name);
  const std::lock_guard lock(mutex_);
  last_ = nullptr;
  Database::Transaction transaction(database_);
  Run(database_,
      "DELETE FROM printer_data WHERE printer = (SELECT id FROM printers WHERE folded = ?)")
      .Bind(folded)
      .Done();
  Run(database_, "DELETE FROM printers WHERE folded = ?").Bind(folded).Done();
  Run(database_,
      "INSERT INTO printers (folded, name, driver, port, processor, help, data_file, attributes,"
      " administer, writable) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)")
      .Bind(folded)
      .Bind(setup.name)
      .Bind(setup.driverName)
      .Bind(setup.portName)
      .Bind(setup.printProcessor)
      .Bind(setup.helpFile)
      .Bind(setup.dataFile)
      .Bind(int64_t{setup.attributes})
      .Bind(int64_t{setup.administer})
      .Bind(int64_t{setup.writable})
      .Done();
  transaction.Commit();
}

bool Store::RemovePrinter(std::u16string_view name) {
  const std::u16string folded = FoldCase(name);
  const std::lock_guard lock(mutex_);
  last_ = nullptr;
  Database::Transaction transaction(database_);
  Run(database_,
      "DELETE FROM printer_data WHERE printer = (SELECT id FROM printers WHERE folded = ?)")
      .Bind(folded)
      .Done();
  const bool removed =
      Run(database_, "DELETE FROM printers WHERE folded = ?").Bind(folded).Done() > 0;
  if (removed) RemoveKey(std::u16string(kPrintersKey) + folded);
  transaction.Commit();
  return removed;
}

std::vector<PrinterSetup> Store::Printers() {
  const std::lock_guard lock(mutex_);
  std::vector<PrinterSetup> printers;
  Run run(database_, "SELECT " PRINTER_COLUMNS " FROM printers ORDER BY id");
  while (run.Step()) printers.push_back(ReadPrinter(run).setup);
  return printers;
}

std::shared_ptr<const StoredPrinter> Store::Found(Run& run) {
  if (!run.Step()) return nullptr;
  auto printer = std::make_shared<const StoredPrinter>(ReadPrinter(run));
  if (!shared_) last_ = printer;
  return printer;
}

std::shared_ptr<const StoredPrinter> Store::FindPrinter(std::u16string_view name) {
  const std::u16string folded = FoldCase(name);
  const std::lock_guard lock(mutex_);
  if (last_ != nullptr && FoldCase(last_->setup.name) == folded) return last_;
  Run run(database_, "SELECT " PRINTER_COLUMNS " FROM printers WHERE folded = ?");
  return Found(run.Bind(folded));
}

std::shared_ptr<const StoredPrinter> Store::FindPrinter(int64_t id) {
  const std::lock_guard lock(mutex_);
  if (last_ != nullptr && last_->id == id) return last_;
  Run run(database_, "SELECT " PRINTER_COLUMNS " FROM printers WHERE id = ?");
  return Found(run.Bind(id));
}

int64_t Store::PrinterId(std::u16string_view name) {
  const auto printer = FindPrinter(name);
  return printer == nullptr ? 0 : printer->id;
}

void Store::SetPermission(std::u16string_view name, bool administer, bool writable) {
  const std::u16string folded = FoldCase(name);
  const std::lock_guard lock(mutex_);
  last_ = nullptr;
  Run(database_, "UPDATE printers SET administer = ?, writable = ? WHERE folded = ?")
      .Bind(int64_t{administer})
      .Bind(int64_t{writable})
      .Bind(folded)
      .Done();
}

void Store::SetRecord(std::u16string_view name, const std::vector<std::byte>& record) {
  const std::u16string folded = FoldCase(name);
  const std::lock_guard lock(mutex_);
  last_ = nullptr;
  Run run(database_, "UPDATE printers SET record = ? WHERE folded = ?");
  if (run.Bind(record).Bind(folded).Done() == 0)
    throw std::runtime_error("the printer is not installed any more");
}

// ---- printer data ----

Store::Write Store::SetData(int64_t printer, std::u16string_view value, const DataValue& data,
                            bool checkRights) {
  const std::u16string folded = FoldCase(value);
  const std::lock_guard lock(mutex_);
  const int kept = Run(database_,
                       "INSERT OR REPLACE INTO printer_data SELECT id, ?2, ?3, ?4, ?5 FROM printers"
                       " WHERE id = ?1 AND (writable OR NOT ?6)")
                       .Bind(printer)
                       .Bind(folded)
                       .Bind(value)
                       .Bind(int64_t{data.type})
                       .Bind(data.bytes)
                       .Bind(int64_t{checkRights})
                       .Done();
  if (kept > 0) return Write::kDone;
  return FindPrinter(printer) == nullptr ? Write::kNoPrinter : Write::kDenied;
}

std::optional<DataValue> Store::Data(int64_t printer, std::u16string_view value) {
  const std::u16string folded = FoldCase(value);
  const std::lock_guard lock(mutex_);
  Run run(database_, "SELECT type, bytes FROM printer_data WHERE printer = ? AND folded = ?");
  run.Bind(printer).Bind(folded);
  if (!run.Step()) return std::nullopt;
  return DataValue{run.Word(0), run.Bytes(1)};
}

std::map<std::u16string, DataValue> Store::AllData(int64_t printer) {
  const std::lock_guard lock(mutex_);
  std::map<std::u16string, DataValue> all;
  Run run(database_, "SELECT name, type, bytes FROM printer_data WHERE printer = ?");
  run.Bind(printer);
  while (run.Step()) all[run.Text(0)] = DataValue{run.Word(1), run.Bytes(2)};
  return all;
}

bool Store::RemoveData(int64_t printer, std::u16string_view value) {
  const std::u16string folded = FoldCase(value);
  const std::lock_guard lock(mutex_);
  return Run(database_, "DELETE FROM printer_data WHERE printer = ? AND folded = ?")
             .Bind(printer)
             .Bind(folded)
             .Done() > 0;
}
}  // namespace platform
