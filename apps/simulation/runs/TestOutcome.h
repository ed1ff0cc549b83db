#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <ORNHearingTestSDK/common/EarResult.h>

#include "simulation/listener/VirtualListener.h"

namespace orn::simulation {

/// One presentation of a test: as the session announced it, and as the listener judged it.
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
  std::int64_t leftLoss = 0, rightLoss = 0;  ///< In dB, with the allowance for the profile in the settings.
  std::string leftVerdict, rightVerdict;
  std::string submissionFailure;  ///< One line, if the service was sent the result and has not taken it.
  std::vector<Presentation> presentations;
  double simulatedSeconds = 0;        ///< By the loop's clock.
  double elapsedSeconds = 0;          ///< By the wall clock.
  std::vector<std::int16_t> samples;  ///< Interleaved, from the start on, if the plan keeps them.
};

}  // namespace orn::simulation
