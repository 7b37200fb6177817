#include "platform/system/database.h"

#include <sqlite3.h>

#include <cerrno>
#include <stdexcept>
#include <thread>

namespace platform {
namespace {
// Long enough for any queue of writers; a killed writer's lock is gone at once.
constexpr std::chrono::milliseconds kPatience{3500};

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
}  // namespace

Database::Database(const std::filesystem::path& file) {
  const std::string name = file.empty() ? ":memory:" : file.string();
  constexpr int kFlags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;
  if (sqlite3_open_v2(name.c_str(), &connection_, kFlags, nullptr) != SQLITE_OK) {
    const std::string reason = Sentence(connection_);
    sqlite3_close(connection_);
    throw std::runtime_error(reason);
  }
  sqlite3_busy_handler(
      connection_, [](void* self, int) { return static_cast<Database*>(self)->Waits() ? 1 : 0; },
      this);
}

Database::~Database() {
  for (const auto& [sql, statement] : statements_) sqlite3_finalize(statement);
  sqlite3_close(connection_);
}

void Database::Throw() {
  const std::string sentence = Sentence(connection_);
  if (inTransaction_ && failure_.empty()) failure_ = sentence;
  throw std::runtime_error(sentence);
}

bool Database::Waits() {
  const auto now = Clock::now();
  if (end_ == Clock::time_point() || now >= end_ + kPatience) end_ = now + kPatience;
  if (now >= end_) return false;
  std::this_thread::sleep_for(std::chrono::milliseconds(5));
  return true;
}

bool Database::MayWait() { return (sqlite3_errcode(connection_) & 0xFF) == SQLITE_BUSY && Waits(); }

int Database::Told(int result, bool writes) {
  if (writes && (result == SQLITE_OK || result == SQLITE_ROW || result == SQLITE_DONE)) end_ = {};
  return result;
}

void Database::Execute(const char* sql) {
  if (Told(sqlite3_exec(connection_, sql, nullptr, nullptr, nullptr), true) != SQLITE_OK) Throw();
}

Database::Run::Run(Database& database, const char* sql) : database_(database) {
  sqlite3_stmt*& kept = database.statements_[sql];
  if (kept == nullptr &&
      sqlite3_prepare_v3(database.connection_, sql, -1, SQLITE_PREPARE_PERSISTENT, &kept,
                         nullptr) != SQLITE_OK) {
    database.Throw();
  }
  statement_ = kept;
}

Database::Run::~Run() {
  sqlite3_reset(statement_);
  sqlite3_clear_bindings(statement_);
}

Database::Run& Database::Run::Bind(std::u16string_view text) {
  const int bytes = static_cast<int>(text.size() * sizeof(char16_t));
  // An empty text is not NULL.
  const void* data = text.data() == nullptr ? u"" : static_cast<const void*>(text.data());
  if (sqlite3_bind_text16(statement_, next_++, data, bytes, SQLITE_STATIC) != SQLITE_OK) {
    database_.Throw();
  }
  return *this;
}

Database::Run& Database::Run::Bind(int64_t number) {
  if (sqlite3_bind_int64(statement_, next_++, number) != SQLITE_OK) database_.Throw();
  return *this;
}

Database::Run& Database::Run::Bind(const std::vector<std::byte>& bytes) {
  const void* data = bytes.empty() ? "" : static_cast<const void*>(bytes.data());
  if (sqlite3_bind_blob64(statement_, next_++, data, bytes.size(), SQLITE_STATIC) != SQLITE_OK) {
    database_.Throw();
  }
  return *this;
}

bool Database::Run::Step() {
  // What SQLite has undone by itself is not continued without its beginning.
  if (!database_.failure_.empty()) throw std::runtime_error(database_.failure_);
  const int result =
      database_.Told(sqlite3_step(statement_), sqlite3_stmt_readonly(statement_) == 0);
  if (result == SQLITE_ROW) return true;
  if (result != SQLITE_DONE) database_.Throw();
  return false;
}

int Database::Run::Done() {
  while (Step()) {
  }
  return sqlite3_changes(database_.connection_);
}

std::u16string Database::Run::Text(int column) const {
  const auto* text = static_cast<const char16_t*>(sqlite3_column_text16(statement_, column));
  const int bytes = sqlite3_column_bytes16(statement_, column);
  return text == nullptr ? std::u16string()
                         : std::u16string(text, static_cast<size_t>(bytes) / sizeof(char16_t));
}

int64_t Database::Run::Number(int column) const { return sqlite3_column_int64(statement_, column); }

std::vector<std::byte> Database::Run::Bytes(int column) const {
  const auto* data = static_cast<const std::byte*>(sqlite3_column_blob(statement_, column));
  const int size = sqlite3_column_bytes(statement_, column);
  return data == nullptr ? std::vector<std::byte>() : std::vector<std::byte>(data, data + size);
}

Database::Transaction::Transaction(Database& database)
    : database_(database), outermost_(!database.inTransaction_) {
  if (!outermost_) return;
  // Taking the write lock at once lets the busy timeout work for a transaction that reads first.
  database_.Execute("BEGIN IMMEDIATE");
  database_.inTransaction_ = true;
}

Database::Transaction::~Transaction() {
  if (!open_ || !outermost_) return;
  database_.inTransaction_ = false;
  database_.failure_.clear();
  try {
    database_.Execute("ROLLBACK");
  } catch (const std::exception&) {
    // SQLite has already undone it.
  }
}

void Database::Transaction::Commit() {
  if (outermost_) {
    if (!database_.failure_.empty()) throw std::runtime_error(database_.failure_);
    database_.Execute("COMMIT");
    database_.inTransaction_ = false;
  }
  open_ = false;
}

}  // namespace platform
