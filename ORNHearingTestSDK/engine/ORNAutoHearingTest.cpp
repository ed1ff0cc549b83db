#include <ORNHearingTestSDK/engine/ORNAutoHearingTest.h>

#include <algorithm>

#include <ORNHearingTestSDK/engine/AutomaticSearch.h>

namespace orn {

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
  goOn(current, false);
}

void ORNAutoHearingTest::hasListened() {
  if (currentItem()) goOn(currentItem(), true);
}

/// As the search says, after an item was judged.
void ORNAutoHearingTest::goOn(const Item& judged, bool isHeard) {
  const std::vector<Item> column = columnOf(judged);
  std::vector<Answer> answers;
  for (const Item& item : column) answers.push_back(static_cast<Answer>(item->hearStatus()));
  const SearchMove move = AutomaticSearch::next(answers, rowOf(*judged), isHeard);
  const Item& item = column[static_cast<std::size_t>(move.row)];
  if (move.kind == SearchMove::Kind::Settle) {
    targetItem(item);
  } else {
    testItem(item);
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
  return key == keys.end() ? nullptr : itemAt(currentGrid(), *key, AutomaticSearch::kStartRow);
}

}  // namespace orn
