#include <ORNHearingTestSDK/engine/ORNAutoHearingTest.h>

#include <algorithm>

namespace orn {
namespace {

constexpr int kStartRow = 5;  // 40 dB

bool hasStatus(const std::shared_ptr<ORNHearingTestItem>& item, std::int32_t status) {
  return item && item->hearStatus() == status;
}

}  // namespace

std::shared_ptr<ORNAutoHearingTest> ORNAutoHearingTest::init() {
  return std::shared_ptr<ORNAutoHearingTest>(new ORNAutoHearingTest);
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
    afterThreshold([session, next] { session->testItem(next); });
    return;
  }
  endEar(ears);
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
