// The file in which a computer's values lie: one SQLite table of rows, shared by processes.
#pragma once

#include <windows.h>

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "platform/machine/machine.h"

namespace platform {

// A value by its path and its name, both in one letter case; and as it was given.
using RowKey = std::pair<std::u16string, std::u16string>;
struct Row {
  std::u16string name;
  DataValue data;
};
using Rows = std::map<RowKey, Row>;

// Failures throw std::runtime_error with a sentence that says what to do, or SQLite's own words.
// Another's lock is waited for a few seconds; after that calls fail at once until one gets through,
// so that a command of many calls does not take many times as long. Every write is a transaction,
// or part of the open one.
class Database {
 public:
  virtual ~Database() = default;
  // Returns a number that changes with every write of another connection.
  virtual int64_t Version() = 0;
  virtual Rows Load() = 0;
  // Removes the value when there is no row.
  virtual void Set(const RowKey& key, const std::optional<Row>& row) = 0;
  // A transaction blocks other writers from its begin on.
  virtual void Begin() = 0;
  virtual void Commit() = 0;
  virtual void Rollback() noexcept = 0;
};

// Opens or creates a database file. A build without SQLite throws for every file.
std::unique_ptr<Database> OpenDatabase(const std::filesystem::path& file);

}  // namespace platform
