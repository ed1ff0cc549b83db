// The application's start to its first complete frame, against a process with an empty window; a long history until it
// shows, against the parsing of its JSON alone; and the painting of one of its rows.

#include <benchmark/benchmark.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <nlohmann/json.hpp>

#include <QtGui/QImage>
#include <QtWidgets/QApplication>

#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>
#include <ORNHearingTestSDK/screens/NavigationController.h>
#include <ORNHearingTestSDK/screens/NavigationWindow.h>
#include <ORNHearingTestSDK/screens/ORNTestHistoryViewController.h>

namespace {

using namespace orn;
using Clock = std::chrono::steady_clock;

/// From the start of the process to the line by which it says that its frame is complete.
void start(benchmark::State& state, const std::string& command) {
  for (auto _ : state) {
    const auto begin = Clock::now();
    FILE* output = popen(command.c_str(), "r");
    std::array<char, 16> line{};
    const bool isShown = output && std::fgets(line.data(), line.size(), output);
    state.SetIterationTime(std::chrono::duration<double>(Clock::now() - begin).count());
    if (output) pclose(output);
    if (!isShown) return state.SkipWithError("no frame came");
  }
}

void emptyWindowStart(benchmark::State& state) { start(state, ORN_EMPTY_WINDOW " 2>&-"); }
BENCHMARK(emptyWindowStart)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(20);

void applicationStart(benchmark::State& state) {
  start(state, ORN_HEARING_APP " --simulate --end-at-first-frame 2>&-");
}
BENCHMARK(applicationStart)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(20);

constexpr int kTests = 10'000;

/// As the service gives it, with all that it stores of a test.
const std::string& historyReply() {
  static const std::string reply = [] {
    nlohmann::json tests = nlohmann::json::array();
    for (int number = 0; number < kTests; ++number) {
      nlohmann::json test{{"id", std::to_string(number)}, {"createDate", 1.7e12 + number}, {"base", 0}};
      for (const char* ear : {"left", "right"}) {
        for (const char* hz : {"125", "250", "500", "1000", "2000", "4000", "8000"}) {
          test[std::string(ear) + hz + "hz"] = std::to_string(15 + 5 * (number % 12));
        }
      }
      for (const char* key : {"leftScore", "rightScore", "score", "leftResult_d", "rightResul_d"}) test[key] = 0.0;
      for (const char* key : {"noise", "grade", "versions", "personID", "personName", "leftResult", "rightResult"}) {
        test[key] = nullptr;
      }
      tests.push_back(std::move(test));
    }
    return nlohmann::json{{"rspCode", 0}, {"listenTests", std::move(tests)}}.dump();
  }();
  return reply;
}

void historyJsonAlone(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(nlohmann::json::parse(historyReply()));
}
BENCHMARK(historyJsonAlone)->Unit(benchmark::kMillisecond);

/// A machine whose service has the long history.
struct Machine {
  Machine() {
    for (const char* key : {"SERVICEHOST", "APPKEY", "USERID"}) {
      simulated.userDefaults->setValue(key, std::string("given"));
    }
    simulated.urlSession->script("", {historyReply(), std::nullopt});
    Platform::setCurrent(simulated.platform());
  }
  ~Machine() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    Platform::clearCurrent();
  }
  Machine(const Machine&) = delete;
  Machine& operator=(const Machine&) = delete;

  std::shared_ptr<ORNTestHistoryViewController> show(NavigationWindow& window) {
    auto screen = ORNTestHistoryViewController::init();
    window.show();
    window.navigation()->push(screen);
    simulated.virtualTime->runFor(std::chrono::milliseconds(20));
    return screen;
  }

  SimulatedPlatform simulated;
};

/// From the tap to the frame with its first rows.
void historyShown(benchmark::State& state) {
  Machine machine;
  for (auto _ : state) {
    state.PauseTiming();
    auto window = std::make_unique<NavigationWindow>();
    state.ResumeTiming();
    auto screen = machine.show(*window);
    benchmark::DoNotOptimize(window->grab());
    state.PauseTiming();
    if (!screen->tableView()->cellForRow({0, 0})) state.SkipWithError("no row shows");
    screen.reset();
    window.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    state.ResumeTiming();
  }
}
BENCHMARK(historyShown)->Unit(benchmark::kMillisecond);

void historyRowPainted(benchmark::State& state) {
  Machine machine;
  NavigationWindow window;
  const auto screen = machine.show(window);
  TableCell* cell = screen->tableView()->cellForRow({0, 0});
  if (!cell) return state.SkipWithError("no row shows");
  QImage image(cell->size(), QImage::Format_RGB32);
  for (auto _ : state) cell->render(&image);
}
BENCHMARK(historyRowPainted)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
