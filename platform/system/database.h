// A thin owner of one SQLite connection and its prepared statements.
#pragma once

#include <windows.h>

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace platform {

// Failures of the database throw std::runtime_error with a sentence that says what to do, or
// SQLite's own words. Another's lock is waited for a few seconds; after that calls fail at once
// until one gets through, so that a command of many calls does not take many times as long.
class Database {
 public:
  // An empty path keeps the database in memory.
  explicit Database(const std::filesystem::path& file);
  ~Database();
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  void Execute(const char* sql);
  [[noreturn]] void Throw();
  // Whether the last failure was another's lock, and waiting for it may still help.
  bool MayWait();

  // One run of a statement. The text must be a literal: statements are kept by its address.
  class Run {
   public:
    Run(Database& database, const char* sql);
    ~Run();
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    // Binds the next argument. Texts and bytes must live until the run ends.
    Run& Bind(std::u16string_view text);
    Run& Bind(int64_t number);
    Run& Bind(const std::vector<std::byte>& bytes);
    bool Step();  // whether there is a row
    // Steps a statement that gives no rows; answers the number of rows it changed.
    int Done();

    std::u16string Text(int column) const;
    int64_t Number(int column) const;
    DWORD Word(int column) const { return static_cast<DWORD>(Number(column)); }
    std::vector<std::byte> Bytes(int column) const;

   private:
    Database& database_;
    sqlite3_stmt* statement_;
    int next_ = 1;
  };

  // A transaction that is undone unless it is committed. One inside another is part of it: the
  // outer one's commit throws the first failure that anything inside it met, and keeps nothing.
  class Transaction {
   public:
    explicit Transaction(Database& database);
    ~Transaction();
    void Commit();

   private:
    Database& database_;
    bool open_ = true;
    bool outermost_;
  };

 private:
  using Clock = std::chrono::steady_clock;

  bool Waits();
  // Passes a result on; a write that succeeded ends the waiting. Reads succeed beside a writer.
  int Told(int result, bool writes);

  sqlite3* connection_ = nullptr;
  bool inTransaction_ = false;
  std::string failure_;         // the first one of the open transaction
  Clock::time_point end_ = {};  // of waiting for another's lock; none: nothing is waited for
  std::unordered_map<const char*, sqlite3_stmt*> statements_;
};

}  // namespace platform
