#include <ORNHearingTestSDK/engine/TimedHearingTest.h>

#include <utility>

#include <ORNHearingTestSDK/platform/Platform.h>

namespace orn {
namespace {

/// How many times in a row a tone that did not sound whole is presented again, before the output counts as failed.
constexpr int kMostTimesBroken = 3;

}  // namespace

RunLoop::Action TimedHearingTest::tick() {
  return [session = self(this)] { session->timerUpdate(); };
}

void TimedHearingTest::startTest(bool isLeft) {
  if (isEnded()) return;
  ORNManualHearingTest::startTest(isLeft);
  setIsLeft(isLeft);
  isAutomatic_ = true;
  isNextToneDue_ = false;
  timesBroken_ = 0;
  clock_.tickAfterPlayTime(tick());
}

void TimedHearingTest::pauseTest() {
  ORNManualHearingTest::pauseTest();
  // A clock holds the session alive, so a session that has not begun or is complete must have none.
  const bool isUnderWay = earsStarted() > 0 && !isTestComplete();
  if (!isEnded() && (isUnderWay || clock_.isRunning())) clock_.park(tick());
}

void TimedHearingTest::continueTest() {
  if (isEnded()) return;
  ORNManualHearingTest::continueTest();
  isNextToneDue_ = false;
  if (isTellingOfMissing()) {
    clock_.tickAfterPlayTime(tick());  // at once would be a loop where the tone is still missing
  } else {
    clock_.tickNow(tick());
  }
}

void TimedHearingTest::endTest() {
  const auto alive = shared_from_this();
  ORNManualHearingTest::endTest();
  clock_.end();
}

void TimedHearingTest::listened() { markHeard(); }

void TimedHearingTest::testItem(const Item& item) {
  if (!item || isEnded()) return;
  const auto alive = shared_from_this();
  clock_.toneStarts(std::exchange(isFirstOfFrequency_, false));
  ORNManualHearingTest::testItem(item);
  clock_.toneCanBeAnswered();
}

void TimedHearingTest::timerUpdate() {
  // In a delegate's call that runs a loop of its own, and from a threshold to the next tone, no tone is to be judged.
  if (isTelling() || isNextToneDue_) return;
  const bool isLate = clock_.isTickLate();
  const Item current = currentItem();
  if (missingItem()) {
    testItem(Item(missingItem()));
  } else if (current && current->hearStatus() == 1) {
    timesBroken_ = 0;
    hasListened();
  } else if (current && !hasSoundedWhole()) {
    presentBrokenToneAgain(current);
  } else if (current && isLate) {
    testItem(current);  // nobody knows whether it could be answered
  } else if (!current || !clock_.hasMadeUpForHoldUp()) {
    timesBroken_ = 0;
    notListened();
  }
}

void TimedHearingTest::presentBrokenToneAgain(const Item& item) {
  if (++timesBroken_ <= kMostTimesBroken) {
    testItem(item);
    return;
  }
  timesBroken_ = 0;
  toneIsMissing(item, ToneMissingReason::Output);
}

void TimedHearingTest::afterThreshold(RunLoop::Action present) {
  isNextToneDue_ = true;
  Platform::current().runLoop->performAfterDelay(
      PresentationClock::kUntilNextFrequency,
      [session = self(this), present = std::move(present)] { session->presentNextFrequency(present); });
}

void TimedHearingTest::presentNextFrequency(const RunLoop::Action& present) {
  // A delegate that runs a loop of its own is not called from within it.
  if (isTelling()) return afterThreshold(present);
  isNextToneDue_ = false;
  isFirstOfFrequency_ = true;
  present();
  isFirstOfFrequency_ = false;
}

void TimedHearingTest::endEar(int ears) {
  if (ears == earsStarted()) clock_.end();
  setCurrentItem(nullptr);
}

}  // namespace orn
