#include "simulation/studies/Conformance.h"

#include <chrono>
#include <cmath>
#include <stdexcept>

#include <ORNHearingTestSDK/common/ToneFrequencies.h>
#include <ORNHearingTestSDK/engine/LevelScale.h>
#include <ORNHearingTestSDK/engine/SessionCalibration.h>
#include <ORNHearingTestSDK/platform/SampleFormat.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>

#include "simulation/calibration/SampleCalibration.h"
#include "simulation/listener/HearingLevel.h"

namespace orn::simulation {
namespace {

using std::chrono::milliseconds;

// The slowest fade, at 125 Hz, takes 1.36 s and begins 0.24 s after the tone is asked for.
constexpr milliseconds kSilence{200}, kToneOn{3000}, kToneOff{2200};
constexpr SteadyPart kSteady{std::size_t{kSampleRate} * 2, std::size_t{kSampleRate}};

/// One session on one machine, for one tone.
class Bench {
 public:
  Bench(OutputPath path, const std::string& reply, bool isLeft, std::int32_t hz);
  ~Bench() { Platform::clearCurrent(); }
  Bench(const Bench&) = delete;
  Bench& operator=(const Bench&) = delete;

  ConformanceCell measure(std::int32_t db);

 private:
  void render(std::int32_t db);
  void measureChannels(ConformanceCell& cell) const;
  void compareCalibration(ConformanceCell& cell) const;
  std::optional<double> level(double amplitude) const { return levelOf(*session_, path_, hz_, amplitude); }

  OutputPath path_;
  bool isLeft_;
  std::int32_t hz_;
  SimulatedPlatform machine_;
  std::shared_ptr<ORNManualHearingTest> session_;
  std::shared_ptr<ORNHearingTestDelegate> delegate_ = std::make_shared<ORNHearingTestDelegate>();
  std::optional<double> volume_;  // as the session announced it
};

Bench::Bench(OutputPath path, const std::string& reply, bool isLeft, std::int32_t hz)
    : path_(path), isLeft_(isLeft), hz_(hz) {
  Platform::setCurrent(machine_.platform());
  session_ = ORNManualHearingTest::init();
  session_->setDelegate(delegate_);
  // Two frequencies, so that the end of the tone does not complete the ear, which would cut the tone off.
  session_->setTestHzs({frequencyKey(hz), frequencyKey(hz == 1000 ? 2000 : 1000)});
  calibrate(*session_, path, sampleDevice(path), reply);
  if (!isCalibrated(*session_, path)) throw std::runtime_error("the calibration lacks records that the path needs");
  delegate_->willTestAtHz = [this](auto&, auto&, auto&, float volume, bool) { volume_ = volume; };
  machine_.audioOutput->keepSamples();
}

void Bench::render(std::int32_t db) {
  session_->startTest(isLeft_);
  machine_.virtualTime->runFor(kSilence);
  session_->playAtHz(frequencyKey(hz_), std::to_string(db));
  machine_.virtualTime->runFor(kToneOn);
  session_->listened();  // ends the tone
  machine_.virtualTime->runFor(kToneOff);
  if (!volume_) {
    throw std::runtime_error("the calibration lacks a value for the " + std::string(isLeft_ ? "left" : "right") +
                             " ear at " + std::to_string(hz_) + " Hz");
  }
}

void Bench::measureChannels(ConformanceCell& cell) const {
  std::vector<std::int16_t> ear, other;
  const auto& both = machine_.audioOutput->keptSamples();
  for (std::size_t i = 0; i < both.size(); i += 2) {
    ear.push_back(both[i + (isLeft_ ? 0 : 1)]);
    other.push_back(both[i + (isLeft_ ? 1 : 0)]);
  }
  cell.tone = analysed(ear, hz_, kSteady);
  if (cell.tone) cell.level = level(cell.tone->amplitude);
  if (const auto crossed = analysed(other, hz_, kSteady)) cell.otherEar = level(crossed->amplitude);
}

/// What the calibration asks for, whether or not the output can do it.
void Bench::compareCalibration(ConformanceCell& cell) const {
  const double asked = std::pow(10.0, (cell.db - level(1).value_or(0)) / 20);
  cell.isUnderResolution = asked * kFullScale < 1;
  cell.clips = path_ == OutputPath::Audiometer ? *volume_ < asked * (1 - 1e-3) : *volume_ > 1;
}

ConformanceCell Bench::measure(std::int32_t db) {
  render(db);
  ConformanceCell cell;
  cell.isLeft = isLeft_;
  cell.hz = hz_;
  cell.db = db;
  measureChannels(cell);
  compareCalibration(cell);
  return cell;
}

void noteMisses(ConformanceCell& cell) {
  const auto note = [&](bool isMissed, const char* limit) {
    if (isMissed) cell.misses.emplace_back(limit);
  };
  const double levelLimit = cell.hz > 4000 ? limits::kLevelAbove4kHz : limits::kLevel;
  note(!cell.level || std::abs(cell.levelError()) > levelLimit, "level");
  if (!cell.tone) return;
  const auto isOutside = [](double seconds) { return seconds < limits::kShortest || seconds > limits::kLongest; };
  note(std::abs(cell.tone->hz / cell.hz - 1) > limits::kFrequency, "frequency");
  note(cell.tone->distortion > limits::kDistortion, "distortion");
  note(isOutside(cell.tone->riseSeconds), "rise");
  note(isOutside(cell.tone->fallSeconds), "fall");
  note(cell.tone->overshoot > limits::kOvershoot, "overshoot");
  note(cell.tone->seam > 0, "seam");
}

}  // namespace

ConformanceCell measureCell(OutputPath path, const std::string& calibrationReply, bool isLeft, std::int32_t hz,
                            std::int32_t db) {
  ConformanceCell cell = Bench(path, calibrationReply, isLeft, hz).measure(db);
  noteMisses(cell);
  return cell;
}

std::vector<ConformanceCell> measureConformance(OutputPath path, const std::string& calibrationReply) {
  std::vector<ConformanceCell> cells;
  for (const bool isLeft : {false, true}) {
    for (const std::int32_t hz : kToneFrequencies) {
      for (int row = 0; row < kGridScale.rows; ++row) {
        cells.push_back(measureCell(path, calibrationReply, isLeft, hz, kGridScale.levelOf(row)));
      }
    }
  }
  return cells;
}

}  // namespace orn::simulation
