#include "hearing-test/RealTest.h"

#include <chrono>
#include <cmath>
#include <stdexcept>
#include <utility>

#include <ORNHearingTestSDK/audio/AudioRoute.h>
#include <ORNHearingTestSDK/engine/PresentationClock.h>
#include <ORNHearingTestSDK/platform/AudioSession.h>
#include <ORNHearingTestSDK/platform/RunLoop.h>

#include "hearing-test/TerminalInput.h"
#include "simulation/listener/OutputMonitor.h"

namespace orn {
namespace {

using simulation::TestRun;

constexpr std::chrono::seconds kRestBetweenEars{2};
constexpr std::chrono::milliseconds kPulse{250};

std::string earName(bool isLeft) { return isLeft ? "left" : "right"; }

}  // namespace

ConnectedDevice ConnectedDevice::find() {
  if (const auto address = AudioRoute::getKV50Mac()) return {OutputPath::Audiometer, *address};
  if (AudioRoute::hasHeadset()) return {OutputPath::Earphones, kEarphoneModel};
  throw std::runtime_error("sound goes neither to an audiometer nor to earphones: see 'hearing-test devices'");
}

RealTest::RealTest(RealTestPlan plan, TerminalInput& input)
    : plan_(std::move(plan)),
      input_(input),
      audiogram_(plan_.out, plan_.frequencies),
      observer_(std::make_shared<AudioSessionObserver>()) {
  volume_.emplace();
  run_ = std::make_shared<TestRun>(plan_.type, plan_.frequencies, watch());
  observer_->routeChange = [this](std::int32_t reason) {
    if (reason == kAudioSessionRouteChangeReasonOldDeviceUnavailable) run_->fail("the device was disconnected");
  };
  observer_->interruption = [this](std::int32_t type) {
    if (type != kAudioSessionInterruptionTypeEnded)
      run_->fail("another sound, such as a call, has interrupted the test");
  };
  Platform::current().audioSession->addObserver(observer_);
  input_.onInterrupt = [this] { interrupt(); };
}

RealTest::~RealTest() {
  input_.onKey = input_.onInterrupt = nullptr;
  if (pulse_) pulse_->invalidate();
}

simulation::TestWatch RealTest::watch() {
  simulation::TestWatch watch;
  watch.earStarts = [this](bool isLeft) { sayProgress(isLeft, 0); };
  watch.tonePlays = [this](const std::string&, const std::string&, bool) { volume_->hold(); };
  watch.thresholdFound = [this](bool isLeft, const std::string& hz, const std::string& db) {
    audiogram_.setThreshold(isLeft, hz, db);
    sayProgress(isLeft, run_->progress());
  };
  watch.earEnds = [this](TestRun&, bool nextIsLeft) { startEarWhenReady(nextIsLeft); };
  watch.isOver = [this] {
    volume_.reset();
    (outcome().isComplete ? completed_ : ended_)();
  };
  watch.submissionEnded = [this] { ended_(); };
  return watch;
}

/// By thresholds and not by presentations: who sees that a tone begins might press without having heard it.
void RealTest::sayProgress(bool isLeft, double progress) {
  audiogram_.say("Testing the " + earName(isLeft) + " ear: " + std::to_string(std::lround(progress * 100)) + " %");
}

void RealTest::begin(const ConnectedDevice& device, std::function<void()> completed, std::function<void()> ended) {
  completed_ = std::move(completed);
  ended_ = std::move(ended);
  const auto start = [this] {
    if (run_->isOver()) return;
    if (plan_.listener) letListenerHear();
    watchForHoldUps();
    startEarWhenReady(false);
  };
  if (plan_.calibrationReply.empty()) {
    run_->fetchCalibration(device.path, device.name, start);
  } else {
    run_->calibrate(device.path, device.name, plan_.calibrationReply);
    start();
  }
}

void RealTest::letListenerHear() {
  run_->invite(*plan_.listener);
  const auto loop = Platform::current().runLoop;
  const std::weak_ptr<TestRun> run = run_;
  monitor_ = std::make_unique<simulation::OutputMonitor>("", "", [loop, run](std::span<const std::int16_t> samples) {
    loop->dispatchAsync([run, heard = std::vector(samples.begin(), samples.end())] {
      if (const auto alive = run.lock()) alive->hear(heard);
    });
  });
}

/// A late pulse comes before the late end of a tone, unless the tone was about to end anyway.
void RealTest::watchForHoldUps() {
  const auto loop = Platform::current().runLoop;
  lastPulse_ = loop->now();
  pulse_ = loop->scheduledTimer(kPulse, [this, now = std::weak_ptr(loop)] {
    const auto last = std::exchange(lastPulse_, now.lock()->now());
    if (lastPulse_ - last <= PresentationClock::kLongestHoldUp) return;
    run_->fail("the program was held up; nothing of the test is kept");
  });
}

void RealTest::startEarWhenReady(bool isLeft) {
  if (plan_.listener) {
    const std::weak_ptr<TestRun> run = run_;
    Platform::current().runLoop->performAfterDelay(kRestBetweenEars, [run, isLeft] {
      if (const auto alive = run.lock()) alive->startEar(isLeft);
    });
    return;
  }
  nextEar_ = isLeft;
  input_.onKey = [this] { keyCame(); };
  audiogram_.say("Next is the " + earName(isLeft) +
                 " ear. Press any key each time you hear a tone. Press one to start.");
}

void RealTest::interrupt() {
  if (run_->isOver()) {
    run_->giveSubmissionUp("interrupted before the service had taken the result");
  } else {
    run_->fail("interrupted; nothing of the test is kept");
  }
}

void RealTest::keyCame() {
  if (run_->isOver()) return;
  if (nextEar_) {
    run_->startEar(*std::exchange(nextEar_, std::nullopt));
  } else {
    run_->press();
  }
}

}  // namespace orn
