#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace orn::service {

/// What SQLite said.
class DatabaseError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// One SQLite connection. One thread at a time; everything throws DatabaseError on a failure.
class Database {
 public:
  /// Makes the file, for its owner alone, if there is none; ":memory:" keeps everything in memory. While another
  /// process holds the file, an operation waits, for up to 10 s, or until `givesUp`, which is called on its thread,
  /// says true; then it fails.
  explicit Database(const std::string& file, std::function<bool()> givesUp = {});

  void execute(const char* sql);

 private:
  friend class Statement;
  struct Closing {
    void operator()(sqlite3* connection) const;
  };
  std::unique_ptr<const std::function<bool()>> givesUp_;  // stays where it is when the database moves
  std::unique_ptr<sqlite3, Closing> connection_;
};

/// A prepared statement, which must not outlive its database.
class Statement {
 public:
  Statement(Database& database, std::string_view sql);

 private:
  friend class Query;
  struct Finalizing {
    void operator()(sqlite3_stmt* statement) const;
  };
  std::unique_ptr<sqlite3_stmt, Finalizing> statement_;
};

/// One run of a statement: bind its parameters in their order, then step through its rows.
class Query {
 public:
  explicit Query(Statement& statement);
  ~Query();
  Query(const Query&) = delete;
  Query& operator=(const Query&) = delete;

  /// The text must live as long as the query.
  Query& bind(std::string_view text);
  Query& bind(std::int64_t number);

  /// False once there are no more rows.
  bool step();
  std::string text(int column) const;
  std::int64_t integer(int column) const;

 private:
  void require(bool succeeded) const;

  sqlite3_stmt* statement_;
  int bound_ = 0;
};

/// Rolls back unless it was committed.
class Transaction {
 public:
  explicit Transaction(Database& database);
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  void commit();

 private:
  Database& database_;
  bool isOpen_ = true;
};

}  // namespace orn::service
