#include "simulation/studies/StudyStatistics.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>

namespace orn::simulation {
namespace {

using Values = std::vector<double>;

double meanOf(const Values& values) {
  return values.empty() ? 0 : std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
}

template <class Function>
double meanOf(const Values& values, Function function) {
  Values results;
  for (const double value : values) results.push_back(static_cast<double>(function(value)));
  return meanOf(results);
}

double deviationOf(const Values& values) {
  const double mean = meanOf(values);
  return std::sqrt(meanOf(values, [&](double value) { return (value - mean) * (value - mean); }));
}

ErrorStatistics errorsOf(const Values& errors) {
  // An error of 5 dB counts as within 5 dB, whatever its last bit says.
  const auto within = [&](double limit) {
    return meanOf(errors, [&](double error) { return std::abs(error) <= limit + 1e-9; });
  };
  return {meanOf(errors), meanOf(errors, [](double error) { return std::abs(error); }), deviationOf(errors), within(5),
          within(10)};
}

Spread spreadOf(Values values) {
  if (values.empty()) return {};
  std::sort(values.begin(), values.end());
  const auto rank = static_cast<std::size_t>(std::ceil(0.95 * static_cast<double>(values.size())));
  return {meanOf(values), values[rank - 1]};
}

/// The values of one frequency, or of all.
struct Gathered {
  Values onScale, plain, retest, presentations, minutes;

  void add(const StudiedThreshold& one, LevelScale scale) {
    for (const double found : one.found) {
      onScale.push_back(found - std::clamp<double>(one.threshold, scale.lowest, scale.highest()));
      plain.push_back(found - one.threshold);
    }
    retest.push_back(one.found[1] - one.found[0]);
  }

  template <class Taken>
  void addEffort(const Taken& taken) {
    presentations.insert(presentations.end(), taken.presentations.begin(), taken.presentations.end());
    minutes.insert(minutes.end(), taken.minutes.begin(), taken.minutes.end());
  }

  StudyStatistics statistics(std::int32_t hz) const {
    return {hz,
            retest.size(),
            errorsOf(onScale),
            errorsOf(plain),
            meanOf(retest),
            deviationOf(retest),
            spreadOf(presentations),
            spreadOf(minutes)};
  }
};

}  // namespace

std::vector<StudyStatistics> statisticsOf(const StudyPlan& plan, const std::vector<StudiedListener>& listeners) {
  std::map<std::int32_t, Gathered> byFrequency;
  Gathered overall;
  for (const StudiedListener& listener : listeners) {
    for (const StudiedThreshold& one : listener.thresholds) {
      const LevelScale scale = scaleOf(plan.type, one.hz);
      byFrequency[one.hz].add(one, scale);
      byFrequency[one.hz].addEffort(one);
      overall.add(one, scale);
    }
    overall.addEffort(listener);
  }
  std::vector<StudyStatistics> all;
  for (const auto& [hz, gathered] : byFrequency) all.push_back(gathered.statistics(hz));
  all.push_back(overall.statistics(0));
  return all;
}

}  // namespace orn::simulation
