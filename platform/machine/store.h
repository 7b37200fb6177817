// What a computer keeps: values by path and name, letter case ignored. Those of a state directory
// lie in its database as well: another process reads the old or the new value and a killed one
// loses nothing kept. Failures of the database throw std::runtime_error.
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/machine/database.h"
#include "platform/machine/machine.h"

namespace platform {

class Store {
 public:
  // An empty path keeps everything in memory. A fault strikes writes.
  Store(const std::filesystem::path& file, Faults& faults);

  // Keeps all that the body writes, or nothing when it throws or a write in it failed, which is
  // thrown then. Others read what was and wait with their writes.
  void Together(const std::function<void()>& body);

  std::optional<DataValue> Get(std::u16string_view path, std::u16string_view name);
  // All values of a path, by their folded names.
  std::map<std::u16string, Row> All(std::u16string_view path);
  void Put(std::u16string_view path, std::u16string_view name, DataValue data);
  // Whether there was such a value.
  bool Remove(std::u16string_view path, std::u16string_view name);
  void RemoveAll(std::u16string_view path);
  // A number that is another one after every change.
  uint64_t State();

 private:
  struct Change {
    RowKey key;
    std::optional<Row> before;
  };
  void Refresh();
  void Set(const RowKey& key, std::optional<Row> row);
  void Undo();

  std::recursive_mutex mutex_;  // one connection, one caller at a time
  Faults& faults_;
  std::unique_ptr<Database> database_;  // null: in memory alone
  int64_t version_ = -1;                // of the database when it was read
  Rows rows_;
  uint64_t state_ = 0;
  bool together_ = false;
  std::vector<Change> changes_;  // of what is done together
  std::string failure_;          // the first one of what is done together
};

}  // namespace platform
