#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <ORNHearingTestSDK/engine/LevelScale.h>

#include "simulation/runs/SimulatedTest.h"
#include "simulation/studies/Population.h"

namespace orn::simulation {

/// Many listeners who each take the same test of both ears twice.
struct StudyPlan {
  TestType type = TestType::Automatic;
  OutputPath path = OutputPath::Audiometer;
  std::string calibrationReply;
  Population population;
  std::size_t listeners = 100;
  std::uint64_t seed = 1;
};

/// One frequency of one ear: the listener's threshold and the two that were found, in dB HL.
struct StudiedThreshold {
  std::int32_t hz = 0;
  double threshold = 0;
  std::array<double, 2> found{};
  std::array<double, 2> presentations{};
  std::array<double, 2> minutes{};
};

/// The results of one listener; the totals are of both ears.
struct StudiedListener {
  std::vector<StudiedThreshold> thresholds;
  std::array<double, 2> presentations{};
  std::array<double, 2> minutes{};
};

/// The listener of an index takes the test twice, on platforms of its own. Throws std::runtime_error if a test does not
/// come to its end. Main thread.
StudiedListener studyListener(const StudyPlan& plan, std::size_t index);

/// All of them, by worker processes, whose number makes no difference. Main thread, before any other thread is started.
std::vector<StudiedListener> runStudy(const StudyPlan& plan, std::size_t workers);

/// The levels that a test can report at a frequency.
LevelScale scaleOf(TestType type, std::int32_t hz);

}  // namespace orn::simulation
