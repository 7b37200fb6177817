// The file in which a computer's values lie: one SQLite table of rows, shared by processes.
#pragma once

#include <windows.h>

#include <chrono>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "platform/machine.h"

struct sqlite3;

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
  explicit Database(const std::filesystem::path& file);

  // A number that changes with every write of others.
  int64_t Version();
  Rows Load();
  // Nothing removes the value.
  void Set(const RowKey& key, const std::optional<Row>& row);
  // A transaction holds others' writes back from its begin on.
  void Begin() { Execute("BEGIN IMMEDIATE"); }
  void Commit() { Execute("COMMIT"); }
  void Rollback() noexcept;

 private:
  class Run;
  using Clock = std::chrono::steady_clock;

  void Execute(const char* sql);
  void MakeTable();
  int64_t Number(const char* sql);
  bool Waits();
  int Told(int result, bool writes);
  [[noreturn]] void Throw();

  struct Closing {
    void operator()(sqlite3* connection) const;
  };
  std::unique_ptr<sqlite3, Closing> connection_;
  Clock::time_point end_ = {};  // of waiting for another's lock; none: nothing is waited for
};

}  // namespace platform
