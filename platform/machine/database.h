// The file that holds a computer's values: one SQLite table of rows, shared by processes.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "platform/machine/data_value.h"

namespace platform {

// A value is found by its path and name, both in upper case; its row has the name as given.
using RowKey = std::pair<std::u16string, std::u16string>;
struct Row {
  std::u16string name;
  DataValue data;
};
using Rows = std::map<RowKey, Row>;

// Functions throw std::runtime_error with a sentence that says what to do, or with the message of
// SQLite. A call waits for the lock of another process for a few seconds. After that timeout calls
// fail at once until one succeeds, so that a command of many calls waits only once. Every write is
// a transaction, or part of the open one.
class Database {
 public:
  virtual ~Database() = default;
  // Returns a number that changes with every write of another connection.
  virtual int64_t Version() = 0;
  virtual Rows Load() = 0;
  // Removes the value when there is no row.
  virtual void Set(const RowKey& key, const std::optional<Row>& row) = 0;
  // A transaction blocks other writers from its start.
  virtual void Begin() = 0;
  virtual void Commit() = 0;
  virtual void Rollback() noexcept = 0;
};

// Opens or creates a database file. A build without SQLite throws for every file.
std::unique_ptr<Database> OpenDatabase(const std::filesystem::path& file);

}  // namespace platform
