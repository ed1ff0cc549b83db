#include "HearingPage.h"

#include <span>
#include <utility>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/common/NumericText.h>
#include <ORNHearingTestSDK/engine/PresentationClock.h>
#include <ORNHearingTestSDK/engine/SessionCalibration.h>
#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/platform/RunLoop.h>
#include <ORNHearingTestSDK/platform/web/WebSound.h>

#include "simulation/calibration/SampleCalibration.h"
#include "simulation/listener/HearingLevel.h"

namespace orn::web {
namespace {

using nlohmann::json;

constexpr auto kPath = OutputPath::Earphones;

RunLoop& loop() { return *Platform::current().runLoop; }

json cell(const std::string& hz, const std::string& db, bool isLeft) {
  return {{"hz", intValue(hz)}, {"db", intValue(db)}, {"isLeft", isLeft}};
}

json ear(const EarResult& result) {
  json thresholds = json::object();
  for (const auto& [hz, db] : result) thresholds[std::to_string(intValue(hz))] = intValue(db);
  const auto loss = ORNHearingTest::computeEarTestResult(result);
  return {{"thresholds", thresholds}, {"loss", loss}, {"verdict", ORNHearingTest::computeResultString(loss)}};
}

}  // namespace

HearingPage::HearingPage(const std::vector<std::string>& frequencies, Tell tell)
    : tell_(std::move(tell)),
      session_(std::dynamic_pointer_cast<ORNManualHearingTest>(ORNHearingTest::initWithTestType(0))) {
  session_->setDelegate(delegate_);
  session_->setTestHzs(frequencies);
  calibrate(*session_, kPath, simulation::sampleDevice(kPath), simulation::sampleReply(kPath));
  check_ = std::make_unique<ChannelCheck>(*session_);
  watchDelegate();
  watchOutput();
}

HearingPage::~HearingPage() {
  listenToWebSound({});
  session_->endTest();
}

void HearingPage::watchDelegate() {
  delegate_->willTestAtHz = [this](ORNHearingTest& test, const std::string& hz, const std::string& db, float,
                                   bool isLeft) {
    toneStart_ = loop().now();
    json what = cell(hz, db, isLeft);
    what["progress"] = std::min(1.0F, test.getTestProgress());
    tell_("tone", what);
  };
  delegate_->willSelectedAtHz = [this](ORNHearingTest&, const std::string& hz, const std::string& db, bool isLeft) {
    tell_("threshold", cell(hz, db, isLeft));
  };
  delegate_->oneEarCompleteWithResult = [this](ORNHearingTest&, const EarResult&, bool isLeft) {
    isUnderWay_ = false;
    tell_("earDone", {{"isLeft", isLeft}});
  };
  delegate_->completeWithLeftResult = [this](ORNHearingTest&, const EarResult& left, const EarResult& right) {
    isUnderWay_ = false;
    // Neither the earphones nor the volume are known here.
    tell_("done",
          {{"left", ear(left)}, {"right", ear(right)}, {"level", "level not verified"}, {"calibration", "sample"}});
  };
  delegate_->toneMissing = [this](ORNHearingTest&, ToneMissingReason, bool) { tell_("waits", json::object()); };
}

/// A tone that was cut off with the output is presented again once the person goes on.
void HearingPage::watchOutput() {
  observer_->routeChange = [this](std::int32_t reason) {
    if (reason != kAudioSessionRouteChangeReasonOldDeviceUnavailable) return tell_("outputBack", json::object());
    check_->stop();
    if (!isUnderWay_) return;
    session_->pauseTest();
    tell_("waits", json::object());
  };
  Platform::current().audioSession->addObserver(observer_);
}

bool HearingPage::playCheck() { return !check_->play(); }

bool HearingPage::answerCheck(ChannelAnswer heard) { return check_->answer(heard); }

int HearingPage::checkFinding() const {
  const auto finding = check_->finding();
  return finding ? static_cast<int>(*finding) : -1;
}

void HearingPage::invite(const simulation::ListenerTraits& listener) {
  listener_ = std::make_unique<simulation::VirtualListener>(
      listener, std::chrono::seconds(PresentationClock::getPlayTime()),
      [session = session_](std::int32_t hz, double amplitude) {
        return simulation::levelOf(*session, kPath, hz, amplitude);
      },
      [this](std::chrono::milliseconds reaction) {
        // As long after the samples as a person would take.
        loop().performAfterDelay(reaction - heardAgo_, [page = weak_from_this(), time = loop().now() - heardAgo_] {
          if (const auto alive = page.lock()) alive->answer(time);
        });
        tell_("heard", json::object());
      });
  listenToWebSound([this](std::span<const std::int16_t> samples, std::chrono::nanoseconds ago) {
    heardAgo_ = ago;
    listener_->hear(samples);
  });
}

void HearingPage::startEar(bool isLeft) {
  check_->stop();
  isUnderWay_ = true;
  if (listener_) listener_->setEar(isLeft);
  session_->startTest(isLeft);
}

void HearingPage::press(double millisecondsAgo) {
  const std::chrono::duration<double, std::milli> ago(millisecondsAgo);
  answer(loop().now() - std::chrono::duration_cast<std::chrono::nanoseconds>(ago));
}

/// Nothing that was heard or pressed before the tone began answers it.
void HearingPage::answer(std::chrono::nanoseconds time) {
  if (time >= toneStart_) session_->listened();
}

void HearingPage::pause() { session_->pauseTest(); }

void HearingPage::goOn() { session_->continueTest(); }

}  // namespace orn::web
