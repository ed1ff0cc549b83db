#include "simulation/SimulatedTest.h"

#include <chrono>
#include <memory>
#include <utility>

#include <ORNHearingTestSDK/engine/ORNManualHearingTest.h>
#include <ORNHearingTestSDK/engine/PresentationClock.h>
#include <ORNHearingTestSDK/platform/linux/LinuxRunLoop.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>

#include "simulation/BlockingURLSession.h"

namespace orn::simulation {
namespace {

using std::chrono::seconds;

constexpr seconds kLongestTest = std::chrono::hours(24);
constexpr seconds kRestBetweenEars{2};

double inSeconds(std::chrono::nanoseconds time) { return std::chrono::duration<double>(time).count(); }

/// One run: a session, its delegate and the listener at the output.
class Run {
 public:
  Run(const TestPlan& plan, const TestWatch& watch);
  // While everything that hangs on the output is still there.
  ~Run() { Platform::clearCurrent(); }
  TestOutcome go();

 private:
  Platform platform() const;
  void fetchCalibration();
  void startEar(bool isLeft);
  void watchDelegate();
  void listenToOutput();
  void press(std::chrono::milliseconds reaction);
  void presented(const std::string& hz, const std::string& db, float volume, bool isLeft);
  void closePresentation();

  const TestPlan& plan_;
  const TestWatch& watch_;
  SimulatedPlatform machine_;
  std::shared_ptr<ORNManualHearingTest> session_;
  std::shared_ptr<ORNHearingTestDelegate> delegate_ = std::make_shared<ORNHearingTestDelegate>();
  std::unique_ptr<VirtualListener> listener_;
  std::chrono::nanoseconds start_{};
  TestOutcome outcome_;
};

Run::Run(const TestPlan& plan, const TestWatch& watch) : plan_(plan), watch_(watch) {
  Platform::setCurrent(platform());
  session_ = std::dynamic_pointer_cast<ORNManualHearingTest>(
      ORNHearingTest::initWithTestType(static_cast<std::int32_t>(plan.type)));
  session_->setDelegate(delegate_);
  session_->setTestHzs(plan.frequencies);
  if (plan_.service) {
    fetchCalibration();
  } else {
    calibrate(*session_, plan_.path, plan_.calibrationReply);
  }
  watchDelegate();
  listenToOutput();
}

Platform Run::platform() const {
  Platform platform = machine_.platform();
  if (plan_.service) {
    platform.urlSession = std::make_shared<BlockingURLSession>(plan_.service->urlSession);
    platform.userDefaults = plan_.service->userDefaults;
    platform.fileManager = plan_.service->fileManager;
    platform.device = plan_.service->device;
  }
  return platform;
}

void Run::fetchCalibration() {
  const auto fetched = [this](const std::optional<Error>& error) {
    if (error) outcome_.failure = "no calibration: " + error->message;
  };
  if (plan_.path == OutputPath::Audiometer) {
    session_->setKV50MAC(kSimulatedAddress, fetched);
  } else {
    session_->setEarPlugModel(kSimulatedEarphoneModel, fetched);
  }
  machine_.virtualTime->runFor(seconds(0));  // what the reply has handed to the main thread
  if (!hasRecords(*session_, plan_.path) && outcome_.failure.empty())
    outcome_.failure = "the service has no calibration for this device";
}

void Run::listenToOutput() {
  listener_ = std::make_unique<VirtualListener>(
      plan_.listener, seconds(PresentationClock::getPlayTime()),
      [this](std::int32_t hz, double amplitude) { return levelOf(*session_, plan_.path, hz, amplitude); },
      [this](std::chrono::milliseconds reaction) { press(reaction); });
  listener_->onJudgement = [this](const HeardTone& tone) {
    if (outcome_.presentations.empty()) return;
    outcome_.presentations.back().measured = tone;
    outcome_.presentations.back().heard = tone.heard;
  };
  if (plan_.keepsSamples) machine_.audioOutput->keepSamples();
  machine_.audioOutput->addListener(
      [this](std::int64_t, std::span<const std::int16_t> samples) { listener_->hear(samples); });
}

void Run::press(std::chrono::milliseconds reaction) {
  machine_.runLoop->performAfterDelay(reaction, [session = session_] { session->listened(); });
}

void Run::watchDelegate() {
  delegate_->willTestAtHz = [this](ORNHearingTest&, const std::string& hz, const std::string& db, float volume,
                                   bool isLeft) { presented(hz, db, volume, isLeft); };
  delegate_->willSelectedAtHz = [this](ORNHearingTest&, const std::string& hz, const std::string& db, bool isLeft) {
    closePresentation();
    if (watch_.thresholdFound) watch_.thresholdFound(isLeft, hz, db);
  };
  delegate_->oneEarCompleteWithResult = [this](ORNHearingTest&, const EarResult&, bool isLeft) {
    machine_.runLoop->performAfterDelay(kRestBetweenEars, [this, isLeft] { startEar(!isLeft); });
  };
  delegate_->completeWithLeftResult = [this](ORNHearingTest&, const EarResult& left, const EarResult& right) {
    outcome_.isComplete = true;
    outcome_.left = left;
    outcome_.right = right;
    outcome_.leftLoss = ORNHearingTest::computeEarTestResult(left);
    outcome_.rightLoss = ORNHearingTest::computeEarTestResult(right);
    outcome_.leftVerdict = ORNHearingTest::computeResultString(outcome_.leftLoss);
    outcome_.rightVerdict = ORNHearingTest::computeResultString(outcome_.rightLoss);
  };
  delegate_->calibrationMissing = [this](ORNHearingTest&, bool isLeft) {
    outcome_.failure = std::string("the calibration lacks a value for the ") + (isLeft ? "left" : "right") + " ear";
  };
}

void Run::presented(const std::string& hz, const std::string& db, float volume, bool isLeft) {
  closePresentation();
  outcome_.presentations.push_back(
      {inSeconds(machine_.runLoop->now() - start_), isLeft, hz, db, volume, std::nullopt, false});
}

/// A tone that just went on from the presentation before was judged then.
void Run::closePresentation() {
  if (outcome_.presentations.empty() || outcome_.presentations.back().measured) return;
  outcome_.presentations.back().measured = listener_->presentTone();
  outcome_.presentations.back().heard = listener_->presentTone() && listener_->presentTone()->heard;
}

void Run::startEar(bool isLeft) {
  if (watch_.earStarts) watch_.earStarts(isLeft);
  listener_->setEar(isLeft);
  session_->startTest(isLeft);
}

TestOutcome Run::go() {
  const LinuxRunLoop wallClock;
  if (!outcome_.failure.empty()) return std::move(outcome_);
  start_ = machine_.runLoop->now();
  startEar(false);
  const auto isOver = [this] { return outcome_.isComplete || !outcome_.failure.empty(); };
  if (!machine_.virtualTime->runUntil(isOver, kLongestTest)) outcome_.failure = "the test did not come to an end";
  outcome_.simulatedSeconds = inSeconds(machine_.runLoop->now() - start_);
  outcome_.elapsedSeconds = inSeconds(wallClock.now());
  if (plan_.keepsSamples) outcome_.samples = machine_.audioOutput->keptSamples();
  return std::move(outcome_);
}

}  // namespace

TestOutcome runSimulatedTest(const TestPlan& plan, const TestWatch& watch) { return Run(plan, watch).go(); }

}  // namespace orn::simulation
