#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ORNHearingTestSDK/platform/linux/LinuxUserDefaults.h>

namespace orn {
namespace {

using namespace std::chrono_literals;
using std::chrono::sys_days;
using std::chrono::system_clock;

/// Runs an action in a process of its own; its result is what the action returns.
int inAnotherProcess(const std::function<bool()>& action) {
  const pid_t child = fork();
  if (child == 0) _exit(action() ? 0 : 1);
  int status = -1;
  waitpid(child, &status, 0);
  return status;
}

class LinuxUserDefaultsTest : public testing::Test {
 protected:
  LinuxUserDefaultsTest() {
    std::string fresh = std::filesystem::temp_directory_path() / "defaults.XXXXXX";
    folder_ = mkdtemp(fresh.data());
    path_ = folder_ + "/defaults.plist";
  }
  ~LinuxUserDefaultsTest() override {
    std::filesystem::permissions(folder_, std::filesystem::perms::owner_all);
    std::filesystem::remove_all(folder_);
  }

  std::string contents(const std::string& path) const {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  void write(const std::string& bytes) const { std::ofstream(path_, std::ios::binary) << bytes; }
  void writeEntries(const std::string& entries) const {
    write("<plist version=\"1.0\"><dict>" + entries + "</dict></plist>");
  }

  std::vector<std::string> files() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_)) names.push_back(entry.path().filename());
    return names;
  }

  /// What another object reads after this value was stored.
  std::optional<DefaultsValue> stored(const DefaultsValue& value) {
    LinuxUserDefaults defaults(path_);
    defaults.setValue("key", value);
    EXPECT_TRUE(defaults.synchronize());
    return LinuxUserDefaults(path_).value("key");
  }

  std::string folder_, path_;
};

TEST_F(LinuxUserDefaultsTest, ValuesComeBackWithTheirTypes) {
  using Integers = std::numeric_limits<std::int64_t>;
  const std::vector<DefaultsValue> table = {true,
                                            false,
                                            std::int64_t{0},
                                            std::int64_t{1},
                                            std::int64_t{-5},
                                            Integers::max(),
                                            Integers::min(),
                                            0.0,
                                            3.0,
                                            0.1,
                                            -1.0 / 3,
                                            1e300,
                                            5e-324,
                                            std::numeric_limits<double>::infinity(),
                                            -std::numeric_limits<double>::infinity(),
                                            "",
                                            " ",
                                            "\n",
                                            "\t a\r\nb ",
                                            "1",
                                            "true",
                                            "a<b>&\"'&amp;&#65;]]>",
                                            "<![CDATA[x]]>",
                                            "\xE5\x90\x8D\xF0\x9F\x91\x82",
                                            std::string(100'000, 'x')};
  for (const DefaultsValue& value : table) EXPECT_EQ(stored(value), value) << contents(path_);
  const auto none = stored(std::nan(""));
  EXPECT_TRUE(none && std::isnan(std::get<double>(*none)));
}

TEST_F(LinuxUserDefaultsTest, DatesComeBackToTheSecond) {
  const system_clock::time_point birthday = sys_days(std::chrono::year(1926) / 2 / 28) + 1h;
  const struct {
    system_clock::time_point set, read;
  } table[] = {
      {system_clock::time_point(0s), system_clock::time_point(0s)},
      {system_clock::time_point(1'700'000'000s + 999ms), system_clock::time_point(1'700'000'000s)},
      {system_clock::time_point(-1ms), system_clock::time_point(-1s)},
      {birthday, birthday},
      {sys_days(std::chrono::year(1932) / 12 / 13), sys_days(std::chrono::year(1932) / 12 / 13)},
      {sys_days(std::chrono::year(1932) / 12 / 15), sys_days(std::chrono::year(1932) / 12 / 15)},
      {sys_days(std::chrono::year(2069) / 1 / 19), sys_days(std::chrono::year(2069) / 1 / 19)},
      {sys_days(std::chrono::year(2069) / 1 / 20), sys_days(std::chrono::year(2069) / 1 / 20)},
      {system_clock::time_point::max(), std::chrono::floor<std::chrono::seconds>(system_clock::time_point::max())},
      {system_clock::time_point::min(), std::chrono::ceil<std::chrono::seconds>(system_clock::time_point::min())}};
  LinuxUserDefaults defaults(path_);
  for (const auto& [set, read] : table) {
    defaults.setValue("key", set);
    EXPECT_EQ(defaults.value("key"), DefaultsValue(read));  // the same here and there
    EXPECT_EQ(stored(set), DefaultsValue(read)) << contents(path_);
  }
}

TEST_F(LinuxUserDefaultsTest, TheSecondsBeforeTheEarliestAndAfterTheLatestDateOfTheFormatCount) {
  const system_clock::time_point epoch = sys_days(std::chrono::year(2001) / 1 / 1);
  using Limits = std::numeric_limits<std::int32_t>;
  for (const std::int64_t limit : {std::int64_t{Limits::min()}, std::int64_t{Limits::max()}}) {
    for (const std::int64_t offset : {limit - 1, limit, limit + 1}) {
      const DefaultsValue date = epoch + std::chrono::seconds(offset);
      EXPECT_EQ(stored(date), date) << offset;
    }
  }
}

TEST_F(LinuxUserDefaultsTest, ATextThatXmlCantHoldIsKeptAndAKeyIsNotTaken) {
  LinuxUserDefaults defaults(path_);
  for (const std::string& bad :
       {std::string("a\0b", 3), std::string("\xFF"), std::string("\xC0\x80"), std::string("\xE5\x90"),
        std::string("\xED\xA0\x80"), std::string("\xEF\xBF\xBE"), std::string("\xF4\x90\x80\x80"), std::string("\x01"),
        std::string("\x80"), std::string("\xF8\x88\x80\x80\x80")}) {
    EXPECT_EQ(stored(bad), DefaultsValue(bad)) << contents(path_);
    defaults.setValue(bad, true);
    EXPECT_EQ(defaults.value(bad), std::nullopt);
  }
  EXPECT_TRUE(defaults.synchronize());
}

TEST_F(LinuxUserDefaultsTest, ChangesReachOthersBySynchronizing) {
  LinuxUserDefaults one(path_), other(path_);
  one.setValue("a", true);
  one.setValue("", std::int64_t{1});
  EXPECT_EQ(other.value("a"), std::nullopt);
  EXPECT_TRUE(one.synchronize());
  EXPECT_EQ(other.value("a"), std::nullopt);
  EXPECT_TRUE(other.synchronize());
  EXPECT_EQ(other.value("a"), DefaultsValue(true));
  EXPECT_EQ(other.value(""), DefaultsValue(std::int64_t{1}));
  other.removeValue("a");
  other.removeValue("never set");
  EXPECT_EQ(other.value("a"), std::nullopt);
  EXPECT_TRUE(other.synchronize());
  EXPECT_EQ(one.value("a"), DefaultsValue(true));
  one.setValue("b", false);  // does not bring "a" back
  EXPECT_TRUE(one.synchronize());
  EXPECT_EQ(one.value("a"), std::nullopt);
}

TEST_F(LinuxUserDefaultsTest, TwoProcessesKeepEachOthersKeys) {
  constexpr int count = 100;
  const auto writeAll = [&](const std::string& prefix) {
    LinuxUserDefaults defaults(path_);
    for (int i = 0; i < count; ++i) {
      defaults.setValue(prefix + std::to_string(i), std::int64_t{i});
      if (!defaults.synchronize()) return false;
    }
    return true;
  };
  const pid_t child = fork();
  if (child == 0) _exit(writeAll("child") ? 0 : 1);
  EXPECT_TRUE(writeAll("parent"));
  int status = -1;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
  const LinuxUserDefaults all(path_);
  for (int i = 0; i < count; ++i) {
    EXPECT_EQ(all.value("child" + std::to_string(i)), DefaultsValue(std::int64_t{i}));
    EXPECT_EQ(all.value("parent" + std::to_string(i)), DefaultsValue(std::int64_t{i}));
  }
}

TEST_F(LinuxUserDefaultsTest, ValuesOfOtherTypesStayInTheFile) {
  writeEntries(
      "<key>texts</key><dict><key>text</key><data>YWJj</data><key>z</key><true/></dict>"
      "<key>words</key><dict><key>text</key><string>abc</string></dict><key>data</key><data>YWJj</data><key>list</"
      "key><array><string>x</string></array>"
      "<key>map</key><dict><key>secondsSince1970</key><integer>1</integer><key>y</key><true/></dict>"
      "<key>far</key><dict><key>secondsSince1970</key><integer>9223372036854775807</integer></dict>"
      "<key>old</key><date>1800-01-01T00:00:00Z</date><key>replaced</key><array/>");
  LinuxUserDefaults defaults(path_);
  for (const char* key : {"texts", "words", "data", "list", "map", "far", "old", "replaced"}) {
    EXPECT_EQ(defaults.value(key), std::nullopt) << key;
  }
  defaults.setValue("replaced", true);
  EXPECT_TRUE(defaults.synchronize());
  EXPECT_EQ(defaults.value("replaced"), DefaultsValue(true));
  for (const char* kept :
       {"YWJj", "<array>", "<string>x</string>", "<key>y</key>", "9223372036854775807", "1800-01-01"}) {
    EXPECT_THAT(contents(path_), testing::HasSubstr(kept));
  }
}

std::string nestedLists(int depth) {
  std::string xml = "<plist version=\"1.0\"><dict><key>a</key>";
  for (const char* tag : {"<array>", "</array>"}) {
    for (int i = 0; i < depth; ++i) xml += tag;
  }
  return xml + "</dict></plist>";
}

TEST_F(LinuxUserDefaultsTest, ACorruptFileIsSetAside) {
  using namespace std::string_literals;
  const std::vector<std::string> table = {
      "",
      "garbage",
      "<plist version=\"1.0\"><array/></plist>",
      "<plist version=\"1.0\"><dict><key>a</key><true/>",
      std::string(5000, '\0'),
      nestedLists(1'000'000),
      "<plist version=\"1.0\"><dict><key>a</key><string>\0</string></dict></plist>"s};
  std::string aside = path_ + ".corrupt";
  for (std::size_t i = 0; i < table.size(); ++i) {
    write(table[i]);
    LinuxUserDefaults defaults(path_);
    EXPECT_FALSE(std::filesystem::exists(path_));
    if (i > 0) aside = path_ + ".corrupt-" + std::to_string(i + 1);
    EXPECT_EQ(defaults.value("a"), std::nullopt);
    defaults.setValue("a", std::int64_t{2});
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(LinuxUserDefaults(path_).value("a"), DefaultsValue(std::int64_t{2}));
    EXPECT_EQ(contents(aside), table[i]);
  }
  EXPECT_EQ(contents(path_ + ".corrupt-3"), table[2]);  // no later one took an earlier one's place
}

TEST_F(LinuxUserDefaultsTest, AFileThatGoesBadMeanwhileLosesNothingThatWasChanged) {
  LinuxUserDefaults defaults(path_);
  defaults.setValue("a", true);
  write("garbage");
  EXPECT_TRUE(defaults.synchronize());
  EXPECT_EQ(LinuxUserDefaults(path_).value("a"), DefaultsValue(true));
  EXPECT_EQ(contents(path_ + ".corrupt"), "garbage");
}

TEST_F(LinuxUserDefaultsTest, AReadOnlyFolderRefusesAndNothingIsLost) {
  ASSERT_TRUE(stored("old"));
  const auto triesToWrite = [&] {
    if (geteuid() == 0 && setuid(65534) != 0) return false;  // root may write everywhere
    LinuxUserDefaults defaults(path_);
    const bool readable = defaults.value("key") == DefaultsValue("old") && defaults.synchronize();
    defaults.setValue("key", "new");
    return readable && !defaults.synchronize() && defaults.value("key") == DefaultsValue("new");
  };
  using std::filesystem::perms;
  const perms readAll = perms::owner_read | perms::group_read | perms::others_read;
  std::filesystem::permissions(path_, readAll);
  std::filesystem::permissions(folder_, readAll | perms::owner_exec | perms::group_exec | perms::others_exec);
  EXPECT_EQ(inAnotherProcess(triesToWrite), 0);
  EXPECT_EQ(LinuxUserDefaults(path_).value("key"), DefaultsValue("old"));
}

TEST_F(LinuxUserDefaultsTest, WhatIsNoFileIsLeftAlone) {
  std::filesystem::create_directories(path_ + "/inner");
  LinuxUserDefaults onFolder(path_), belowFile("/proc/version/x/defaults.plist");
  for (LinuxUserDefaults* defaults : {&onFolder, &belowFile}) {
    defaults->setValue("a", true);
    EXPECT_FALSE(defaults->synchronize());
    EXPECT_EQ(defaults->value("a"), DefaultsValue(true));
  }
  EXPECT_TRUE(std::filesystem::is_directory(path_ + "/inner"));
}

TEST_F(LinuxUserDefaultsTest, AProcessKilledWhileWritingLeavesTheOldOrTheNew) {
  constexpr int keys = 200, rounds = 40;
  const auto writesOn = [&](int pipe) {
    LinuxUserDefaults defaults(path_);
    for (std::int64_t generation = 1;; ++generation) {
      for (int key = 0; key < keys; ++key) defaults.setValue("key" + std::to_string(key), generation);
      if (!defaults.synchronize() || ::write(pipe, &generation, sizeof(generation)) < 0) _exit(1);
    }
  };
  std::minstd_rand random(1);
  for (int round = 0; round < rounds; ++round) {
    std::filesystem::remove(path_);
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    if (child == 0) writesOn(ends[1]);
    close(ends[1]);
    std::int64_t confirmed = 0, next = 0;
    ASSERT_EQ(read(ends[0], &confirmed, sizeof(confirmed)), static_cast<ssize_t>(sizeof(confirmed)));
    usleep(static_cast<useconds_t>(random() % 4000));
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    while (read(ends[0], &next, sizeof(next)) > 0) confirmed = next;
    close(ends[0]);
    const LinuxUserDefaults left(path_);
    const auto generation = left.value("key0");
    EXPECT_TRUE(generation == DefaultsValue(confirmed) || generation == DefaultsValue(confirmed + 1));
    for (int key = 1; key < keys; ++key) EXPECT_EQ(left.value("key" + std::to_string(key)), generation);
  }
  EXPECT_THAT(files(), testing::Not(testing::Contains("defaults.plist.corrupt")));
}

TEST_F(LinuxUserDefaultsTest, ItsFolderIsMadeForThisUserAloneByTheFirstWrite) {
  setenv("XDG_CONFIG_HOME", (folder_ + "/config").c_str(), 1);
  const std::string path = LinuxUserDefaults::defaultPath("org.example.app");
  EXPECT_EQ(path, folder_ + "/config/org.example.app/defaults.plist");
  LinuxUserDefaults defaults(path);
  EXPECT_TRUE(defaults.synchronize());
  EXPECT_THAT(files(), testing::IsEmpty());
  defaults.setValue("a", true);
  EXPECT_TRUE(defaults.synchronize());
  EXPECT_EQ(LinuxUserDefaults(path).value("a"), DefaultsValue(true));
  EXPECT_EQ(std::filesystem::status(folder_ + "/config").permissions(), std::filesystem::perms::owner_all);
  unsetenv("XDG_CONFIG_HOME");
}

}  // namespace
}  // namespace orn
