#pragma once

#include <string>
#include <vector>

#include "simulation/studies/StudyStatistics.h"

namespace orn {

struct StudyResult {
  simulation::StudyPlan plan;
  std::vector<simulation::StudyStatistics> statistics;
};

/// All studies as one JSON object.
std::string jsonReport(const std::vector<StudyResult>& results);

/// Prints one study as a table for a person.
void printReport(const StudyResult& result);

}  // namespace orn
