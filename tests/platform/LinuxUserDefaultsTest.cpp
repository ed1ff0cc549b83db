#include <chrono>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ORNHearingTestSDK/contracts/TemporaryFolder.h>
#include <ORNHearingTestSDK/platform/linux/LinuxUserDefaults.h>

namespace orn {
namespace {

using namespace std::chrono_literals;
using std::chrono::sys_days;
using std::chrono::system_clock;

class LinuxUserDefaultsTest : public testing::Test {
 protected:
  std::string contents(const std::string& path) const {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  void write(const std::string& bytes) const { folder_.write("defaults.plist", bytes); }

  /// What another object reads after this value was stored, as does the one that stored it.
  std::optional<DefaultsValue> stored(const DefaultsValue& value) {
    LinuxUserDefaults defaults(path_);
    defaults.setValue("key", value);
    const auto before = defaults.value("key");
    EXPECT_TRUE(defaults.synchronize());
    const auto after = LinuxUserDefaults(path_).value("key");
    EXPECT_TRUE(before == after || value != value) << "it changes with the next start";
    return after;
  }

  contract::TemporaryFolder folder_;
  const std::string path_ = folder_.path() + "/defaults.plist";
};

TEST_F(LinuxUserDefaultsTest, EveryValueComesBackAndAKeyThatXmlCantHoldIsNotTaken) {
  using namespace std::string_literals;
  const double infinity = std::numeric_limits<double>::infinity();
  LinuxUserDefaults defaults(path_);
  for (const DefaultsValue& value : std::vector<DefaultsValue>{5e-324, infinity, -infinity, "\t a\r\nb ", "true",
                                                               "<![CDATA[x]]>", "&amp;&#65;]]>"}) {
    EXPECT_EQ(stored(value), value) << contents(path_);
  }
  const auto none = stored(std::nan(""));
  EXPECT_TRUE(none && std::isnan(std::get<double>(*none)));
  for (const std::string& bad : {"a\0b"s, "\xFF"s, "\xC0\x80"s, "\xE5\x90"s, "\xED\xA0\x80"s, "\xEF\xBF\xBE"s,
                                 "\xF4\x90\x80\x80"s, "\x01"s, "\x80"s, "\xF8\x88\x80\x80\x80"s}) {
    EXPECT_EQ(stored(bad), DefaultsValue(bad)) << contents(path_);
    defaults.setValue(bad, true);
    EXPECT_EQ(defaults.value(bad), std::nullopt);
  }
  EXPECT_TRUE(defaults.synchronize());
}

TEST_F(LinuxUserDefaultsTest, DatesComeBackToTheSecond) {
  using Time = system_clock::time_point;
  // The format counts seconds from here, in 32 bits; what is beyond them has a form of its own.
  const Time epoch = sys_days(std::chrono::year(2001) / 1 / 1);
  std::vector<std::pair<Time, Time>> table = {{Time(1'700'000'000s + 999ms), Time(1'700'000'000s)},
                                              {Time(-1ms), Time(-1s)},
                                              {Time::max(), std::chrono::floor<std::chrono::seconds>(Time::max())},
                                              {Time::min(), std::chrono::ceil<std::chrono::seconds>(Time::min())}};
  for (const std::int64_t offset : {-0x80000001LL, -0x80000000LL, 0x7FFFFFFFLL, 0x80000000LL}) {
    table.emplace_back(epoch + std::chrono::seconds(offset), epoch + std::chrono::seconds(offset));
  }
  for (const auto& [set, read] : table) EXPECT_EQ(stored(set), DefaultsValue(read)) << contents(path_);
}

TEST_F(LinuxUserDefaultsTest, ChangesReachOthersBySynchronizing) {
  LinuxUserDefaults one(path_), other(path_);
  one.setValue("a", true);
  EXPECT_TRUE(one.synchronize());
  EXPECT_TRUE(other.synchronize());
  EXPECT_EQ(other.value("a"), DefaultsValue(true));
  other.removeValue("a");
  EXPECT_TRUE(other.synchronize());
  one.setValue("", false);  // does not bring "a" back
  EXPECT_TRUE(one.synchronize());
  EXPECT_EQ(one.value("a"), std::nullopt);
  EXPECT_EQ(LinuxUserDefaults(path_).value(""), DefaultsValue(false));
}

TEST_F(LinuxUserDefaultsTest, TwoWritersAtOnceKeepEachOthersKeys) {
  const auto writeAll = [&](const std::string& prefix) {
    LinuxUserDefaults defaults(path_);
    for (int i = 0; i < 100; ++i) {
      defaults.setValue(prefix + std::to_string(i), std::int64_t{i});
      EXPECT_TRUE(defaults.synchronize());
    }
  };
  std::thread other(writeAll, "other");
  writeAll("one");
  other.join();
  const LinuxUserDefaults all(path_);
  for (int i = 0; i < 100; ++i) {
    for (const char* prefix : {"one", "other"}) {
      EXPECT_EQ(all.value(prefix + std::to_string(i)), DefaultsValue(std::int64_t{i})) << prefix;
    }
  }
}

TEST_F(LinuxUserDefaultsTest, ValuesOfOtherTypesStayInTheFile) {
  write(
      "<plist version=\"1.0\"><dict>"
      "<key>texts</key><dict><key>text</key><data>YWJj</data><key>z</key><true/></dict>"
      "<key>words</key><dict><key>text</key><string>abc</string></dict><key>data</key><data>YWJj</data>"
      "<key>list</key><array><string>x</string></array>"
      "<key>map</key><dict><key>secondsSince1970</key><integer>1</integer><key>y</key><true/></dict>"
      "<key>far</key><dict><key>secondsSince1970</key><integer>9223372036854775807</integer></dict>"
      "<key>old</key><date>1800-01-01T00:00:00Z</date><key>replaced</key><array/></dict></plist>");
  LinuxUserDefaults defaults(path_);
  for (const char* key : {"texts", "words", "data", "list", "map", "far", "old", "replaced"}) {
    EXPECT_EQ(defaults.value(key), std::nullopt) << key;
  }
  defaults.setValue("replaced", true);
  EXPECT_TRUE(defaults.synchronize());
  EXPECT_EQ(defaults.value("replaced"), DefaultsValue(true));
  for (const char* kept : {"YWJj", "<string>x</string>", "<key>y</key>", "9223372036854775807", "1800-01-01"}) {
    EXPECT_THAT(contents(path_), testing::HasSubstr(kept));
  }
}

TEST_F(LinuxUserDefaultsTest, ACorruptFileIsSetAsideAndLosesNothingThatWasChanged) {
  const std::string table[] = {std::string(50, '\0'), "<plist version=\"1.0\"><array/></plist>",
                               "<plist version=\"1.0\"><dict><key>a</key><true/>", ""};
  for (std::size_t i = 0; i < 2 * std::size(table); ++i) {
    const bool isMeanwhile = i >= std::size(table);  // it goes bad only while it is in use
    const std::string& bytes = table[i % std::size(table)];
    if (!isMeanwhile) write(bytes);
    LinuxUserDefaults defaults(path_);
    EXPECT_EQ(std::filesystem::exists(path_), isMeanwhile);
    EXPECT_EQ(defaults.value("a").has_value(), isMeanwhile);
    defaults.setValue("a", static_cast<std::int64_t>(i));
    if (isMeanwhile) write(bytes);
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(LinuxUserDefaults(path_).value("a"), DefaultsValue(static_cast<std::int64_t>(i)));
    EXPECT_EQ(contents(path_ + ".corrupt" + (i > 0 ? "-" + std::to_string(i + 1) : "")), bytes);
  }
  EXPECT_EQ(contents(path_ + ".corrupt-2"), table[1]) << "a later one took an earlier one's place";
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
