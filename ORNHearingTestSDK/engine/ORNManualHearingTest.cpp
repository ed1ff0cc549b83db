#include <ORNHearingTestSDK/engine/ORNManualHearingTest.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

#include <ORNHearingTestSDK/audio/ORNPlayer.h>
#include <ORNHearingTestSDK/calibration/CalibrationFetch.h>
#include <ORNHearingTestSDK/calibration/CalibrationRoles.h>
#include <ORNHearingTestSDK/calibration/LevelMapping.h>
#include <ORNHearingTestSDK/common/NumericText.h>
#include <ORNHearingTestSDK/platform/AudioOutput.h>
#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/results/ResultSubmission.h>

namespace orn {
namespace {

const std::vector<std::string> kDefaultHzs{"1000hz", "2000hz", "4000hz", "8000hz", "500hz", "250hz", "125hz"};

/// How far a cell is through its ear, whatever the number of frequencies; every other row counts as a fixed bit.
double progressAt(GridPoint point, std::int32_t startY) {
  const double column = point.x / 7;
  if (static_cast<std::int32_t>(point.y) % 2 != startY % 2) return column + 0.1285714285714286;
  return column + std::abs(point.y - startY) * 0.0625 / 7;
}

}  // namespace

ORNManualHearingTest::ORNManualHearingTest() = default;

std::shared_ptr<ORNManualHearingTest> ORNManualHearingTest::init() {
  struct Made : ORNManualHearingTest {};
  return std::make_shared<Made>();
}

std::vector<std::string> ORNManualHearingTest::hzs() {
  if (hzs_.empty()) hzs_ = kDefaultHzs;
  return hzs_;
}

void ORNManualHearingTest::setTestHzs(std::vector<std::string> hzs) {
  // A key that came twice would have no way to a column after it.
  std::vector<std::string> once;
  for (std::string& hz : hzs) {
    if (std::find(once.begin(), once.end(), hz) == once.end()) once.push_back(std::move(hz));
  }
  setHzs(std::move(once));
}

HearingTestGrid& ORNManualHearingTest::manageLeftDictory() {
  if (!manageLeftDictory_) manageLeftDictory_ = makeGrid(hzs(), true);
  return *manageLeftDictory_;
}

HearingTestGrid& ORNManualHearingTest::manageRightDictory() {
  if (!manageRightDictory_) manageRightDictory_ = makeGrid(hzs(), false);
  return *manageRightDictory_;
}

void ORNManualHearingTest::setCurrentItem(Item item) { stream_.setCurrentItem(std::move(item)); }

std::span<const std::uint8_t> ORNManualHearingTest::playerGetData() { return stream_.nextBlock(); }

void ORNManualHearingTest::addItem(const Item& item, std::vector<Item>& forArray) {
  const auto sameColumn = [&](const Item& one) { return one->point().x == item->point().x; };
  if (const auto old = std::find_if(forArray.begin(), forArray.end(), sameColumn); old != forArray.end()) {
    *old = item;
    return;
  }
  forArray.push_back(item);
  std::sort(forArray.begin(), forArray.end(), [](const Item& a, const Item& b) { return a->point().x < b->point().x; });
}

/// Records that arrive after the session has gone are of no use to anyone.
std::function<void(const ORNDeviceCorrect&)> ORNManualHearingTest::assignment(
    void (ORNManualHearingTest::*assign)(const ORNDeviceCorrect&)) {
  return [session = std::weak_ptr(self(this)), assign](const ORNDeviceCorrect& reply) {
    if (const auto alive = session.lock()) ((*alive).*assign)(reply);
  };
}

void ORNManualHearingTest::assignAudiometer(const ORNDeviceCorrect& reply) {
  const AudiometerRecords records = audiometerRecords(reply);
  if (records.ab) ab_ = records.ab;
  if (records.aabb) aabb_ = records.aabb;
  if (records.xxyy) xxyy_ = records.xxyy;
}

void ORNManualHearingTest::assignEarphones(const ORNDeviceCorrect& reply) {
  const EarphoneRecords records = earphoneRecords(reply);
  if (records.left) leftVolume_ = records.left;
  if (records.right) rightVolue_ = records.right;
}

void ORNManualHearingTest::setKV50MAC(const std::string& KV50MAC, CompletionHandler completionHandler) {
  KV50MAC_ = KV50MAC;
  fetchAudiometerCalibration("", KV50MAC, assignment(&ORNManualHearingTest::assignAudiometer),
                             std::move(completionHandler));
}

void ORNManualHearingTest::getTestHistoryByMAC(
    const std::string& KV50MAC, std::function<void(std::optional<Error>, std::nullptr_t)> completionHandler) {
  KV50MAC_ = KV50MAC;
  fetchAudiometerCalibration("history", KV50MAC, assignment(&ORNManualHearingTest::assignAudiometer),
                             [done = std::move(completionHandler)](std::optional<Error> error) {
                               if (done) done(std::move(error), nullptr);
                             });
}

void ORNManualHearingTest::setEarPlugModel(const std::string& earPlugModel, CompletionHandler completionHandler) {
  setEarPlugModel(std::optional(earPlugModel));
  fetchEarphoneCalibration(earPlugModel, assignment(&ORNManualHearingTest::assignEarphones),
                           std::move(completionHandler));
}

void ORNManualHearingTest::postListenTestWithLeft(const EarResult& left, const EarResult& right, bool base,
                                                  double /*lscore*/, double /*rscore*/, const nlohmann::json& /*noise*/,
                                                  const nlohmann::json& /*userID*/, const nlohmann::json& /*startTime*/,
                                                  const nlohmann::json& /*endTime*/,
                                                  const std::optional<std::string>& earPlugModel,
                                                  CompletionHandler completion) {
  ResultSubmission::postListenTestWithLeft(left, right, base, earPlugModel, std::move(completion));
}

void ORNManualHearingTest::startTest(bool isLeft) {
  if (isEnded_) return;
  ORNHearingTest::startTest(isLeft);
  ++earsStarted_;
  isLeft_ = isLeft;
  per_ = 0;
  resultArray(isLeft).clear();
  // A tone that could not be started is not to be tried again in the other ear.
  if (std::exchange(isCurrentToneMissing_, false)) setCurrentItem(nullptr);
  Platform::current().audioOutput->useCurrentDevice();
  if (!usesAudiometer()) return;
  const auto player = Player::shareInstance();
  player->setDataSouce(self<PlayerGetDataSouce>(this));
  player->start();
}

void ORNManualHearingTest::pauseTest() {
  ORNHearingTest::pauseTest();
  if (usesAudiometer()) {
    Player::shareInstance()->pause();
  } else if (currentItem()) {
    currentItem()->stop();
  }
}

void ORNManualHearingTest::continueTest() {
  if (isEnded_) return;
  if (usesAudiometer()) Player::shareInstance()->play();
  ORNHearingTest::continueTest();
}

void ORNManualHearingTest::endTest() {
  if (isEnded_) return;
  pauseTest();
  isEnded_ = true;
}

void ORNManualHearingTest::playAtHz(const std::string& hz, const std::string& db) {
  const auto alive = shared_from_this();
  if (!usesAudiometer() && currentItem()) currentItem()->stop();
  // Through 64 bits, so that no level overflows; the division cuts towards zero, so 12 dB is row 0.
  const std::int64_t row = (std::int64_t{intValue(db)} - 15) / 5;
  testItem(itemAt(currentGrid(), hz, static_cast<int>(row)));
}

void ORNManualHearingTest::testItem(const Item& item) {
  if (!item || isEnded_) return;
  const auto alive = shared_from_this();
  if (currentItem()) currentItem()->stop();
  prepareAmplitude(item);
  setCurrentItem(item);
  const auto volume = startTone(item);
  isCurrentToneMissing_ = !volume;
  if (!volume) {
    pauseTest();
    tellDelegate(&ORNHearingTestDelegate::toneMissing, ToneMissingReason::Calibration, isLeft_);
    return;
  }
  raiseProgress(progressAt(item->point(), startY_));
  tellDelegate(&ORNHearingTestDelegate::willTestAtHz, item->hzValue(), item->dbValue(), *volume, isLeft_);
}

void ORNManualHearingTest::prepareAmplitude(const Item& item) {
  if (!item || !usesAudiometer()) return;
  // The level comes from the row and not from dbValue; on the retest scale that is 20 dB more, and is meant.
  const auto level = static_cast<std::int32_t>(item->point().y * 5.0 + 15.0);
  item->setZhenfu(static_cast<float>(getKV50CorrectXByEar(isLeft_, *KV50MAC_, level, item->hzValue())));
}

void ORNManualHearingTest::presentAtOnce(const Item& item) {
  prepareAmplitude(item);
  setCurrentItem(item);
  testItem(item);
}

void ORNManualHearingTest::markHeard() {
  if (!currentItem() || isCurrentToneMissing_) return;
  currentItem()->setHearStatus(1);
  currentItem()->stop();
}

std::optional<float> ORNManualHearingTest::startTone(const Item& item) {
  if (!usesAudiometer()) return startEarphoneTone(item);
  Player::shareInstance()->play();
  return item->zhenfu();
}

std::optional<float> ORNManualHearingTest::startEarphoneTone(const Item& item) {
  const std::int32_t hz = intValue(item->hzValue());
  const std::int32_t level = intValue(item->dbValue());
  const auto gain = earphoneGain((isLeft_ ? leftVolume_ : rightVolue_).get(), hz, level);
  if (!gain) return std::nullopt;
  // The player is shared by many items, so pan and gain are set for each tone; the side asked for here is overruled.
  item->setPlayer(ORNPlayer::shareInstance()->playerWithHzValue(static_cast<std::uint64_t>(hz), level, false));
  const auto volume = static_cast<float>(*gain);
  if (const auto& player = item->player()) {
    player->setPan(item->pan());
    player->setVolume(volume);
    player->play();
  }
  return volume;
}

void ORNManualHearingTest::raiseProgress(double progress) { per_ = std::max(per_, static_cast<float>(progress)); }

double ORNManualHearingTest::getKV50CorrectXByEar(bool /*isLeft*/, const std::string& /*mac*/, std::int32_t db,
                                                  const std::string& hz) const {
  return audiometerAmplitude(ab_.get(), aabb_.get(), xxyy_.get(), db, hz);
}

void ORNManualHearingTest::listened() {
  if (!currentItem() || isCurrentToneMissing_) return;
  const auto alive = shared_from_this();
  const Item item = currentItem();
  item->setHearStatus(1);
  if (usesAudiometer()) {
    item->setNeedStop(true);  // never set back: the item stays silent for the rest of the session
  } else {
    item->stop();
  }
  targetItem(item);
}

void ORNManualHearingTest::targetItem(const Item& item) {
  if (!item) return;
  const auto alive = shared_from_this();
  addItem(item, resultArray(isLeft_));
  if (const auto told = delegateOperation(&ORNHearingTestDelegate::willSelectedAtHz)) {
    // Without a delegate that is told, the progress stays as it is here.
    const auto columns = static_cast<double>(hzs().size());
    raiseProgress(item->point().x / columns + 1 / columns);
    told(*this, item->hzValue(), item->dbValue(), isLeft_);
  }
  if (isOneComplete()) {
    per_ = 1;
    callOneComplete();
  }
  if (isTestComplete()) {
    per_ = 1;
    callAllComplete();
  }
}

bool ORNManualHearingTest::isOneComplete() {
  return resultArray(isLeft_).size() == hzs().size() && resultArray(!isLeft_).empty();
}

bool ORNManualHearingTest::isTestComplete() {
  return resultArray(true).size() == hzs().size() && resultArray(false).size() == hzs().size();
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
  // An audiometer's result carries its address in the model's place.
  ResultSubmission::submit(*getTestResult(true), *getTestResult(false), usesAudiometer() ? KV50MAC_ : earPlugModel(),
                           [session = std::weak_ptr(self(this))](const std::optional<Error>& error) {
                             const auto told = session.lock();
                             if (told) told->tellDelegate(&ORNHearingTestDelegate::submissionEnded, error);
                           });
}

std::optional<EarResult> ORNManualHearingTest::getTestResult(bool isLeft) const {
  EarResult result;
  for (const Item& item : isLeft ? leftEarTestResultArray_ : rightEarTestResultArray_) {
    const std::string& level = item->dbValue();
    result[item->hzValue()] = level.substr(0, level.size() < 2 ? 0 : level.size() - 2);
  }
  return result;
}

}  // namespace orn
