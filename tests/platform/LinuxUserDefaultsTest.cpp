#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
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

class LinuxUserDefaultsTest : public testing::Test {
 protected:
  LinuxUserDefaultsTest() {
    std::string fresh = std::filesystem::temp_directory_path() / "defaults.XXXXXX";
    folder_ = mkdtemp(fresh.data());
    path_ = folder_ + "/defaults.plist";
  }
  ~LinuxUserDefaultsTest() override { std::filesystem::remove_all(folder_); }

  std::string contents(const std::string& path) const {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  void write(const std::string& bytes) const { std::ofstream(path_, std::ios::binary) << bytes; }
  void writeEntries(const std::string& entries) const {
    write("<plist version=\"1.0\"><dict>" + entries + "</dict></plist>");
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
  const double infinity = std::numeric_limits<double>::infinity();
  const std::vector<DefaultsValue> table[] = {{true, false},
                                              {std::int64_t{0}, std::int64_t{-5}, Integers::max(), Integers::min()},
                                              {0.0, 3.0, 0.1, -1.0 / 3, 1e300, 5e-324, infinity, -infinity},
                                              {"", " ", "\n", "\t a\r\nb ", "1", "true", "<![CDATA[x]]>"},
                                              {"a<b>&\"'&amp;&#65;]]>", "\xE5\x90\x8D\xF0\x9F\x91\x82"}};
  for (const auto& values : table) {
    for (const DefaultsValue& value : values) EXPECT_EQ(stored(value), value) << contents(path_);
  }
  const auto none = stored(std::nan(""));
  EXPECT_TRUE(none && std::isnan(std::get<double>(*none)));
}

TEST_F(LinuxUserDefaultsTest, DatesComeBackToTheSecond) {
  using Time = system_clock::time_point;
  const Time birthday = sys_days(std::chrono::year(1926) / 2 / 28) + 1h;
  // The format counts seconds from here, in 32 bits; what is beyond them has a form of its own.
  const Time epoch = sys_days(std::chrono::year(2001) / 1 / 1);
  std::vector<std::pair<Time, Time>> table = {{Time(0s), Time(0s)},
                                              {Time(1'700'000'000s + 999ms), Time(1'700'000'000s)},
                                              {Time(-1ms), Time(-1s)},
                                              {birthday, birthday},
                                              {Time::max(), std::chrono::floor<std::chrono::seconds>(Time::max())},
                                              {Time::min(), std::chrono::ceil<std::chrono::seconds>(Time::min())}};
  for (const std::int64_t offset : {-0x80000001LL, -0x80000000LL, 0x7FFFFFFFLL, 0x80000000LL}) {
    table.emplace_back(epoch + std::chrono::seconds(offset), epoch + std::chrono::seconds(offset));
  }
  LinuxUserDefaults defaults(path_);
  for (const auto& [set, read] : table) {
    defaults.setValue("key", set);
    EXPECT_EQ(defaults.value("key"), DefaultsValue(read));  // the same here and there
    EXPECT_EQ(stored(set), DefaultsValue(read)) << contents(path_);
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

}  // namespace
}  // namespace orn
