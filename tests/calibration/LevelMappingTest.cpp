#include <cmath>
#include <cstdint>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include <ORNHearingTestSDK/calibration/LevelMapping.h>

namespace orn {
namespace {

ORNDeviceVolumeIOS with1000Hz(std::optional<std::string> value, std::int64_t batch = 0) {
  ORNDeviceVolumeIOS record;
  record.setS1000(std::move(value));
  record.setBatch(batch);
  return record;
}

double amplitude(const char* a, const char* b, const char* c, std::int32_t db, std::int64_t batch = 0) {
  const auto ab = with1000Hz(a, batch), aabb = with1000Hz(b, 1), xxyy = with1000Hz(c, 1);
  return audiometerAmplitude(&ab, &aabb, &xxyy, db, "1000hz");
}

std::optional<double> gain(std::optional<std::string> value, std::int32_t level) {
  const auto record = with1000Hz(std::move(value));
  return earphoneGain(&record, 1000, level);
}

TEST(AudiometerAmplitude, FollowsTheWorkedExamples) {
  // The exponent, 6.05, is rounded to single precision, a relative change of 4e-7 in the amplitude.
  EXPECT_NEAR(amplitude("-70", "3", "2", 50), 0.1122018, 1.5e-7);
  EXPECT_NEAR(amplitude("-70", "3", "2", 50, 1), 0.0354558, 5e-8);
  EXPECT_EQ(amplitude("-70", "3", "2", 50, 2), amplitude("-70", "3", "2", 50));
  EXPECT_EQ(amplitude("-70", "0", "0", 90), 0.9999999);
  EXPECT_EQ(amplitude("-70", "0", "0", 90, 1), 0.9999999 * 0.316);
  EXPECT_EQ(amplitude("-70", "0", "0", 70), 1.0) << "is capped above one only";
  EXPECT_EQ(amplitude("-70.0001", "0", "0", 70), 0.9999999);
  EXPECT_EQ(amplitude("1e999", "1e999", "0", 50), 0.0) << "has no result";
}

TEST(AudiometerAmplitude, ReadsWhatIsMissingAsZero) {
  const double atZero = std::pow(10.0F, 2.5F) / 1e7;
  EXPECT_NEAR(audiometerAmplitude(nullptr, nullptr, nullptr, 50, "1000hz"), atZero, 1e-12);
  EXPECT_NEAR(amplitude("none", "", "-", 50), atZero, 1e-12);
  const auto absent = with1000Hz(std::nullopt), present = with1000Hz("-70");
  EXPECT_NEAR(audiometerAmplitude(&absent, &absent, &absent, 50, "1000hz"), atZero, 1e-12);
  for (const char* hz : {"750hz", "", "-1000hz", "hz"}) {
    EXPECT_NEAR(audiometerAmplitude(&present, &present, &present, 50, hz), atZero, 1e-12) << hz;
  }
}

TEST(Calibration, IsThereWithANumberAtEachFrequencyUnderTest) {
  auto record = with1000Hz("-50");
  record.setS500(" +.5");
  record.setS2000("none");
  record.setS250("--50");  // which reads as 0
  const std::pair<std::vector<std::string>, bool> table[] = {{{"1000hz", "500hz"}, true},
                                                             {{"1000hz", "2000hz"}, false},
                                                             {{"250hz"}, false},
                                                             {{"4000hz"}, false},
                                                             {{"750hz"}, false}};
  for (const auto& [hzs, isThere] : table) EXPECT_EQ(hasCalibrationNumbers(&record, hzs), isThere) << hzs.back();
  EXPECT_FALSE(hasCalibrationNumbers(nullptr, {"1000hz"}));
}

TEST(EarphoneGain, AddsFortyUpToLevelForty) {
  EXPECT_NEAR(gain("-40", 40).value(), 0.1, 1e-9);
  EXPECT_NEAR(gain("-40", 41).value(), 0.1 * std::pow(10.0, -39 / 20.0), 1e-9);
  EXPECT_NEAR(gain("-75", 45).value(), 0.1, 1e-9);
  EXPECT_EQ(gain("-100", 0).value(), 1.0);
  EXPECT_NEAR(gain("-115", 45).value(), 10.0, 1e-6) << "not clamped";
}

TEST(EarphoneGain, ReadsEachOfTheSevenFrequencies) {
  ORNDeviceVolumeIOS record;
  record.setS125("-61"), record.setS250("-62"), record.setS500("-63"), record.setS1000("-64"), record.setS2000("-65");
  record.setS4000("-66"), record.setS8000("-67");
  double expected = 61;
  for (const int hz : {125, 250, 500, 1000, 2000, 4000, 8000}) {
    EXPECT_NEAR(20 * std::log10(earphoneGain(&record, hz, 50).value() * 1e7), 50 + expected, 1e-4) << hz;
    const std::string text = std::to_string(hz) + "hz";
    EXPECT_NEAR(20 * std::log10(audiometerAmplitude(&record, nullptr, nullptr, 50, text) * 1e7), 50 + expected, 1e-4);
    ++expected;
  }
  EXPECT_NEAR(20 * std::log10(earphoneGain(&record, 750, 50).value() * 1e7), 50, 1e-4);
}

TEST(EarphoneGain, IsNothingWhereTheLevelWouldBeGuessed) {
  EXPECT_EQ(earphoneGain(nullptr, 1000, 50), std::nullopt);
  EXPECT_EQ(gain(std::nullopt, 50), std::nullopt);
  EXPECT_EQ(gain("-1e30", 50), std::nullopt) << "no finite volume";
  EXPECT_EQ(gain("1e30", 50), std::nullopt) << "no volume above zero";
  EXPECT_EQ(gain("1020", 50), std::nullopt) << "above zero in double precision only";
  EXPECT_TRUE(gain("-70", 50)) << "of the other six values none is needed";
}

TEST(MeasuredLevels, UndoTheMapping) {
  const auto aabb = with1000Hz("3.5"), xxyy = with1000Hz("2.25");
  for (const std::int64_t batch : {0, 1}) {
    const auto ab = with1000Hz("-61.5", batch);
    for (std::int32_t db = -10; db <= 75; db += 5) {
      const double x = audiometerAmplitude(&ab, &aabb, &xxyy, db, "1000hz");
      EXPECT_NEAR(audiometerLevel(&ab, &aabb, &xxyy, x, "1000hz"), db, 1e-4) << db;
    }
  }
  const auto record = with1000Hz("-55.5");
  for (std::int32_t level = -10; level <= 100; level += 5) {
    // The quiet recording is 40 dB below the loud one, which the measured factor refers to.
    const double factor = earphoneGain(&record, 1000, level).value() * (level <= 40 ? 0.01 : 1.0);
    EXPECT_NEAR(earphoneLevel(&record, 1000, factor).value(), level, 1e-4) << level;
  }
}

}  // namespace
}  // namespace orn
