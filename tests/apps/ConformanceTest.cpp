#include <gmock/gmock.h>

#include <cmath>
#include <numbers>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/calibration/LevelCipher.h>

#include "simulation/Conformance.h"
#include "simulation/SampleCalibration.h"

namespace orn::simulation {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A second of a 1000 Hz tone between ramps and silence.
struct Synthetic {
  double amplitude = 10000, hz = 1000, second = 0, third = 0, ramp = 0.1, burst = 1, jump = 0;

  std::vector<std::int16_t> samples() const {
    std::vector<std::int16_t> all(4 * 48000);
    for (std::size_t n = 0; n < all.size(); ++n) {
      const double t = static_cast<double>(n) / 48000;
      const double gain = std::clamp(std::min(t - 0.5, 3.5 - t) / ramp, 0.0, 1.0);
      const double louder = t > 0.8 && t < 1.0 ? burst : 1;
      const double phase = 2 * std::numbers::pi * hz * t + (t >= 2 ? jump : 0);
      const double wave = std::sin(phase) + second * std::sin(2 * phase) + third * std::sin(3 * phase);
      all[n] = static_cast<std::int16_t>(std::lround(amplitude * gain * louder * wave));
    }
    return all;
  }
  ToneFigures figures() const { return analysed(samples(), 1000, {72000, 48000}).value(); }
};

TEST(ToneAnalysis, MeasuresWhatWasPutIn) {
  const ToneFigures plain = Synthetic{}.figures();
  EXPECT_NEAR(plain.amplitude * 32767, 10000, 1);
  EXPECT_NEAR(plain.hz, 1000, 0.01);
  EXPECT_LT(plain.distortion, 1e-4);
  EXPECT_NEAR(plain.riseSeconds, 0.1 * (std::pow(10, -0.05) - 0.1), 0.002);
  EXPECT_NEAR(plain.fallSeconds, plain.riseSeconds, 0.002);
  EXPECT_NEAR(plain.overshoot, 0, 0.01);
  EXPECT_EQ(plain.seam, 0);
  for (const double hz : {985.0, 1008.0}) EXPECT_NEAR(Synthetic{.hz = hz}.figures().hz, hz, 0.1);
  EXPECT_NEAR((Synthetic{.second = 0.03, .third = 0.04}.figures().distortion), 0.05, 1e-3);
  EXPECT_NEAR(Synthetic{.ramp = 0.4}.figures().riseSeconds, 0.4 * (std::pow(10, -0.05) - 0.1), 0.002);
  EXPECT_LT(Synthetic{.ramp = 1e-6}.figures().fallSeconds, 0.002);
  EXPECT_NEAR(Synthetic{.burst = 1.2}.figures().overshoot, 20 * std::log10(1.2), 0.02);
  EXPECT_NEAR(Synthetic{.jump = 0.5}.figures().seam, 2 * std::sin(0.25), 0.02);
  EXPECT_FALSE(analysed(std::vector<std::int16_t>(192000), 1000, {72000, 48000}));
}

/// A reply for both paths in which each device value, and each earphone value, is the given one.
std::string replyOf(const std::string& device, const std::string& earphone, int batch = 2) {
  nlohmann::json records;
  for (const char* model : {"device", "2", "1", "left", "right"}) {
    const bool isEarphone = std::string(model).size() > 1 && model[0] != 'd';
    const bool isBase = std::string(model).size() == 1;
    nlohmann::json record{{"base", isBase}, {"batch", batch}, {"earplug_model", model}};
    if (isEarphone) record["ear"] = model[0] == 'l' ? 1 : 2;
    // The device's own record is the last one whose base is false.
    for (const char* hz : {"125", "250", "500", "1000", "2000", "4000", "8000"}) {
      const std::string value = isEarphone ? earphone : isBase ? "0" : device;
      if (!value.empty()) record["s" + std::string(hz)] = encipheredLevel(value);
    }
    records.push_back(record);
  }
  std::rotate(records.begin(), records.begin() + 1, records.end());
  return nlohmann::json{{"rspCode", 0}, {"deviceVolumeIOS", records}}.dump();
}

TEST(Conformance, OfTheStreamMissesItsSlowFadesAlone) {
  const std::string reply(sampleAudiometerReply());
  EXPECT_THAT(measureCell(OutputPath::Audiometer, reply, false, 4000, 60).misses, IsEmpty());
  const ConformanceCell slow = measureCell(OutputPath::Audiometer, reply, true, 125, 60);
  EXPECT_THAT(slow.misses, ElementsAre("rise", "fall"));
  EXPECT_NEAR(slow.tone->riseSeconds, 1.28 * (std::pow(10, -0.05) - 0.1), 0.01) << "16 blocks of 80 ms";
  EXPECT_NEAR(slow.tone->fallSeconds, slow.tone->riseSeconds, 0.01);
  EXPECT_EQ(slow.otherEar, slow.level) << "one stream, both channels";
}

TEST(Conformance, OfTheToneBankStartsAndStopsAtOnceOnItsOwnSide) {
  for (const bool isLeft : {false, true}) {
    const auto cell = measureCell(OutputPath::Earphones, std::string(sampleEarphonesReply()), isLeft, 1000, 40);
    EXPECT_THAT(cell.misses, ElementsAre("rise", "fall"));
    EXPECT_NEAR(cell.levelError(), 0, 0.1);
    EXPECT_FALSE(cell.otherEar);
  }
}

TEST(Conformance, TellsWhichCellsACalibrationMakesUseless) {
  const struct {
    OutputPath path;
    std::string value;
    std::int32_t db;
    bool clips, isUnderResolution;
  } table[] = {
      {OutputPath::Audiometer, "-50", 85, false, false}, {OutputPath::Audiometer, "-60", 85, true, false},
      {OutputPath::Audiometer, "-20", 15, false, true},  {OutputPath::Earphones, "-50", 85, false, false},
      {OutputPath::Earphones, "-60", 85, true, false},   {OutputPath::Earphones, "-20", 15, false, true},
  };
  for (const auto& [path, value, db, clips, isUnderResolution] : table) {
    const ConformanceCell cell = measureCell(path, replyOf(value, value), false, 1000, db);
    EXPECT_EQ(cell.clips, clips) << value;
    EXPECT_EQ(cell.isUnderResolution, isUnderResolution) << value;
    EXPECT_EQ(!cell.misses.empty() && cell.misses.front() == "level", clips || isUnderResolution) << value;
  }
  const auto batchOne = measureCell(OutputPath::Audiometer, replyOf("-50", "-50", 1), false, 1000, 85);
  EXPECT_FALSE(batchOne.clips);
  EXPECT_NEAR(batchOne.levelError(), 0, 0.1) << "the lower output of the series is in its scale";
  EXPECT_THROW(measureCell(OutputPath::Earphones, replyOf("-50", ""), true, 1000, 40), std::runtime_error);
}

}  // namespace
}  // namespace orn::simulation
