#include "hearing-service/TestStore.h"

#include <utility>
#include <sys/stat.h>

namespace orn::service {
namespace {

std::string columns(FieldNames names, std::string_view behindEach = "") {
  std::string list;
  for (const std::string_view name : names) list.append(", ").append(name).append(behindEach);
  return list;
}

std::string placeholders(FieldNames names) {
  std::string list;
  for (std::size_t count = 0; count < names.size(); ++count) list += ", ?";
  return list;
}

/// An earlier version let others read the file. Called once it is known to be a database.
void restrictToOwner(const std::string& file) {
  struct stat status {};
  if (stat(file.c_str(), &status) == 0 && S_ISREG(status.st_mode)) chmod(file.c_str(), S_IRUSR | S_IWUSR);
}

Database openDatabase(const std::string& file, std::function<bool()> givesUp) {
  Database database(file, std::move(givesUp));
  const std::string profiles = "CREATE TABLE IF NOT EXISTS profiles (appKey TEXT NOT NULL, userId TEXT NOT NULL" +
                               columns(kProfileFields, " TEXT NOT NULL") + ", PRIMARY KEY (appKey, userId))";
  const std::string tests =
      "CREATE TABLE IF NOT EXISTS tests (id INTEGER PRIMARY KEY AUTOINCREMENT, appKey TEXT NOT NULL, "
      "userId TEXT NOT NULL, createDate INTEGER NOT NULL" +
      columns(kTestFields, " TEXT NOT NULL") + ", UNIQUE (appKey, userId, createDate))";
  Transaction transaction(database);
  database.execute(profiles.c_str());
  database.execute(tests.c_str());
  transaction.commit();
  restrictToOwner(file);
  return database;
}

std::string putProfileSql() {
  return "INSERT OR REPLACE INTO profiles (appKey, userId" + columns(kProfileFields) + ") VALUES (?, ?" +
         placeholders(kProfileFields) + ")";
}

std::string addTestSql() {
  return "INSERT INTO tests (appKey, userId, createDate" + columns(kTestFields) +
         ") VALUES (?1, ?2, MAX(?3, (SELECT COALESCE(MAX(createDate) + 1, ?3) FROM tests "
         "WHERE appKey = ?1 AND userId = ?2))" +
         placeholders(kTestFields) + ")";
}

std::string testsSql() {
  return "SELECT id, createDate" + columns(kTestFields) + " FROM tests WHERE appKey = ? AND userId = ? ORDER BY id";
}

void bindAll(Query& query, const Fields& fields, FieldNames names) {
  for (const std::string_view name : names) query.bind(fields.find(name)->second);
}

}  // namespace

TestStore::TestStore(const std::string& file, std::function<bool()> givesUp)
    : database_(openDatabase(file, std::move(givesUp))),
      putProfile_(database_, putProfileSql()),
      addTest_(database_, addTestSql()),
      tests_(database_, testsSql()) {}

void TestStore::putProfile(const Account& account, const Fields& profile) {
  const std::lock_guard lock(mutex_);
  Transaction transaction(database_);
  Query query(putProfile_);
  bindAll(query.bind(account.appKey).bind(account.userId), profile, kProfileFields);
  query.step();
  transaction.commit();
}

void TestStore::addTest(const Account& account, const Fields& test, std::chrono::system_clock::time_point now) {
  using std::chrono::milliseconds;
  const auto sinceEpoch = std::chrono::duration_cast<milliseconds>(now.time_since_epoch());
  const std::lock_guard lock(mutex_);
  Transaction transaction(database_);
  Query query(addTest_);
  query.bind(account.appKey).bind(account.userId).bind(std::int64_t{sinceEpoch.count()});
  bindAll(query, test, kTestFields);
  query.step();
  transaction.commit();
}

std::vector<StoredTest> TestStore::tests(const Account& account) {
  const std::lock_guard lock(mutex_);
  Query query(tests_);
  query.bind(account.appKey).bind(account.userId);
  std::vector<StoredTest> found;
  while (query.step()) {
    StoredTest test{.id = query.integer(0), .createDate = std::chrono::milliseconds(query.integer(1)), .fields = {}};
    int column = 2;
    for (const std::string_view name : kTestFields) test.fields.emplace(name, query.text(column++));
    found.push_back(std::move(test));
  }
  return found;
}

}  // namespace orn::service
