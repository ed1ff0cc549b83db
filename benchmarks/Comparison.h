#pragma once

#include <functional>
#include <string>

namespace orn::bench {

/// A piece of work, and what measures it once: in seconds of processor time or of wall-clock time.
struct Work {
  std::string name;
  std::function<double()> seconds;
};

/// For short work: the mean processor time of one execution, over as many as take some milliseconds.
Work often(std::string name, std::function<void()> once);

/// For long work: the processor time of this process.
double processorSeconds(const std::function<void()>& work);

/// For work that waits for others: the wall-clock time.
double wallSeconds(const std::function<void()>& work);

/// Measures both alternately, so that whatever else the machine does slows both alike, and prints a line: the medians
/// of the two, and the median of the ratios of the pairs.
void compare(const Work& ours, const Work& reference, int pairs = 31);

/// A line of the table, for figures that are not times.
void printLine(const std::string& work, const std::string& ours, const std::string& reference,
               const std::string& theirs, double ratio);

/// Says that a comparison is left out.
void printMissing(const std::string& what);

/// Makes the compiler take what lies there as used, and as changed.
inline void keep(const void* data) { asm volatile("" : : "r"(data) : "memory"); }

}  // namespace orn::bench
