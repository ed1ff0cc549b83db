#include "hearing-service/Database.h"

#include <utility>
#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orn::service {
namespace {

// Another process may have the file open, such as a database browser.
constexpr int kBusyMilliseconds = 10'000, kNapMilliseconds = 10;

int waitWhileBusy(void* givesUp, int naps) {
  const auto& ends = *static_cast<const std::function<bool()>*>(givesUp);
  if (naps * kNapMilliseconds >= kBusyMilliseconds || (ends && ends())) return 0;
  sqlite3_sleep(kNapMilliseconds);
  return 1;
}

/// SQLite would let everybody read it; its journal gets the mode of the file.
void makeFileOfOwner(const std::string& file) {
  if (file == ":memory:") return;
  const int made = open(file.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
  if (made >= 0) close(made);
}

void require(bool succeeded, sqlite3* connection) {
  if (!succeeded) throw DatabaseError(std::string("database: ") + sqlite3_errmsg(connection));
}

}  // namespace

void Database::Closing::operator()(sqlite3* connection) const { sqlite3_close(connection); }

Database::Database(const std::string& file, std::function<bool()> givesUp)
    : givesUp_(std::make_unique<const std::function<bool()>>(std::move(givesUp))) {
  makeFileOfOwner(file);
  sqlite3* connection = nullptr;
  const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;
  const int result = sqlite3_open_v2(file.c_str(), &connection, flags, nullptr);
  connection_.reset(connection);
  require(result == SQLITE_OK, connection);
  sqlite3_busy_handler(connection, waitWhileBusy, const_cast<std::function<bool()>*>(givesUp_.get()));
}

void Database::execute(const char* sql) {
  require(sqlite3_exec(connection_.get(), sql, nullptr, nullptr, nullptr) == SQLITE_OK, connection_.get());
}

void Statement::Finalizing::operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }

Statement::Statement(Database& database, std::string_view sql) {
  sqlite3_stmt* statement = nullptr;
  sqlite3* const connection = database.connection_.get();
  require(sqlite3_prepare_v3(connection, sql.data(), static_cast<int>(sql.size()), SQLITE_PREPARE_PERSISTENT,
                             &statement, nullptr) == SQLITE_OK,
          connection);
  statement_.reset(statement);
}

Query::Query(Statement& statement) : statement_(statement.statement_.get()) {}

Query::~Query() {
  sqlite3_reset(statement_);
  sqlite3_clear_bindings(statement_);
}

void Query::require(bool succeeded) const { service::require(succeeded, sqlite3_db_handle(statement_)); }

Query& Query::bind(std::string_view text) {
  require(sqlite3_bind_text(statement_, ++bound_, text.data(), static_cast<int>(text.size()), SQLITE_STATIC) ==
          SQLITE_OK);
  return *this;
}

Query& Query::bind(std::int64_t number) {
  require(sqlite3_bind_int64(statement_, ++bound_, number) == SQLITE_OK);
  return *this;
}

bool Query::step() {
  const int result = sqlite3_step(statement_);
  require(result == SQLITE_ROW || result == SQLITE_DONE);
  return result == SQLITE_ROW;
}

std::string Query::text(int column) const {
  const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
  return bytes ? std::string(bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement_, column))) : std::string();
}

std::int64_t Query::integer(int column) const { return sqlite3_column_int64(statement_, column); }

// IMMEDIATE: the lock is taken before anything is read, so that two processes can't both wait to write.
Transaction::Transaction(Database& database) : database_(database) { database.execute("BEGIN IMMEDIATE"); }

Transaction::~Transaction() {
  if (!isOpen_) return;
  try {
    database_.execute("ROLLBACK");
  } catch (const DatabaseError&) {  // SQLite has already rolled back
  }
}

void Transaction::commit() {
  database_.execute("COMMIT");
  isOpen_ = false;
}

}  // namespace orn::service
