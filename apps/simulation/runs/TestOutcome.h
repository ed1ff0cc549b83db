#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <ORNHearingTestSDK/common/EarResult.h>

#include "simulation/listener/VirtualListener.h"

namespace orn::simulation {

/// One tone of a test: as the session announced it, and as the listener took it.
struct Presentation {
  double at = 0;  ///< Seconds since the start of the first ear.
  bool isLeft = false;
  std::string hz;
  std::string db;
  float volume = 0;
  std::optional<HeardTone> measured;  ///< Nothing if no tone came out of the output, or nobody measured.
  bool heard = false;                 ///< The listener has judged it as heard, or a person has pressed.
};

struct TestOutcome {
  bool isComplete = false;
  std::string failure;  ///< One line, where the test is not complete.
  EarResult left, right;
  std::int64_t leftLoss = 0, rightLoss = 0;  ///< dB, by the profile in the settings.
  std::string leftVerdict, rightVerdict;
  std::string submissionFailure;  ///< One line, where the service should have the result and has not.
  std::vector<Presentation> presentations;
  double simulatedSeconds = 0;        ///< In the loop's time.
  double elapsedSeconds = 0;          ///< On the wall.
  std::vector<std::int16_t> samples;  ///< Left and right in turn, from the start on, where the plan keeps them.
};

}  // namespace orn::simulation
