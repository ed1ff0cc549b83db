// A whole automatic test of both ears in virtual time, every sample made and measured: beside the time that it
// simulates, and beside a naive oscillator that makes as many samples; and the memory that it takes beyond the
// process's own start, beside those samples.

#include <unistd.h>

#include <array>
#include <cstdio>
#include <string>

#include "benchmarks/Comparison.h"
#include "benchmarks/NaiveOscillator.h"
#include "simulation/calibration/SampleCalibration.h"
#include "simulation/runs/SimulatedTest.h"

namespace {

using namespace orn::bench;
using namespace orn::simulation;
using orn::OutputPath;

constexpr int kPairs = 15;
constexpr double kMiB = 1 << 20;

double residentMiB() {
  long pages = 0, resident = 0;
  if (std::FILE* file = std::fopen("/proc/self/statm", "r")) {
    if (std::fscanf(file, "%ld %ld", &pages, &resident) != 2) resident = 0;
    std::fclose(file);
  }
  return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / kMiB;
}

const double atStart = residentMiB();

std::string mebibytes(double size) {
  char text[32];
  std::snprintf(text, sizeof text, "%.3g MiB", size);
  return text;
}

void oscillate(double seconds) {
  NaiveOscillator oscillator(1000);
  std::array<std::int16_t, 3840> block{};
  for (double made = 0; made < seconds; made += 0.08) {
    oscillator.fill(block);
    keep(block.data());
  }
}

void measure(OutputPath path, const std::string& name) {
  TestPlan plan;
  plan.path = path;
  plan.calibrationReply = sampleReply(path);
  plan.listener.left = {{1000, 20}, {2000, 27.5}, {4000, 88}, {500, 17}};
  plan.listener.right = {{1000, 35}, {2000, 42.5}, {4000, 61}, {500, 30}};
  const double simulated = runSimulatedTest(plan).simulatedSeconds;
  const double memory = residentMiB() - atStart;
  const double samples = simulated * 48000 * 2 * 2 / kMiB;
  const std::string work = "whole test, " + name;
  const auto test = [&] { return processorSeconds([&] { runSimulatedTest(plan); }); };
  compare({work, test}, {"the time that it simulates", [&] { return simulated; }}, kPairs);
  compare({work, test}, {"as long a tone by sinf", [&] { return processorSeconds([&] { oscillate(simulated); }); }},
          kPairs);
  printLine("memory of the test, " + name, mebibytes(memory), "its samples", mebibytes(samples), memory / samples);
}

}  // namespace

int main() {
  measure(OutputPath::Audiometer, "audiometer");
  measure(OutputPath::Earphones, "earphones");
}
