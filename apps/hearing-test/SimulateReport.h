#pragma once

#include <string>

#include "simulation/runs/SimulatedTest.h"

namespace orn {

/// The outcome as one JSON object.
std::string jsonReport(const simulation::TestOutcome& outcome);

/// Prints the result for a person.
void printResult(const simulation::TestOutcome& outcome);

/// Prints the outcome of a simulated test for a person: the thresholds found beside the listener's own.
void printReport(const simulation::TestPlan& plan, const simulation::TestOutcome& outcome);

}  // namespace orn
