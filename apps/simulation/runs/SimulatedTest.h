#pragma once

#include <optional>
#include <string>
#include <vector>

#include <ORNHearingTestSDK/common/ToneFrequencies.h>
#include <ORNHearingTestSDK/platform/Platform.h>

#include "simulation/runs/TestOutcome.h"
#include "simulation/runs/TestRun.h"

namespace orn::simulation {

/// A test to be simulated.
struct TestPlan {
  TestType type = TestType::Automatic;
  OutputPath path = OutputPath::Audiometer;
  std::vector<std::string> frequencies = frequencyKeys(kShortTestOrder);  ///< Keys; the standard test has its own.
  ListenerTraits listener;
  std::string calibrationReply;  ///< JSON text as the service sends it.

  /// A machine with a service to ask for the calibration and to send the result to, instead of a given reply. Its URL
  /// session, settings, files and device are used.
  std::optional<Platform> service;
  bool keepsSamples = false;
};

/// Runs a whole test of both ears, the right one first, in virtual time on a simulated platform of its own, which is
/// the platform in force for that time. Main thread.
TestOutcome runSimulatedTest(const TestPlan& plan, const TestWatch& watch = {});

}  // namespace orn::simulation
