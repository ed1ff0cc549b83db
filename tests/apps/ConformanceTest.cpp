#include <gmock/gmock.h>

#include <cmath>
#include <numbers>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/calibration/LevelCipher.h>

#include "simulation/calibration/SampleCalibration.h"
#include "simulation/studies/Conformance.h"

namespace orn::simulation {
namespace {

using testing::Contains;
using testing::ElementsAre;

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

/// The sample reply with another value in place of the device's value at 1000 Hz; an empty text stands for no value.
std::string replyWith(OutputPath path, const std::string& value) {
  auto reply = nlohmann::json::parse(sampleReply(path));
  for (auto& record : reply["deviceVolumeIOS"]) {
    if (record["base"] == false) record["s1000"] = value.empty() ? "" : encipheredLevel(value);
  }
  return reply.dump();
}

TEST(Conformance, OfTheStreamFailsOnlyForSlowFades) {
  const std::string reply(sampleAudiometerReply());
  EXPECT_THAT(measureCell(OutputPath::Audiometer, reply, false, 4000, 60).misses, ElementsAre());
  const ConformanceCell slow = measureCell(OutputPath::Audiometer, reply, true, 125, 60);
  EXPECT_THAT(slow.misses, ElementsAre("rise", "fall"));
  EXPECT_NEAR(slow.tone->riseSeconds, 1.28 * (std::pow(10, -0.05) - 0.1), 0.01) << "16 blocks of 80 ms";
  EXPECT_NEAR(slow.tone->fallSeconds, slow.tone->riseSeconds, 0.01);
  EXPECT_EQ(slow.otherEar, slow.level) << "one stream, both channels";
}

TEST(Conformance, TellsWhichCellsACalibrationMakesUseless) {
  for (const auto path : {OutputPath::Audiometer, OutputPath::Earphones}) {
    const auto cell = [&](const char* value, std::int32_t db) {
      return measureCell(path, replyWith(path, value), false, 1000, db);
    };
    const ConformanceCell loud = cell("-60", 85), quiet = cell("-20", 15), fine = cell("-50", 85);
    EXPECT_THAT(fine.misses, testing::Not(Contains("level")));
    EXPECT_FALSE(fine.clips || fine.isUnderResolution || loud.isUnderResolution || quiet.clips);
    EXPECT_THAT(loud.misses, Contains("level"));
    EXPECT_THAT(quiet.misses, Contains("level"));
    EXPECT_TRUE(loud.clips && quiet.isUnderResolution);
  }
  EXPECT_THROW(measureCell(OutputPath::Earphones, replyWith(OutputPath::Earphones, ""), true, 1000, 40),
               std::runtime_error);
}

}  // namespace
}  // namespace orn::simulation
