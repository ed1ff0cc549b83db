#include <ORNHearingTestSDK/engine/ORNStandardHearingTest.h>

#include <ORNHearingTestSDK/audio/ORNPlayer.h>
#include <ORNHearingTestSDK/common/NumericText.h>

namespace orn {
namespace {

constexpr int kStartRow = 9;
constexpr std::int32_t kRetestIndex = 4;
constexpr std::int32_t kIndexAfterRetest = 5;
constexpr std::int64_t kLeastPresentations = 3;
constexpr double kRetestX = 8;  // beyond every column of the grid

HearingTestColumn makeRetestScale(bool isLeft) {
  // Panned to the left for both ears: that is meant.
  HearingTestColumn scale =
      makeColumn({.x = kRetestX, .hzValue = "1000hz", .pan = -1.0F, .rows = 20, .lowestLevel = -5});
  for (const auto& [row, item] : scale) {
    item->setPlayer(ORNPlayer::shareInstance()->playerWithHzValue(1000, intValue(item->dbValue()), isLeft));
  }
  return scale;
}

}  // namespace

std::shared_ptr<ORNStandardHearingTest> ORNStandardHearingTest::init() {
  return std::shared_ptr<ORNStandardHearingTest>(new ORNStandardHearingTest);
}

std::vector<std::string> ORNStandardHearingTest::hzs() {
  setHzs({"1000hz", "2000hz", "4000hz", "8000hz", "1000hz_re", "500hz", "250hz", "125hz"});
  return ORNManualHearingTest::hzs();
}

HearingTestColumn& ORNStandardHearingTest::manageReTestLeftDictory() {
  if (!manageReTestLeftDictory_) manageReTestLeftDictory_ = makeRetestScale(true);
  return *manageReTestLeftDictory_;
}

HearingTestColumn& ORNStandardHearingTest::manageReTestRightDictory() {
  if (!manageReTestRightDictory_) manageReTestRightDictory_ = makeRetestScale(false);
  return *manageReTestRightDictory_;
}

void ORNStandardHearingTest::notListened() {
  const auto alive = shared_from_this();
  const Item current = currentItem();
  if (!current) {
    testIndex_ = 0;
    presentAtOnce(getNextColnTestItem());
    return;
  }
  current->setHearStatus(-1);
  current->stop();
  if (!addStatusForItem(current, false)) return;
  if (const Item louder = current->nextItem()) {
    testItem(louder);
  } else {
    targetItem(current);  // the top of the scale is recorded without acceptance
  }
}

void ORNStandardHearingTest::hasListened() {
  const auto alive = shared_from_this();
  const Item current = currentItem();
  if (!current) return;
  current->setHearStatus(0);  // a further presentation needs a press of its own
  if (!addStatusForItem(current, true)) {
    // The next frequency starts at once; the call that targetItem() has delayed presents it a second time, and is
    // meant.
    presentAtOnce(getNextColnTestItem());
    return;
  }
  const Item quieter = current->prevItem();
  const Item twoQuieter = quieter ? quieter->prevItem() : nullptr;
  testItem(twoQuieter ? twoQuieter : quieter ? quieter : current);
}

bool ORNStandardHearingTest::addStatusForItem(const Item& item, bool isHeard) {
  if (isHeard) {
    item->setHeardTimes(item->heardTimes() + 1);
  } else {
    item->setNotHeardTimes(item->notHeardTimes() + 1);
  }
  const bool isAccepted =
      item->heardTimes() > item->notHeardTimes() && item->heardTimes() + item->notHeardTimes() >= kLeastPresentations;
  if (!isAccepted) return true;
  if (testIndex_ == kRetestIndex) {
    targetItemAndCheck(item);
  } else {
    targetItem(item);
  }
  return false;
}

void ORNStandardHearingTest::targetItem(const Item& item) {
  const auto alive = shared_from_this();
  const int ears = earsStarted();
  ORNManualHearingTest::targetItem(item);
  ++testIndex_;
  if (const Item next = getNextColnTestItem()) {
    presentAfterPause(next);
  } else {
    endEar(ears);
  }
}

void ORNStandardHearingTest::targetItemAndCheck(const Item& item) {
  const auto alive = shared_from_this();
  const int ears = earsStarted();
  ORNManualHearingTest::targetItem(item);
  testIndex_ = kIndexAfterRetest;
  const Item next = getNextColnTestItem();
  // After a tone not heard the stream meets this item a second before it has an amplitude, and keeps it silent. After a
  // heard one it is presented at once, so it must have its amplitude now.
  if (item->hearStatus() != -1) prepareAmplitude(next);
  setCurrentItem(next);
  if (currentItem()) {
    presentAfterPause(currentItem());
  } else {
    endEar(ears);
  }
}

void ORNStandardHearingTest::presentAfterPause(const Item& item) {
  afterThreshold([session = self(this), item] {
    // A tone that could not start has paused the test, and is told once.
    if (!session->isCurrentToneMissing()) session->testItem(item);
  });
}

ORNStandardHearingTest::Item ORNStandardHearingTest::getNextColnTestItem() {
  const std::vector<std::string> keys = hzs();
  if (testIndex_ < 0 || static_cast<std::size_t>(testIndex_) >= keys.size()) return nullptr;
  if (testIndex_ == kRetestIndex) {
    return (isLeft() ? manageReTestLeftDictory() : manageReTestRightDictory()).at(kStartRow);
  }
  return itemAt(currentGrid(), keys[static_cast<std::size_t>(testIndex_)], kStartRow);
}

}  // namespace orn
