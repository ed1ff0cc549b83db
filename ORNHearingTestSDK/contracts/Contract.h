#pragma once

#include <initializer_list>
#include <string>
#include <vector>

// A suite that tells whether a backend keeps the contracts of the platform's interfaces. It depends on no test
// framework: a porter links it and calls one check...() for each interface, on the main thread, with no platform in
// force. docs/PORTING.md shows how.

namespace orn::contract {

enum class Outcome {
  Passed,
  Broken,
  NotChecked,  ///< The backend under test lacks a hook that the check needs.
};

/// What became of one contract.
struct Verdict {
  std::string contract;  ///< The interface and one sentence, such as "RunLoop: the first firing is one interval off".
  Outcome outcome = Outcome::Passed;  ///< Of its check.
  std::string why;                    ///< What went wrong, or which hook is missing; one line.
};

/// Every contract of one interface, in the order in which they were checked.
using Report = std::vector<Verdict>;

/// Prints all as a table on the standard output, with their counts at its end. Returns what main() is to return: 0 if
/// something was checked and nothing is broken, else 1.
int conclude(std::initializer_list<Report> reports);

}  // namespace orn::contract
