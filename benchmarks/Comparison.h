#pragma once

#include <functional>
#include <string>

namespace orn::bench {

/// A piece of work, and what measures it once: in seconds, of the processor or on the wall.
struct Work {
  std::string name;
  std::function<double()> seconds;
};

/// Of short work: the processor time of one execution, of as many as take some milliseconds.
Work often(std::string name, std::function<void()> once);

/// Of long work: the processor time of this process.
double processorSeconds(const std::function<void()>& work);

/// Of what waits for others: the time on the wall.
double wallSeconds(const std::function<void()>& work);

/// Measures both in turn, so that what else the machine does meets both alike, and prints a line: the medians of the
/// two, and the median of the ratios of the pairs.
void compare(const Work& ours, const Work& reference, int pairs = 31);

/// A line of the table, of figures that are no times.
void printLine(const std::string& work, const std::string& ours, const std::string& reference,
               const std::string& theirs, double ratio);

/// Says that a comparison is left out.
void printMissing(const std::string& what);

/// What lies there counts as used, and as changed.
inline void keep(const void* data) { asm volatile("" : : "r"(data) : "memory"); }

}  // namespace orn::bench
