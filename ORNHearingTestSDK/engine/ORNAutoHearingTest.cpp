#include <ORNHearingTestSDK/engine/ORNAutoHearingTest.h>

#include <algorithm>

#include <ORNHearingTestSDK/platform/Platform.h>

namespace orn {
namespace {

constexpr int kStartRow = 5;  // 40 dB

bool hasStatus(const std::shared_ptr<ORNHearingTestItem>& item, std::int32_t status) {
  return item && item->hearStatus() == status;
}

}  // namespace

ORNAutoHearingTest::ORNAutoHearingTest() = default;

std::shared_ptr<ORNAutoHearingTest> ORNAutoHearingTest::init() {
  return std::shared_ptr<ORNAutoHearingTest>(new ORNAutoHearingTest);
}

RunLoop::Action ORNAutoHearingTest::tick() {
  return [session = self(this)] { session->timerUpdate(); };
}

std::shared_ptr<Timer> ORNAutoHearingTest::autoPlayTimer() { return clock_.autoPlayTimer(tick()); }

void ORNAutoHearingTest::startTest(bool isLeft) {
  if (isEnded()) return;
  ORNManualHearingTest::startTest(isLeft);
  setIsLeft(isLeft);
  isAutomatic_ = true;
  clock_.tickAfterPlayTime(tick());
}

void ORNAutoHearingTest::pauseTest() {
  ORNManualHearingTest::pauseTest();
  // The end of an ear pauses too, and may come within the call that has ended the test.
  if (!isEnded()) clock_.park(tick());
}

void ORNAutoHearingTest::continueTest() {
  if (isEnded()) return;
  ORNManualHearingTest::continueTest();
  clock_.tickNow(tick());
}

void ORNAutoHearingTest::endTest() {
  const auto alive = shared_from_this();
  ORNManualHearingTest::endTest();
  clock_.end();
}

void ORNAutoHearingTest::listened() { markHeard(); }

void ORNAutoHearingTest::timerUpdate() {
  if (isCurrentToneMissing()) {
    testItem(Item(currentItem()));
  } else if (hasStatus(currentItem(), 1)) {
    hasListened();
  } else {
    notListened();
  }
}

void ORNAutoHearingTest::notListened() {
  const Item current = currentItem();
  if (!current) {
    presentAtOnce(getNextColnTestItem());
    return;
  }
  current->setHearStatus(-1);
  current->stop();
  const Item louder = current->nextItem();
  if (!louder) {
    targetItem(current);  // the top of the scale is recorded, though it was not heard
  } else if (louder->hearStatus() == 1) {
    targetItem(louder);
  } else if (const Item twoLouder = louder->nextItem(); hasStatus(twoLouder, 0)) {
    testItem(twoLouder);
  } else {
    testItem(louder);
  }
}

void ORNAutoHearingTest::hasListened() {
  const Item current = currentItem();
  if (!current) return;
  const Item quieter = current->prevItem();
  if (!quieter) {
    targetItem(current);
  } else if (hasStatus(quieter, -1) && hasStatus(current->nextItem(), 1)) {
    targetItem(current);
  } else if (const Item twoQuieter = quieter->prevItem(); hasStatus(twoQuieter, 0)) {
    testItem(twoQuieter);
  } else {
    testItem(quieter);
  }
}

void ORNAutoHearingTest::targetItem(const Item& item) {
  const auto session = self(this);
  const int ears = earsStarted();
  ORNManualHearingTest::targetItem(item);
  if (const Item next = getNextColnTestItem()) {
    Platform::current().runLoop->performAfterDelay(PresentationClock::untilNextFrequency,
                                                   [session, next] { session->testItem(next); });
    return;
  }
  // A host that started the other ear from the completion call has set the clock for it.
  if (ears == earsStarted()) clock_.end();
  setCurrentItem(nullptr);
}

ORNAutoHearingTest::Item ORNAutoHearingTest::getNextColnTestItem() {
  const std::vector<std::string> keys = hzs();
  auto key = keys.begin();
  if (currentItem()) {
    key = std::find(keys.begin(), keys.end(), currentItem()->hzValue());
    if (key != keys.end()) ++key;
  }
  return key == keys.end() ? nullptr : itemAt(currentGrid(), *key, kStartRow);
}

}  // namespace orn
