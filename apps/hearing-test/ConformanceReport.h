#pragma once

#include <string>
#include <vector>

#include "simulation/studies/Conformance.h"

namespace orn {

struct ConformanceResult {
  OutputPath path = OutputPath::Audiometer;
  std::vector<simulation::ConformanceCell> cells;
};

/// All paths as one JSON object.
std::string jsonReport(const std::vector<ConformanceResult>& results);

/// Prints one path for a person: a line for each cell, then which cells clip, are too quiet or miss a limit.
void printReport(const ConformanceResult& result);

}  // namespace orn
