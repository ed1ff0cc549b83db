#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "hearing-service/Database.h"
#include "hearing-service/Fields.h"

namespace orn::service {

/// Whose profile and tests: a user of an application.
struct Account {
  std::string appKey;
  std::string userId;
};

constexpr std::array<std::string_view, 5> kProfileFields = {"sdkCode", "gender", "phone", "birthday", "username"};

constexpr std::array<std::string_view, 17> kTestFields = {
    "left125hz",   "left250hz",   "left500hz",  "left1000hz", "left2000hz",  "left4000hz",
    "left8000hz",  "right125hz",  "right250hz", "right500hz", "right1000hz", "right2000hz",
    "right4000hz", "right8000hz", "base",       "headset",    "correctName"};
constexpr std::size_t kThresholdCount = 14;  ///< That many are the first of the kTestFields.

struct StoredTest {
  std::int64_t id = 0;
  std::chrono::milliseconds createDate{};  ///< Since 1970.
  Fields fields;                           ///< The kTestFields.
};

/// The profiles and tests of accounts, in SQLite; texts may have any content. Any thread; every change is one
/// transaction. Everything throws DatabaseError on a failure and has then changed nothing.
class TestStore {
 public:
  /// Makes the file and its tables if they are missing, and makes the file readable by its owner alone; ":memory:"
  /// keeps everything in memory. For `givesUp` see Database.
  explicit TestStore(const std::string& file, std::function<bool()> givesUp = {});

  /// Replaces the account's profile; takes the kProfileFields.
  void putProfile(const Account& account, const Fields& profile);

  /// Takes the kTestFields. A test's date is at least 1 ms after that of the account's previous test, whatever the
  /// clock says.
  void addTest(const Account& account, const Fields& test, std::chrono::system_clock::time_point now);

  /// The account's tests, in the order of their submission.
  std::vector<StoredTest> tests(const Account& account);

 private:
  std::mutex mutex_;
  Database database_;
  Statement putProfile_, addTest_, tests_;
};

}  // namespace orn::service
