#include <ORNHearingTestSDK/engine/ORNManualHearingTest.h>

#include <utility>

#include <ORNHearingTestSDK/common/NumericText.h>
#include <ORNHearingTestSDK/common/ToneFrequencies.h>
#include <ORNHearingTestSDK/platform/AudioOutput.h>
#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/results/ResultSubmission.h>

namespace orn {

ORNManualHearingTest::ORNManualHearingTest() = default;

std::shared_ptr<ORNManualHearingTest> ORNManualHearingTest::init() {
  struct Made : ORNManualHearingTest {};
  return std::make_shared<Made>();
}

std::vector<std::string> ORNManualHearingTest::hzs() {
  if (hzs_.empty()) hzs_ = frequencyKeys(kTestOrder);
  return hzs_;
}

void ORNManualHearingTest::setTestHzs(std::vector<std::string> hzs) { setHzs(withoutRepeats(hzs)); }

HearingTestGrid& ORNManualHearingTest::manageLeftDictory() { return grids_.of(true, hzs()); }

HearingTestGrid& ORNManualHearingTest::manageRightDictory() { return grids_.of(false, hzs()); }

void ORNManualHearingTest::setCurrentItem(Item item) { stream_.setCurrentItem(std::move(item)); }

std::span<const std::uint8_t> ORNManualHearingTest::playerGetData() { return stream_.nextBlock(); }

void ORNManualHearingTest::addItem(const Item& item, std::vector<Item>& forArray) { TestResults::add(item, forArray); }

void ORNManualHearingTest::postListenTestWithLeft(const EarResult& left, const EarResult& right, bool base,
                                                  double /*lscore*/, double /*rscore*/, const nlohmann::json& /*noise*/,
                                                  const nlohmann::json& /*userID*/, const nlohmann::json& /*startTime*/,
                                                  const nlohmann::json& /*endTime*/,
                                                  const std::optional<std::string>& earPlugModel,
                                                  CompletionHandler completion) {
  ResultSubmission::postListenTestWithLeft(left, right, base, earPlugModel, std::move(completion));
}

SoundPath& ORNManualHearingTest::path() {
  if (usesAudiometer()) return audiometer_;
  return earphones_;
}

void ORNManualHearingTest::startTest(bool isLeft) {
  if (isEnded_) return;
  ++earsStarted_;
  isLeft_ = isLeft;
  results_.startEar(isLeft);
  // A tone that could not be started is not to be tried again in the other ear.
  if (std::exchange(missingItem_, nullptr)) setCurrentItem(nullptr);
  Platform::current().audioOutput->useCurrentDevice();
  path().startEar(self<PlayerGetDataSouce>(this));
}

void ORNManualHearingTest::pauseTest() {
  if (isEnded_) return;
  path().pause(*this, currentItem().get());
}

void ORNManualHearingTest::continueTest() {
  if (isEnded_) return;
  path().resume();
}

void ORNManualHearingTest::endTest() {
  if (isEnded_) return;
  pauseTest();
  isEnded_ = true;
}

void ORNManualHearingTest::playAtHz(const std::string& hz, const std::string& db) {
  const auto alive = shared_from_this();
  if (currentItem()) path().leave(*currentItem());
  testItem(itemAt(currentGrid(), hz, static_cast<int>(kGridScale.rowOf(intValue(db)))));
}

void ORNManualHearingTest::testItem(const Item& item) {
  if (!item || isEnded_ || isTellingOfMissing_) return;
  const auto alive = shared_from_this();
  if (currentItem()) currentItem()->stop();
  const SoundPath::Preparation tone = path().prepare(*item, isLeft_);
  // A tone without a level must not get into the stream, which would keep it at a wrong one.
  if (tone.missing == ToneMissingReason::Calibration) return toneIsMissing(item, *tone.missing);
  setCurrentItem(item);
  if (tone.missing) return toneIsMissing(item, *tone.missing);
  if (const auto missing = path().start(*item, tone.volume)) return toneIsMissing(item, *missing);
  missingItem_ = nullptr;
  results_.tonePresented(item->point(), startY_);
  tellDelegate(&ORNHearingTestDelegate::willTestAtHz, item->hzValue(), item->dbValue(), tone.volume, isLeft_);
}

void ORNManualHearingTest::toneIsMissing(const Item& item, ToneMissingReason reason) {
  const auto alive = shared_from_this();
  missingItem_ = item;
  pauseTest();
  isTellingOfMissing_ = true;
  tellDelegate(&ORNHearingTestDelegate::toneMissing, reason, isLeft_);
  isTellingOfMissing_ = false;
}

bool ORNManualHearingTest::makeCurrent(const Item& item) {
  if (item && path().prepare(*item, isLeft_).missing == ToneMissingReason::Calibration) return false;
  setCurrentItem(item);
  return true;
}

void ORNManualHearingTest::presentAtOnce(const Item& item) {
  makeCurrent(item);
  testItem(item);
}

void ORNManualHearingTest::markHeard() {
  if (!currentItem() || !takesPresses()) return;
  currentItem()->setHearStatus(1);
  currentItem()->stop();
}

double ORNManualHearingTest::getKV50CorrectXByEar(bool /*isLeft*/, const std::string& /*mac*/, std::int32_t db,
                                                  const std::string& hz) const {
  return audiometer_.amplitude(db, hz);
}

void ORNManualHearingTest::listened() {
  if (!currentItem() || !takesPresses()) return;
  const auto alive = shared_from_this();
  const Item item = currentItem();
  item->setHearStatus(1);
  path().silence(*item);
  targetItem(item);
}

void ORNManualHearingTest::targetItem(const Item& item) {
  if (!item || isEnded_) return;
  const auto alive = shared_from_this();
  results_.settle(item, isLeft_);
  if (delegateOperation(&ORNHearingTestDelegate::willSelectedAtHz)) {
    // Without a delegate that is told, the progress stays as it is here.
    results_.thresholdTold(item->point(), hzs().size());
    tellDelegate(&ORNHearingTestDelegate::willSelectedAtHz, item->hzValue(), item->dbValue(), isLeft_);
  }
  if (!isEnded_ && isOneComplete()) {
    results_.finish();
    callOneComplete();
  }
  if (!isEnded_ && isTestComplete()) {
    results_.finish();
    callAllComplete();
  }
}

bool ORNManualHearingTest::isOneComplete() {
  return results_.isComplete(isLeft_, hzs().size()) && results_.of(!isLeft_).empty();
}

bool ORNManualHearingTest::isTestComplete() {
  const std::size_t columns = hzs().size();
  return results_.isComplete(true, columns) && results_.isComplete(false, columns);
}

void ORNManualHearingTest::callOneComplete() {
  const auto alive = shared_from_this();
  pauseTest();
  tellDelegate(&ORNHearingTestDelegate::oneEarCompleteWithResult, *getTestResult(isLeft_), isLeft_);
}

void ORNManualHearingTest::callAllComplete() {
  const auto alive = shared_from_this();
  pauseTest();
  tellDelegate(&ORNHearingTestDelegate::completeWithLeftResult, *getTestResult(true), *getTestResult(false));
  if (isEnded_) return;
  ResultSubmission::submit(*getTestResult(true), *getTestResult(false), deviceInUse(),
                           [session = std::weak_ptr(self(this))](const std::optional<Error>& error) {
                             const auto told = session.lock();
                             if (told) told->tellDelegate(&ORNHearingTestDelegate::submissionEnded, error);
                           });
}

std::optional<EarResult> ORNManualHearingTest::getTestResult(bool isLeft) const { return results_.dictionary(isLeft); }

}  // namespace orn
