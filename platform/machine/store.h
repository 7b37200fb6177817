// The persistent values of a computer, by path and name; letter case is ignored. With a state
// directory they are stored in its database: another process reads the old or the new value, and a
// killed process loses no committed value. Functions throw std::runtime_error when the database
// fails.
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "platform/machine/database.h"
#include "platform/machine/faults.h"

namespace platform {

class Store {
 public:
  // Stores the values in memory when the path is empty. Fault::kStore applies to writes.
  Store(const std::filesystem::path& file, Faults& faults);

  // Commits all writes of `body`, or none when `body` throws or one of its writes failed, which is
  // thrown at the end. Concurrent readers see the old values; concurrent writers block. A nested
  // transaction is part of the outer one.
  void Transaction(const std::function<void()>& body);

  std::optional<DataValue> Get(std::u16string_view path, std::u16string_view name);
  // Returns all values of a path by their folded names.
  std::map<std::u16string, Row> All(std::u16string_view path);
  void Put(std::u16string_view path, std::u16string_view name, DataValue data);
  // Returns true when the value existed.
  bool Remove(std::u16string_view path, std::u16string_view name);
  void RemoveAll(std::u16string_view path);
  // Returns a number that changes with every write, by any process.
  uint64_t Version();

 private:
  void Refresh();
  void Set(const RowKey& key, std::optional<Row> row);

  std::recursive_mutex mutex_;  // one connection, one caller at a time
  Faults& faults_;
  std::unique_ptr<Database> database_;  // null: in memory only
  int64_t version_ = -1;                // of the database that rows_ was read from
  Rows rows_;
  uint64_t storeVersion_ = 0;
  bool inTransaction_ = false;
  std::string failure_;  // the first one of the transaction
};

}  // namespace platform
