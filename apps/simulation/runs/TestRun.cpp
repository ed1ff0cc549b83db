#include "simulation/runs/TestRun.h"

#include <algorithm>
#include <utility>

#include <ORNHearingTestSDK/engine/PresentationClock.h>
#include <ORNHearingTestSDK/engine/SessionCalibration.h>
#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/platform/RunLoop.h>
#include <ORNHearingTestSDK/results/ResultSubmission.h>

#include "simulation/listener/HearingLevel.h"

namespace orn::simulation {
namespace {

RunLoop& loop() { return *Platform::current().runLoop; }

std::string whyMissing(ToneMissingReason reason, const std::string& ear) {
  switch (reason) {
    case ToneMissingReason::Calibration:
      return "the calibration lacks a value for the " + ear + " ear";
    case ToneMissingReason::Recording:
      return "there is no recording of a tone for the " + ear + " ear";
    case ToneMissingReason::Output:
    default:
      return "the sound output is gone or does not play";
  }
}

}  // namespace

TestRun::TestRun(TestType type, const std::vector<std::string>& frequencies, TestWatch watch)
    : watch_(std::move(watch)),
      session_(ORNManualHearingTest::initWithTestType(static_cast<std::int32_t>(type))),
      delegate_(std::make_shared<ORNHearingTestDelegate>()) {
  session_->setDelegate(delegate_);
  session_->setTestHzs(frequencies);
  watchDelegate();
}

TestRun::~TestRun() = default;

void TestRun::calibrate(OutputPath path, const std::string& device, const std::string& reply) {
  path_ = path;
  orn::calibrate(*session_, path, device, reply);
}

void TestRun::fetchCalibration(OutputPath path, const std::string& device, std::function<void()> answered) {
  path_ = path;
  orn::fetchCalibration(*session_, path, device, [this, answered](const std::optional<Error>& error) {
    if (error) fail("no calibration: " + error->message);
    answered();
  });
}

void TestRun::invite(const ListenerTraits& listener) {
  listener_ = std::make_unique<VirtualListener>(
      listener, std::chrono::seconds(PresentationClock::getPlayTime()),
      [this](std::int32_t hz, double amplitude) { return levelOf(*session_, path_, hz, amplitude); },
      [session = session_](std::chrono::milliseconds reaction) {
        loop().performAfterDelay(reaction, [session] { session->listened(); });
      });
  listener_->onJudgement = [this](const HeardTone& tone) {
    if (outcome_.presentations.empty()) return;
    outcome_.presentations.back().measured = tone;
    outcome_.presentations.back().heard = tone.heard;
  };
}

void TestRun::hear(std::span<const std::int16_t> samples) {
  if (listener_) listener_->hear(samples);
}

void TestRun::startEar(bool isLeft) {
  if (isOver()) return;
  if (!start_) start_ = loop().now();
  if (watch_.earStarts) watch_.earStarts(isLeft);
  if (listener_) listener_->setEar(isLeft);
  session_->startTest(isLeft);
}

void TestRun::press() {
  if (!listener_ && !outcome_.presentations.empty()) outcome_.presentations.back().heard = true;
  session_->listened();
}

double TestRun::progress() const { return std::min(1.0, static_cast<double>(session_->getTestProgress())); }

void TestRun::fail(const std::string& why) {
  if (isOver()) return;
  outcome_.failure = why;
  session_->endTest();
  if (watch_.isOver) watch_.isOver();
}

void TestRun::giveSubmissionUp(const std::string& why) {
  outcome_.submissionFailure = why;
  if (watch_.submissionEnded) watch_.submissionEnded();
}

void TestRun::watchDelegate() {
  delegate_->willTestAtHz = [this](ORNHearingTest&, const std::string& hz, const std::string& db, float volume,
                                   bool isLeft) { presented(hz, db, volume, isLeft); };
  delegate_->willSelectedAtHz = [this](ORNHearingTest&, const std::string& hz, const std::string& db, bool isLeft) {
    closePresentation();
    if (watch_.thresholdFound) watch_.thresholdFound(isLeft, hz, db);
  };
  delegate_->oneEarCompleteWithResult = [this](ORNHearingTest&, const EarResult&, bool isLeft) {
    if (watch_.earEnds) watch_.earEnds(*this, !isLeft);
  };
  delegate_->completeWithLeftResult = [this](ORNHearingTest&, const EarResult& left, const EarResult& right) {
    complete(left, right);
  };
  delegate_->toneMissing = [this](ORNHearingTest&, ToneMissingReason reason, bool isLeft) {
    fail(whyMissing(reason, isLeft ? "left" : "right"));
  };
  delegate_->submissionEnded = [this](ORNHearingTest&, const std::optional<Error>& error) {
    // Without a registered user there is no service to send a result to.
    const bool isFailure = error && error->domain != ResultSubmission::kNotRegistered;
    if (isFailure) outcome_.submissionFailure = "the service did not take the result: " + error->message;
    if (watch_.submissionEnded) watch_.submissionEnded();
  };
}

void TestRun::presented(const std::string& hz, const std::string& db, float volume, bool isLeft) {
  closePresentation();
  const std::chrono::duration<double> at = loop().now() - *start_;
  outcome_.presentations.push_back({at.count(), isLeft, hz, db, volume, std::nullopt, false});
  if (watch_.tonePlays) watch_.tonePlays(hz, db, isLeft);
}

/// A tone that went on from the previous presentation unchanged was judged there.
void TestRun::closePresentation() {
  if (!listener_ || outcome_.presentations.empty() || outcome_.presentations.back().measured) return;
  outcome_.presentations.back().measured = listener_->presentTone();
  outcome_.presentations.back().heard = listener_->presentTone() && listener_->presentTone()->heard;
}

void TestRun::complete(const EarResult& left, const EarResult& right) {
  outcome_.isComplete = true;
  outcome_.left = left;
  outcome_.right = right;
  outcome_.leftLoss = ORNHearingTest::computeEarTestResult(left);
  outcome_.rightLoss = ORNHearingTest::computeEarTestResult(right);
  outcome_.leftVerdict = ORNHearingTest::computeResultString(outcome_.leftLoss);
  outcome_.rightVerdict = ORNHearingTest::computeResultString(outcome_.rightLoss);
  outcome_.simulatedSeconds = std::chrono::duration<double>(loop().now() - *start_).count();
  if (watch_.isOver) watch_.isOver();
}

}  // namespace orn::simulation
