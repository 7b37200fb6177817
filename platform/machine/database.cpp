#include "platform/machine/database.h"

#include <sqlite3.h>

#include <cerrno>
#include <chrono>
#include <stdexcept>
#include <thread>

namespace platform {
namespace {

// Long enough for a queue of writers. The lock of a killed process is released at once.
constexpr std::chrono::milliseconds kLockTimeout{3500};

constexpr int64_t kSchemaVersion = 2;
constexpr char kTable[] = R"(
  CREATE TABLE rows (path TEXT NOT NULL, folded TEXT NOT NULL, name TEXT NOT NULL,
    type INTEGER NOT NULL, bytes BLOB NOT NULL, PRIMARY KEY (path, folded)) WITHOUT ROWID;
  PRAGMA user_version = 2;
)";

std::string Sentence(sqlite3* connection) {
  int code = sqlite3_errcode(connection) & 0xFF;
  if (code == SQLITE_IOERR && sqlite3_system_errno(connection) == ENOSPC) code = SQLITE_FULL;
  switch (code) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return "another program holds computer.sqlite locked; end it or wait for it, then try again";
    case SQLITE_FULL:
      return "the disk is full; free some space, then try again";
    case SQLITE_READONLY:
    case SQLITE_PERM:
    case SQLITE_CANTOPEN:
      return "the folder or its computer.sqlite cannot be written; make both writable, or name "
             "another folder";
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
      return "computer.sqlite is damaged; move it away, or name another folder";
    default:
      return sqlite3_errmsg(connection);
  }
}

class SqliteDatabase : public Database {
 public:
  explicit SqliteDatabase(const std::filesystem::path& file);

  int64_t Version() override { return Number("PRAGMA data_version"); }
  Rows Load() override;
  void Set(const RowKey& key, const std::optional<Row>& row) override;
  void Begin() override { Execute("BEGIN IMMEDIATE"); }
  void Commit() override { Execute("COMMIT"); }
  void Rollback() noexcept override;

 private:
  class Run;
  using Clock = std::chrono::steady_clock;

  void Execute(const char* sql);
  void MakeTable();
  int64_t Number(const char* sql);
  bool WaitForLock();
  int Complete(int result, bool writes);
  [[noreturn]] void Throw();

  struct Closing {
    void operator()(sqlite3* connection) const { sqlite3_close(connection); }
  };
  std::unique_ptr<sqlite3, Closing> connection_;
  Clock::time_point deadline_ = {};  // of the current wait for a lock; epoch: not waiting
};

// One execution of a statement. Bound values must outlive it.
class SqliteDatabase::Run {
 public:
  Run(SqliteDatabase& database, const char* sql) : database_(database) {
    Bound(sqlite3_prepare_v2(database.connection_.get(), sql, -1, &statement_, nullptr));
  }
  ~Run() { sqlite3_finalize(statement_); }
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;

  Run& Bind(const std::u16string& text) {
    const int bytes = static_cast<int>(text.size() * sizeof(char16_t));
    return Bound(sqlite3_bind_text16(statement_, next_++, text.data(), bytes, SQLITE_STATIC));
  }
  Run& Bind(DWORD number) { return Bound(sqlite3_bind_int64(statement_, next_++, number)); }
  Run& Bind(const std::vector<std::byte>& bytes) {
    // An empty blob is not NULL.
    const void* data = bytes.empty() ? "" : static_cast<const void*>(bytes.data());
    return Bound(sqlite3_bind_blob64(statement_, next_++, data, bytes.size(), SQLITE_STATIC));
  }
  // Returns true when the statement produced a row.
  bool Step() {
    const bool writes = sqlite3_stmt_readonly(statement_) == 0;
    const int result = database_.Complete(sqlite3_step(statement_), writes);
    if (result != SQLITE_ROW && result != SQLITE_DONE) database_.Throw();
    return result == SQLITE_ROW;
  }

  std::u16string Text(int column) const {
    const auto* text = static_cast<const char16_t*>(sqlite3_column_text16(statement_, column));
    const int bytes = sqlite3_column_bytes16(statement_, column);
    return {text, text + static_cast<size_t>(bytes) / sizeof(char16_t)};
  }
  int64_t Number(int column) const { return sqlite3_column_int64(statement_, column); }
  std::vector<std::byte> Bytes(int column) const {
    const auto* data = static_cast<const std::byte*>(sqlite3_column_blob(statement_, column));
    return {data, data + sqlite3_column_bytes(statement_, column)};
  }

 private:
  Run& Bound(int result) {
    if (result != SQLITE_OK) database_.Throw();
    return *this;
  }

  SqliteDatabase& database_;
  sqlite3_stmt* statement_ = nullptr;
  int next_ = 1;
};

SqliteDatabase::SqliteDatabase(const std::filesystem::path& file) {
  constexpr int kFlags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;
  sqlite3* connection = nullptr;
  const int opened = sqlite3_open_v2(file.c_str(), &connection, kFlags, nullptr);
  connection_.reset(connection);
  if (opened != SQLITE_OK) Throw();
  const auto onBusy = [](void* self, int) {
    return static_cast<SqliteDatabase*>(self)->WaitForLock() ? 1 : 0;
  };
  sqlite3_busy_handler(connection_.get(), onBusy, this);
  Execute("PRAGMA encoding = 'UTF-16le'");
  // Switching to the write-ahead log needs exclusive access, for which SQLite does not call the
  // busy handler. Of two processes that open a new database at once, the second retries.
  while (sqlite3_exec(connection_.get(), "PRAGMA journal_mode = WAL", nullptr, nullptr, nullptr) !=
         0) {
    if ((sqlite3_errcode(connection_.get()) & 0xFF) != SQLITE_BUSY || !WaitForLock()) Throw();
  }
  // A commit outlives its process without a sync; only a power failure can lose it.
  Execute("PRAGMA synchronous = NORMAL");
  if (Number("PRAGMA user_version") == kSchemaVersion) return;
  Begin();
  MakeTable();
  Commit();
}

void SqliteDatabase::MakeTable() {
  const int64_t version = Number("PRAGMA user_version");
  if (version == kSchemaVersion) return;
  if (version != 0) throw std::runtime_error("another version made it; name another folder");
  Execute(kTable);
}

void SqliteDatabase::Throw() { throw std::runtime_error(Sentence(connection_.get())); }

bool SqliteDatabase::WaitForLock() {
  const auto now = Clock::now();
  if (deadline_ == Clock::time_point() || now >= deadline_ + kLockTimeout)
    deadline_ = now + kLockTimeout;
  if (now >= deadline_) return false;
  std::this_thread::sleep_for(std::chrono::milliseconds(5));
  return true;
}

// Ends the wait after a successful write and returns the result. Reads succeed while another
// process writes, and prove nothing.
int SqliteDatabase::Complete(int result, bool writes) {
  if (writes && (result == SQLITE_OK || result == SQLITE_ROW || result == SQLITE_DONE))
    deadline_ = {};
  return result;
}

void SqliteDatabase::Execute(const char* sql) {
  if (Complete(sqlite3_exec(connection_.get(), sql, nullptr, nullptr, nullptr), true) != SQLITE_OK)
    Throw();
}

int64_t SqliteDatabase::Number(const char* sql) {
  Run run(*this, sql);
  run.Step();
  return run.Number(0);
}

Rows SqliteDatabase::Load() {
  Rows rows;
  Run run(*this, "SELECT path, folded, name, type, bytes FROM rows");
  while (run.Step()) {
    DataValue data = {static_cast<DWORD>(run.Number(3)), run.Bytes(4)};
    rows[{run.Text(0), run.Text(1)}] = {run.Text(2), std::move(data)};
  }
  return rows;
}

void SqliteDatabase::Set(const RowKey& key, const std::optional<Row>& row) {
  if (!row) {
    Run run(*this, "DELETE FROM rows WHERE path = ? AND folded = ?");
    run.Bind(key.first).Bind(key.second).Step();
    return;
  }
  Run run(*this, "INSERT OR REPLACE INTO rows VALUES (?, ?, ?, ?, ?)");
  run.Bind(key.first).Bind(key.second).Bind(row->name).Bind(row->data.type).Bind(row->data.bytes);
  run.Step();
}

void SqliteDatabase::Rollback() noexcept {
  // SQLite may have rolled back already; then this fails, which is fine.
  sqlite3_exec(connection_.get(), "ROLLBACK", nullptr, nullptr, nullptr);
}

}  // namespace

std::unique_ptr<Database> OpenDatabase(const std::filesystem::path& file) {
  return std::make_unique<SqliteDatabase>(file);
}

}  // namespace platform
