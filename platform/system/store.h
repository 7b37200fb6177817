// What a computer keeps: its facts, printers with their data, and the registry, in one SQLite
// database. Every write is one transaction, so that another process reads the old or the new value
// and a killed one loses nothing committed. Failures of the database throw std::runtime_error.
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/machine.h"
#include "platform/system/database.h"

namespace platform {

// What the computer is and who is asking.
struct Facts {
  OsVersion os;
  bool administrator = true;
  bool registryReadable = true;
  bool registryWritable = true;
  std::u16string executablePath = u"C:\\WINDOWS\\system32\\app.exe";
};

// One printer and the number that stays its own as long as it exists.
struct StoredPrinter {
  int64_t id = 0;
  PrinterSetup setup;
  std::vector<std::byte> record;
};

class Store {
 public:
  // An empty path keeps everything in memory.
  explicit Store(const std::filesystem::path& file);

  // Keeps all that the body writes, or nothing when it throws or a write in it failed, which is
  // thrown then. Others read what was and wait with their writes.
  void Together(const std::function<void()>& body);

  Facts ReadFacts();
  void ChangeFacts(const std::function<void(Facts&)>& change);

  void AddPrinter(const PrinterSetup& setup);
  bool RemovePrinter(std::u16string_view name);
  std::vector<PrinterSetup> Printers();
  // Null: there is none.
  std::shared_ptr<const StoredPrinter> FindPrinter(std::u16string_view name);
  std::shared_ptr<const StoredPrinter> FindPrinter(int64_t id);
  // The printer's number; 0: there is none of that name.
  int64_t PrinterId(std::u16string_view name);
  void SetPermission(std::u16string_view name, bool administer, bool writable);
  void SetRecord(std::u16string_view name, const std::vector<std::byte>& record);

  enum class Write { kDone, kNoPrinter, kDenied };
  // Keeps a value of a printer; with checkRights only where its permission allows it.
  Write SetData(int64_t printer, std::u16string_view value, const DataValue& data,
                bool checkRights);
  std::optional<DataValue> Data(int64_t printer, std::u16string_view value);
  std::map<std::u16string, DataValue> AllData(int64_t printer);
  bool RemoveData(int64_t printer, std::u16string_view value);

  bool HasKey(std::u16string_view key);
  void CreateKey(std::u16string_view key);
  void SetRegistry(std::u16string_view key, std::u16string_view value, const DataValue& data);
  std::optional<DataValue> Registry(std::u16string_view key, std::u16string_view value);
  std::map<std::u16string, DataValue> AllRegistry(std::u16string_view key);
  bool RemoveRegistry(std::u16string_view key, std::u16string_view value);
  void RemoveKey(std::u16string_view key);  // with all at and below it

 private:
  void UseWriteAheadLog();
  std::shared_ptr<const StoredPrinter> Found(Database::Run& run);
  int64_t Pragma(const char* sql);  // a literal; its first number
  const Facts& LoadFacts();
  void SaveFacts(const Facts& facts);

  std::recursive_mutex mutex_;  // one connection, one caller at a time
  Database database_;
  bool shared_;  // whether other processes may write
  bool factsKnown_ = false;
  int64_t factsVersion_ = 0;
  Facts facts_;
  std::shared_ptr<const StoredPrinter> last_;  // the printer found last, of what nobody shares
};

// A registry key without empty parts: "A\\B" and "\A\B\" name the key "A\B".
std::u16string NormalKey(std::u16string_view key);

}  // namespace platform
