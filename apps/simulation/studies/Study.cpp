#include "simulation/studies/Study.h"

#include <map>
#include <stdexcept>
#include <utility>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/common/NumericText.h>

#include "simulation/listener/Chance.h"
#include "simulation/studies/WorkerProcesses.h"

namespace orn::simulation {

NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(StudiedThreshold, hz, threshold, found, presentations, minutes)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(StudiedListener, thresholds, presentations, minutes)

namespace {

constexpr double kSecondsOfATone = 4;

/// The standard test announces a frequency's first tone a second time after a level that was accepted as heard.
constexpr double kAnnouncedAgain = 1.5;

struct Search {
  double presentations = 0;
  double minutes = 0;
};

/// By ear and frequency; the retest of the standard test counts towards its frequency.
using Searches = std::map<std::pair<bool, std::int32_t>, Search>;

Searches searchesOf(const std::vector<Presentation>& presentations) {
  Searches searches;
  for (std::size_t i = 0; i < presentations.size(); ++i) {
    const Presentation& one = presentations[i];
    const Presentation* next = i + 1 < presentations.size() ? &presentations[i + 1] : nullptr;
    const bool isLastOfEar = !next || next->isLeft != one.isLeft;
    const double seconds = isLastOfEar ? kSecondsOfATone : next->at - one.at;
    const bool comesAgain = !isLastOfEar && next->hz == one.hz && next->db == one.db && seconds < kAnnouncedAgain;
    Search& search = searches[{one.isLeft, intValue(one.hz)}];
    search.minutes += seconds / 60;
    if (!comesAgain) ++search.presentations;
  }
  return searches;
}

TestOutcome takenTest(const StudyPlan& plan, ListenerTraits listener, std::size_t index, std::size_t time) {
  TestPlan test;
  test.type = plan.type;
  test.path = plan.path;
  test.calibrationReply = plan.calibrationReply;
  test.listener = std::move(listener);
  test.listener.seed = derivedSeed(derivedSeed(plan.seed, index), time);
  TestOutcome outcome = runSimulatedTest(test);
  if (!outcome.isComplete) throw std::runtime_error("listener " + std::to_string(index) + ": " + outcome.failure);
  return outcome;
}

void note(StudiedListener& studied, const ListenerTraits& listener, const TestOutcome& outcome, std::size_t time) {
  const Searches searches = searchesOf(outcome.presentations);
  std::size_t at = 0;
  for (const bool isLeft : {false, true}) {
    for (const auto& [key, level] : isLeft ? outcome.left : outcome.right) {
      const std::int32_t hz = intValue(key);
      if (time == 0) studied.thresholds.push_back({hz, (isLeft ? listener.left : listener.right).at(hz), {}, {}, {}});
      StudiedThreshold& threshold = studied.thresholds.at(at++);
      const Search& search = searches.at({isLeft, hz});
      threshold.found.at(time) = doubleValue(level);
      threshold.presentations.at(time) = search.presentations;
      threshold.minutes.at(time) = search.minutes;
    }
  }
  for (const auto& [key, search] : searches) studied.presentations.at(time) += search.presentations;
  studied.minutes.at(time) = outcome.simulatedSeconds / 60;
}

}  // namespace

StudiedListener studyListener(const StudyPlan& plan, std::size_t index) {
  const ListenerTraits listener = listenerOf(plan.population, plan.seed, index);
  StudiedListener studied;
  for (const std::size_t time : {0U, 1U}) note(studied, listener, takenTest(plan, listener, index, time), time);
  return studied;
}

std::vector<StudiedListener> runStudy(const StudyPlan& plan, std::size_t workers) {
  std::vector<StudiedListener> all;
  for (const std::string& text : inWorkerProcesses(plan.listeners, workers, [&plan](std::size_t index) {
         return nlohmann::json(studyListener(plan, index)).dump();
       })) {
    all.push_back(nlohmann::json::parse(text).get<StudiedListener>());
  }
  return all;
}

LevelScale scaleOf(TestType type, std::int32_t hz) {
  // At 1000 Hz the standard test reports the threshold of its retest, whose scale reaches lower.
  return type == TestType::Standard && hz == 1000 ? kRetestScale : kGridScale;
}

}  // namespace orn::simulation
