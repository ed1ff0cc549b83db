#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <ORNHearingTestSDK/common/EarResult.h>
#include <ORNHearingTestSDK/platform/Platform.h>

#include "simulation/SessionCalibration.h"
#include "simulation/VirtualListener.h"

namespace orn::simulation {

enum class TestType : std::int32_t { Automatic = 0, Standard = 2 };

/// A test to be simulated.
struct TestPlan {
  TestType type = TestType::Automatic;
  OutputPath path = OutputPath::Audiometer;
  std::vector<std::string> frequencies{"1000hz", "2000hz", "4000hz",
                                       "500hz"};  ///< Keys; the standard test has its own.
  ListenerTraits listener;
  std::string calibrationReply;  ///< JSON text as the service sends it.

  /// A machine with a service to ask for the calibration and to send the result to, instead of a given reply. Its URL
  /// session, settings, files and device are used.
  std::optional<Platform> service;
  bool keepsSamples = false;
};

/// One tone of a test: as the session announced it, and as the listener took it.
struct Presentation {
  double at = 0;  ///< Seconds since the start of the first ear.
  bool isLeft = false;
  std::string hz;
  std::string db;
  float volume = 0;
  std::optional<HeardTone> measured;  ///< Nothing if no tone came out of the output.
  bool heard = false;                 ///< The listener has judged it as heard.
};

struct TestOutcome {
  bool isComplete = false;
  std::string failure;  ///< One line, where the test is not complete.
  EarResult left, right;
  std::int64_t leftLoss = 0, rightLoss = 0;  ///< dB, by the profile in the settings.
  std::string leftVerdict, rightVerdict;
  std::vector<Presentation> presentations;
  double simulatedSeconds = 0;
  double elapsedSeconds = 0;
  std::vector<std::int16_t> samples;  ///< Left and right in turn, from the start on, where the plan keeps them.
};

/// Told of a test's progress; empty members are not called.
struct TestWatch {
  std::function<void(bool isLeft)> earStarts;
  std::function<void(bool isLeft, const std::string& hz, const std::string& db)> thresholdFound;
};

/// Runs a whole test of both ears, the right one first, in virtual time on a simulated platform of its own, which is
/// the platform in force for that time. Main thread.
TestOutcome runSimulatedTest(const TestPlan& plan, const TestWatch& watch = {});

}  // namespace orn::simulation
