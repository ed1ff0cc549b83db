#include <ORNHearingTestSDK/engine/TimedHearingTest.h>

#include <ORNHearingTestSDK/platform/Platform.h>

namespace orn {

RunLoop::Action TimedHearingTest::tick() {
  return [session = self(this)] { session->timerUpdate(); };
}

void TimedHearingTest::startTest(bool isLeft) {
  if (isEnded()) return;
  ORNManualHearingTest::startTest(isLeft);
  setIsLeft(isLeft);
  isAutomatic_ = true;
  clock_.tickAfterPlayTime(tick());
}

void TimedHearingTest::pauseTest() {
  ORNManualHearingTest::pauseTest();
  // The end of an ear pauses too, and may come within the call that has ended the test.
  if (!isEnded()) clock_.park(tick());
}

void TimedHearingTest::continueTest() {
  if (isEnded()) return;
  ORNManualHearingTest::continueTest();
  clock_.tickNow(tick());
}

void TimedHearingTest::endTest() {
  const auto alive = shared_from_this();
  ORNManualHearingTest::endTest();
  clock_.end();
}

void TimedHearingTest::listened() { markHeard(); }

void TimedHearingTest::timerUpdate() {
  const bool isLate = clock_.isTickLate();
  const bool isHeard = currentItem() && currentItem()->hearStatus() == 1;
  if (isCurrentToneMissing() || (currentItem() && isLate && !isHeard)) {
    testItem(Item(currentItem()));
  } else if (isHeard) {
    hasListened();
  } else {
    notListened();
  }
}

void TimedHearingTest::afterThreshold(RunLoop::Action present) {
  RunLoop& loop = *Platform::current().runLoop;
  const auto then = loop.now() + PresentationClock::untilNextFrequency;
  loop.performAfterDelay(PresentationClock::untilNextFrequency, [session = self(this), then, present] {
    session->clock_.nextFrequencyComes(then);
    present();
  });
}

void TimedHearingTest::endEar(int ears) {
  if (ears == earsStarted()) clock_.end();
  setCurrentItem(nullptr);
}

}  // namespace orn
