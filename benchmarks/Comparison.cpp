#include "benchmarks/Comparison.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <memory>
#include <utility>
#include <vector>

namespace orn::bench {
namespace {

constexpr double kEnough = 0.005;

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

double processorTime() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

std::string text(double seconds) {
  static constexpr std::pair<double, const char*> units[] = {{1, "s"}, {1e-3, "ms"}, {1e-6, "us"}};
  double unit = 1e-9;
  const char* name = "ns";
  for (const auto& [size, symbol] : units) {
    if (seconds < size) continue;
    unit = size;
    name = symbol;
    break;
  }
  char line[32];
  std::snprintf(line, sizeof line, "%.3g %s", seconds / unit, name);
  return line;
}

}  // namespace

double processorSeconds(const std::function<void()>& work) {
  const double before = processorTime();
  work();
  return processorTime() - before;
}

double wallSeconds(const std::function<void()>& work) {
  const auto before = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - before).count();
}

Work often(std::string name, std::function<void()> once) {
  const auto many = [once = std::move(once)](int times) {
    return processorSeconds([&] {
      for (int i = 0; i < times; ++i) once();
    });
  };
  int times = 1;
  while (many(times) < kEnough) times *= 2;
  return {std::move(name), [many, times] { return many(times) / times; }};
}

void compare(const Work& ours, const Work& reference, int pairs) {
  std::vector<double> of, against, ratios;
  for (int i = 0; i < pairs; ++i) {
    of.push_back(ours.seconds());
    against.push_back(reference.seconds());
    ratios.push_back(of.back() / against.back());
  }
  printLine(ours.name, text(median(of)), reference.name, text(median(against)), median(ratios));
}

void printLine(const std::string& work, const std::string& ours, const std::string& reference,
               const std::string& theirs, double ratio) {
  std::printf("%-40s %9s  %-35s %9s %9.3g\n", work.c_str(), ours.c_str(), reference.c_str(), theirs.c_str(), ratio);
  std::fflush(stdout);
}

void printMissing(const std::string& what) {
  std::printf("%s is missing, and its line with it; scripts/bootstrap.sh bench installs it\n", what.c_str());
}

}  // namespace orn::bench
