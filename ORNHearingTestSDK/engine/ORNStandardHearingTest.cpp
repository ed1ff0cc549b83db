#include <ORNHearingTestSDK/engine/ORNStandardHearingTest.h>

#include <utility>

#include <ORNHearingTestSDK/audio/ORNPlayer.h>
#include <ORNHearingTestSDK/common/NumericText.h>
#include <ORNHearingTestSDK/common/ToneFrequencies.h>
#include <ORNHearingTestSDK/engine/StandardSearch.h>

namespace orn {
namespace {

constexpr std::int32_t kRetestIndex = 4;
constexpr std::int32_t kIndexAfterRetest = 5;
constexpr double kRetestX = 8;  // beyond every column of the grid

HearingTestColumn makeRetestScale(bool isLeft) {
  // Panned to the left for both ears: that is meant, see docs/BEHAVIOURS.md.
  HearingTestColumn scale = makeColumn({.x = kRetestX, .hzValue = "1000hz", .pan = -1.0F, .scale = kRetestScale});
  for (const auto& [row, item] : scale) {
    item->setPlayer(ORNPlayer::shareInstance()->playerWithHzValue(1000, intValue(item->dbValue()), isLeft));
  }
  return scale;
}

Presentations presentationsOf(const ORNHearingTestItem& item) { return {item.heardTimes(), item.notHeardTimes()}; }

}  // namespace

std::shared_ptr<ORNStandardHearingTest> ORNStandardHearingTest::init() {
  return std::shared_ptr<ORNStandardHearingTest>(new ORNStandardHearingTest);
}

std::vector<std::string> ORNStandardHearingTest::hzs() {
  auto keys = frequencyKeys(kTestOrder);
  keys.insert(keys.begin() + kRetestIndex, "1000hz_re");
  setHzs(std::move(keys));
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
  if (addStatusForItem(current, false)) goOn(current, false);
}

void ORNStandardHearingTest::hasListened() {
  const auto alive = shared_from_this();
  const Item current = currentItem();
  if (!current) return;
  current->setHearStatus(0);  // a further presentation needs a press of its own
  if (addStatusForItem(current, true)) {
    goOn(current, true);
  } else {
    // The next frequency starts at once; the call that targetItem() has delayed presents it a second time, which is
    // meant.
    presentAtOnce(getNextColnTestItem());
  }
}

/// As the search says, after a presentation that settled nothing.
void ORNStandardHearingTest::goOn(const Item& judged, bool isHeard) {
  const std::vector<Item> column = columnOf(judged);
  const SearchMove move =
      StandardSearch::next(presentationsOf(*judged), rowOf(*judged), static_cast<int>(column.size()), isHeard);
  const Item& item = column[static_cast<std::size_t>(move.row)];
  if (move.kind == SearchMove::Kind::Settle) {
    targetItem(item);
  } else {
    testItem(item);
  }
}

bool ORNStandardHearingTest::addStatusForItem(const Item& item, bool isHeard) {
  if (isHeard) {
    item->setHeardTimes(item->heardTimes() + 1);
  } else {
    item->setNotHeardTimes(item->notHeardTimes() + 1);
  }
  if (!StandardSearch::isAccepted(presentationsOf(*item))) return true;
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
  goOnTo(getNextColnTestItem(), ears);
}

void ORNStandardHearingTest::targetItemAndCheck(const Item& item) {
  const auto alive = shared_from_this();
  const int ears = earsStarted();
  const bool isHeard = item->hearStatus() != -1;  // before the delegate is told, who may press
  ORNManualHearingTest::targetItem(item);
  testIndex_ = kIndexAfterRetest;
  const Item next = getNextColnTestItem();
  if (StandardSearch::isNextToneSilent(isHeard)) {
    setCurrentItem(next);  // the stream meets it a second before it has an amplitude
  } else {
    makeCurrent(next);
  }
  goOnTo(next, ears);
}

/// To another frequency after a pause, or to the end of the ear.
void ORNStandardHearingTest::goOnTo(const Item& item, int ears) {
  if (!item) return endEar(ears);
  afterThreshold([session = self(this), item] {
    // A tone that could not start has paused the test, and is told once.
    if (!session->missingItem()) session->testItem(item);
  });
}

ORNStandardHearingTest::Item ORNStandardHearingTest::getNextColnTestItem() {
  const std::vector<std::string> keys = hzs();
  if (testIndex_ < 0 || static_cast<std::size_t>(testIndex_) >= keys.size()) return nullptr;
  if (testIndex_ == kRetestIndex) {
    return (isLeft() ? manageReTestLeftDictory() : manageReTestRightDictory()).at(StandardSearch::kStartRow);
  }
  return itemAt(currentGrid(), keys[static_cast<std::size_t>(testIndex_)], StandardSearch::kStartRow);
}

}  // namespace orn
