#include <ORNHearingTestSDK/contracts/UserDefaultsContract.h>

#include <limits>
#include <string>
#include <thread>
#include <vector>

#include <ORNHearingTestSDK/contracts/Checking.h>

namespace orn::contract {
namespace {

/// Values of each type, also at its limits; the dates are whole seconds, which every store keeps.
std::vector<DefaultsValue> values() {
  using Integers = std::numeric_limits<std::int64_t>;
  using Date = std::chrono::system_clock::time_point;
  return {true,
          false,
          std::int64_t{0},
          std::int64_t{1},
          Integers::max(),
          Integers::min(),
          0.0,
          1.0,
          -1.0 / 3,
          1e300,
          std::string(),
          std::string(" a<b>&\"'\n"),
          std::string("1"),
          std::string("a\0\x01\x1B\x7F\r\n", 7),
          std::string("\xFF\xC0\x80\xED\xA0\x80\xEF\xBF\xBE"),
          std::string("\xE5\x90\xAC\xE5\x8A\x9B"),
          Date(std::chrono::seconds(0)),
          Date(std::chrono::seconds(1'700'000'000)),
          Date(std::chrono::seconds(-1'400'000'000))};
}

struct DefaultsCheck {
  explicit DefaultsCheck(UserDefaultsUnderTest underTest) : backend(std::move(underTest)) {}

  UserDefaults& defaults() { return *backend.defaults; }
  std::shared_ptr<UserDefaults> reopened() { return needed(backend.reopen, "reopen")(); }

  /// Sets all values, under numbered keys.
  void setAll() {
    int key = 0;
    for (const DefaultsValue& value : values()) defaults().setValue("key" + std::to_string(key++), value);
  }

  static void expectAll(const UserDefaults& defaults) {
    int key = 0;
    for (const DefaultsValue& value : values()) {
      const auto got = defaults.value("key" + std::to_string(key++));
      const std::string which = "value " + std::to_string(key);
      expect(got.has_value(), which + " has gone");
      expect(got->index() == value.index(), which + " has come back with another type");
      expect(got == value, which + " has come back as another");
    }
  }

  UserDefaultsUnderTest backend;
};

const Contract<DefaultsCheck> kUserDefaultsContracts[] = {
    {"a key that was never set has no value",
     [](DefaultsCheck& check) { expect(!check.defaults().value("never set"), "it has one"); }},

    {"a value comes back with its type",
     [](DefaultsCheck& check) {
       check.setAll();
       DefaultsCheck::expectAll(check.defaults());
     }},

    {"a value that is set again takes the place of the former one",
     [](DefaultsCheck& check) {
       for (const DefaultsValue& value : values()) {
         check.defaults().setValue("key", value);
         expect(check.defaults().value("key") == value, "the former one stays");
       }
     }},

    {"a value that is removed has gone, and another key's has not",
     [](DefaultsCheck& check) {
       check.defaults().setValue("key", true);
       check.defaults().setValue("other", true);
       check.defaults().removeValue("key");
       check.defaults().removeValue("never set");
       expect(!check.defaults().value("key"), "it is still there");
       expect(check.defaults().value("other").has_value(), "another has gone");
     }},

    {"synchronize() succeeds, and leaves what was set",
     [](DefaultsCheck& check) {
       check.setAll();
       expect(check.defaults().synchronize(), "it fails");
       DefaultsCheck::expectAll(check.defaults());
     }},

    {"what was synchronized is there after a new start, with its type",
     [](DefaultsCheck& check) {
       check.setAll();
       check.defaults().setValue("gone", true);
       expect(check.defaults().synchronize(), "synchronize() fails");
       check.defaults().removeValue("gone");
       expect(check.defaults().synchronize(), "synchronize() fails");
       const auto reopened = check.reopened();
       DefaultsCheck::expectAll(*reopened);
       expect(!reopened->value("gone"), "a value that was removed is back");
     }},

    {"any thread may use it",
     [](DefaultsCheck& check) {
       constexpr int count = 100;
       std::vector<std::thread> threads;
       for (const std::string prefix : {"a", "b", "c"}) {
         threads.push_back(newThread([&check, prefix] {
           for (int i = 0; i < count; ++i) {
             const std::string key = prefix + std::to_string(i);
             check.defaults().setValue(key, std::int64_t{i});
             if (check.defaults().value(key) != DefaultsValue(std::int64_t{i}))
               check.defaults().removeValue(prefix + "0");
           }
         }));
       }
       for (std::thread& thread : threads) thread.join();
       for (const std::string prefix : {"a", "b", "c"}) {
         for (int i = 0; i < count; ++i) {
           expect(check.defaults().value(prefix + std::to_string(i)) == DefaultsValue(std::int64_t{i}),
                  "a value that another thread set is lost");
         }
       }
     }},

    {"synchronize() on a full disk returns false, loses nothing in memory and leaves the disk whole",
     [](DefaultsCheck& check) {
       const auto& withFullDisk = needed(check.backend.withFullDisk, "withFullDisk");
       const DefaultsValue before = std::string("old"), after = std::string(100'000, 'n');
       check.defaults().setValue("key", before);
       expect(check.defaults().synchronize(), "it fails with room on the disk");
       check.defaults().setValue("key", after);
       bool succeeded = true;
       withFullDisk([&] { succeeded = check.defaults().synchronize(); });
       expect(!succeeded, "it succeeds");
       expect(check.defaults().value("key") == after, "the value in memory is lost");
       expect(check.reopened()->value("key") == before, "what the disk held is lost");
       expect(check.defaults().synchronize() && check.reopened()->value("key") == after,
              "it does not succeed with room on the disk again");
     }},
};

}  // namespace

Report checkUserDefaults(const std::function<UserDefaultsUnderTest()>& make) {
  return checkAll<DefaultsCheck>("UserDefaults", kUserDefaultsContracts, make);
}

}  // namespace orn::contract
