#include <chrono>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <ORNHearingTestSDK/engine/ORNHearingTest.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>

namespace orn {
namespace {

using namespace std::chrono_literals;
using std::chrono::days;
using std::chrono::seconds;

constexpr bool kMan = false, kWoman = true;
const std::vector<std::string> kSeven{"125hz", "250hz", "500hz", "1000hz", "2000hz", "4000hz", "8000hz"};

struct HearingScore : testing::Test {
  HearingScore() { Platform::setCurrent(machine.platform()); }
  ~HearingScore() override { Platform::clearCurrent(); }

  void user(seconds age, bool isWoman) {
    machine.userDefaults->setValue("BIRTHDAY", machine.runLoop->date() - age);
    machine.userDefaults->setValue("USERSEX", isWoman);
  }

  static std::int64_t loss(const EarResult& ear) { return ORNHearingTest::computeEarTestResult(ear); }

  static EarResult ear(const std::vector<std::string>& hzs, const std::string& threshold) {
    EarResult result;
    for (const auto& hz : hzs) result[hz] = threshold;
    return result;
  }

  SimulatedPlatform machine;
};

TEST_F(HearingScore, WithoutAProfile) {
  const std::pair<EarResult, int> table[] = {
      {{}, 0},
      {ear(kSeven, "-1"), 0},
      {{{"125hz", "10"}, {"250hz", "11"}, {"500hz", "11"}}, 10},
      {ear(kSeven, "30"), 29},  // the last two read on into the next band
      {{{"1000hz", "40"}, {"2000hz", "-1"}, {"4000hz", "30"}}, 35},
      {{{"1000hz", "40db"}, {"2000hz", "none"}, {"4000hz", ""}}, 13},
      {{{"1000hz", "-1.5"}, {"2000hz", "100"}}, 49},
      {{{"1000hz", "-10"}, {"2000hz", "15"}}, 2},
  };
  for (const auto& [thresholds, expected] : table) EXPECT_EQ(loss(thresholds), expected) << expected;
}

TEST_F(HearingScore, AgeBorders) {
  const struct {
    seconds age;
    int man, woman;  // for two thresholds of 100 dB
  } table[] = {
      {days(-365), 0, 0},       {-days(365) + 1s, 100, 100}, {days(30 * 365) - 1s, 100, 100},
      {days(30 * 365), 99, 99}, {days(40 * 365), 98, 97},    {days(50 * 365) - 1s, 98, 97},
      {days(50 * 365), 96, 94}, {days(60 * 365), 93, 91},    {days(70 * 365), 90, 86},
  };
  for (const auto& [age, man, woman] : table) {
    user(age, kMan);
    EXPECT_EQ(loss(ear({"125hz", "250hz"}, "100")), man) << age.count();
    user(age, kWoman);
    EXPECT_EQ(loss(ear({"125hz", "250hz"}, "100")), woman) << age.count();
  }
}

/// FNV-1a of every loss. This library and a second calculation, made from the statement of the rule, agree on it.
TEST_F(HearingScore, IsWhatItWasForManyEars) {
  std::mt19937 random(20'260'101);
  const auto upTo = [&](unsigned limit) { return static_cast<int>(random() % limit); };
  std::uint32_t hash = 2166136261;
  for (int round = 0; round < 20'000; ++round) {
    EarResult thresholds;
    for (const int hz : {125, 250, 500, 750, 1000, 1500, 2000, 3000, 4000, 6000, 8000}) {
      const bool isAudiogram = (hz / 125 & (hz / 125 - 1)) == 0;
      if (upTo(isAudiogram ? 4 : 10) == 0 || (!isAudiogram && upTo(4) != 0)) continue;
      thresholds[std::to_string(hz) + "hz"] = std::to_string(upTo(5) == 0 ? -1 : upTo(130) - 10);
    }
    const int ageInDays = upTo(36'000) - 800;
    user(days(ageInDays), upTo(2) == 1);
    hash = (hash ^ static_cast<std::uint32_t>(loss(thresholds))) * 16777619;
  }
  EXPECT_EQ(hash, 1951786846U);
}

TEST(ResultString, EachBandHasItsSentence) {
  constexpr auto lowest = std::numeric_limits<std::int64_t>::min(), highest = std::numeric_limits<std::int64_t>::max();
  const struct {
    std::int64_t from, to;
    const char* beginning;
    std::size_t bytes;
  } table[] = {
      {lowest, 25, "属于正常。", 61},      {26, 40, "属于轻度听力损失。", 172},
      {41, 55, "属于中度听力损失。", 211}, {56, 70, "属于中重度听力损失。", 193},
      {71, 90, "属于重度听力损失。", 204}, {91, highest, "属于极重度听力损失。", 180},
  };
  for (const auto& [from, to, beginning, bytes] : table) {
    for (const std::int64_t loss : {from, to}) {
      const std::string sentence = ORNHearingTest::computeResultString(loss);
      EXPECT_TRUE(sentence.starts_with(beginning)) << loss;
      EXPECT_EQ(sentence.size(), bytes) << loss;
    }
  }
}

}  // namespace
}  // namespace orn
