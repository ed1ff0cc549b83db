// A whole automatic test of both ears in virtual time, every sample made and measured: how many times real time it
// runs, and how much memory it takes beyond the process's own start.

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "simulation/SampleCalibration.h"
#include "simulation/SimulatedTest.h"

namespace {

using namespace orn::simulation;

double residentMiB() {
  long pages = 0, resident = 0;
  if (std::FILE* file = std::fopen("/proc/self/statm", "r")) {
    if (std::fscanf(file, "%ld %ld", &pages, &resident) != 2) resident = 0;
    std::fclose(file);
  }
  return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1 << 20);
}

const double atStart = residentMiB();

void wholeTest(benchmark::State& state, OutputPath path) {
  TestPlan plan;
  plan.path = path;
  plan.calibrationReply =
      std::string(path == OutputPath::Audiometer ? sampleAudiometerReply() : sampleEarphonesReply());
  plan.listener.left = {{1000, 20}, {2000, 27.5}, {4000, 88}, {500, 17}};
  plan.listener.right = {{1000, 35}, {2000, 42.5}, {4000, 61}, {500, 30}};
  double simulated = 0;
  for (auto _ : state) simulated += runSimulatedTest(plan).simulatedSeconds;
  state.counters["times_real_time"] = benchmark::Counter(simulated, benchmark::Counter::kIsRate);
  state.counters["MiB_beyond_start"] = residentMiB() - atStart;
}
BENCHMARK_CAPTURE(wholeTest, audiometer, OutputPath::Audiometer)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(wholeTest, earphones, OutputPath::Earphones)->Unit(benchmark::kMillisecond);

}  // namespace
