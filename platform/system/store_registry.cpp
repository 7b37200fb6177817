// The registry's half of the store.
#include "platform/system/store.h"
#include "platform/system/text.h"

namespace platform {
namespace {

using Run = Database::Run;

// Keeps a key and all keys above it.
void KeepKey(Database& database, const std::u16string& key) {
  for (size_t end = key.find(u'\\');; end = key.find(u'\\', end + 1)) {
    const std::u16string name = key.substr(0, end);
    const std::u16string folded = FoldCase(name);
    Run(database, "INSERT OR IGNORE INTO registry_keys VALUES (?, ?)")
        .Bind(folded)
        .Bind(name)
        .Done();
    if (end == std::u16string::npos) return;
  }
}

}  // namespace

bool Store::HasKey(std::u16string_view key) {
  const std::u16string folded = FoldCase(NormalKey(key));
  if (folded.empty()) return true;
  const std::lock_guard lock(mutex_);
  Run run(database_, "SELECT 1 FROM registry_keys WHERE folded = ?");
  run.Bind(folded);
  return run.Step();
}

void Store::CreateKey(std::u16string_view key) {
  const std::lock_guard lock(mutex_);
  Database::Transaction transaction(database_);
  KeepKey(database_, NormalKey(key));
  transaction.Commit();
}

void Store::SetRegistry(std::u16string_view key, std::u16string_view value, const DataValue& data) {
  const std::u16string normal = NormalKey(key);
  const std::u16string folded = FoldCase(normal);
  const std::u16string foldedValue = FoldCase(value);
  const std::lock_guard lock(mutex_);
  Database::Transaction transaction(database_);
  KeepKey(database_, normal);
  Run(database_, "INSERT OR REPLACE INTO registry_values VALUES (?, ?, ?, ?, ?)")
      .Bind(folded)
      .Bind(foldedValue)
      .Bind(value)
      .Bind(int64_t{data.type})
      .Bind(data.bytes)
      .Done();
  transaction.Commit();
}

std::optional<DataValue> Store::Registry(std::u16string_view key, std::u16string_view value) {
  const std::u16string folded = FoldCase(NormalKey(key));
  const std::u16string foldedValue = FoldCase(value);
  const std::lock_guard lock(mutex_);
  Run run(database_, "SELECT type, bytes FROM registry_values WHERE key = ? AND folded = ?");
  run.Bind(folded).Bind(foldedValue);
  if (!run.Step()) return std::nullopt;
  return DataValue{run.Word(0), run.Bytes(1)};
}

std::map<std::u16string, DataValue> Store::AllRegistry(std::u16string_view key) {
  const std::u16string folded = FoldCase(NormalKey(key));
  const std::u16string below = folded.empty() ? std::u16string() : folded + u'\\';
  const std::lock_guard lock(mutex_);
  std::map<std::u16string, DataValue> all;
  Run run(database_,
          "SELECT k.name, v.name, v.type, v.bytes FROM registry_values v"
          " JOIN registry_keys k ON k.folded = v.key"
          " WHERE v.key = ?1 OR substr(v.key, 1, length(?2)) = ?2");
  run.Bind(folded).Bind(below);
  while (run.Step()) {
    all[run.Text(0) + u'\\' + run.Text(1)] = DataValue{run.Word(2), run.Bytes(3)};
  }
  return all;
}

bool Store::RemoveRegistry(std::u16string_view key, std::u16string_view value) {
  const std::u16string folded = FoldCase(NormalKey(key));
  const std::u16string foldedValue = FoldCase(value);
  const std::lock_guard lock(mutex_);
  return Run(database_, "DELETE FROM registry_values WHERE key = ? AND folded = ?")
             .Bind(folded)
             .Bind(foldedValue)
             .Done() > 0;
}

void Store::RemoveKey(std::u16string_view key) {
  const std::u16string folded = FoldCase(NormalKey(key));
  const std::u16string below = folded + u'\\';
  const std::lock_guard lock(mutex_);
  Database::Transaction transaction(database_);
  Run(database_, "DELETE FROM registry_values WHERE key = ?1 OR substr(key, 1, length(?2)) = ?2")
      .Bind(folded)
      .Bind(below)
      .Done();
  Run(database_,
      "DELETE FROM registry_keys WHERE folded = ?1 OR substr(folded, 1, length(?2)) = ?2")
      .Bind(folded)
      .Bind(below)
      .Done();
  transaction.Commit();
}

}  // namespace platform
