#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include <ORNHearingTestSDK/audio/Player.h>
#include <ORNHearingTestSDK/engine/AudiometerPath.h>
#include <ORNHearingTestSDK/engine/CalibratedHearingTest.h>
#include <ORNHearingTestSDK/engine/EarphonePath.h>
#include <ORNHearingTestSDK/engine/HearingTestGrid.h>
#include <ORNHearingTestSDK/engine/TestResults.h>
#include <ORNHearingTestSDK/engine/ToneStream.h>

namespace orn {

/// The manual test, and the engine under the timed ones: it starts and stops tones on either output path, keeps the
/// thresholds, and knows when an ear and the test are complete. As a manual test, playAtHz() presents a tone and
/// listened() makes it the threshold of its frequency.
///
/// With KV50MAC set, tones go to the audiometer as a stream of samples; without it, to earphones by looping recordings.
class ORN_EXPORT ORNManualHearingTest : public CalibratedHearingTest, public PlayerGetDataSouce {
 public:
  using Item = std::shared_ptr<ORNHearingTestItem>;  ///< A cell of the grid.

  static std::shared_ptr<ORNManualHearingTest> init();  ///< A new session.

  /// The session that ORNHearingTest::initWithTestType makes, as this class: every session is one.
  static std::shared_ptr<ORNManualHearingTest> initWithTestType(std::int32_t testType);

  ORNManualHearingTest* manualTest() override { return this; }

  float getTestProgress() const override { return per(); }
  void setTestHzs(std::vector<std::string> hzs) override;
  void startTest(bool isLeft) override;
  void pauseTest() override;     ///< Silences the current tone.
  void continueTest() override;  ///< Lets the stream play on; a stopped recording stays silent.
  void endTest() override;
  bool isTestLeft() const override { return isLeft_; }
  void listened() override;
  std::optional<EarResult> getTestResult(bool isLeft) const override;
  void playAtHz(const std::string& hz, const std::string& db) override;

  /// Presents an item: maps its level, starts the tone, raises the progress, tells the delegate. An absent item
  /// changes nothing, not even the tone that sounds.
  virtual void testItem(const Item& item);

  /// Settles an item as the threshold of its frequency and completes the ear or the test if it was the last.
  virtual void targetItem(const Item& item);

  /// The current ear has all its thresholds and the other one none.
  bool isOneComplete();
  /// Both ears have all their thresholds.
  bool isTestComplete();
  void callOneComplete();  ///< Pauses, and tells that the first ear is complete.
  void callAllComplete();  ///< Pauses, tells that the test is complete, and submits the result.

  /// Amplitude of a level in dB HL at a frequency key, 0 to 1, from the three audiometer records; neither the ear nor
  /// the address enters it. A missing record counts as zeros.
  double getKV50CorrectXByEar(bool isLeft, const std::string& mac, std::int32_t db, const std::string& hz) const;

  /// The frequency keys in test order. Where none are set these are the seven, from 1000 Hz up and then down.
  virtual std::vector<std::string> hzs();
  void setHzs(std::vector<std::string> hzs) { hzs_ = std::move(hzs); }

  /// The grids, made from hzs() at their first read and never again; the items remember what they went through.
  HearingTestGrid& manageLeftDictory();
  HearingTestGrid& manageRightDictory();

  /// Settled thresholds, at most one for each column, by column.
  const std::vector<Item>& leftEarTestResultArray() const { return results_.of(true); }
  const std::vector<Item>& rightEarTestResultArray() const { return results_.of(false); }

  /// Puts an item in the place of the one with the same column, or in its own by column.
  static void addItem(const Item& item, std::vector<Item>& forArray);

  /// The item that sounds, or sounded last; null before the first.
  const Item& currentItem() const { return stream_.currentItem(); }
  const Item& lastTestItem() const { return stream_.lastTestItem(); }  ///< The one that was current before it.
  void setCurrentItem(Item item);                                      ///< Makes an item current without presenting it.

  bool isLeft() const { return isLeft_; }            ///< Whether the left ear is under test.
  float per() const { return results_.progress(); }  ///< Progress of the ear, normally 0 to 1.
  std::int32_t startY() const { return startY_; }    ///< Always 0.

  /// ResultSubmission::postListenTestWithLeft; the scores, the noise, the user id and the times are not used.
  static void postListenTestWithLeft(const EarResult& left, const EarResult& right, bool base, double lscore,
                                     double rscore, const nlohmann::json& noise, const nlohmann::json& userID,
                                     const nlohmann::json& startTime, const nlohmann::json& endTime,
                                     const std::optional<std::string>& earPlugModel, CompletionHandler completion);

  /// What setNosiseValue() was given is dropped.
  std::optional<double> nosiseValue() const { return std::nullopt; }

  /// Kept and without effect.
  bool isShowLog() const { return isShowLog_; }
  void setIsShowLog(bool isShowLog) { isShowLog_ = isShowLog; }

  /// Any thread, one at a time; see PlayerGetDataSouce. Always a full block.
  std::span<const std::uint8_t> playerGetData() override;

 protected:
  ORNManualHearingTest();

  /// That of the ear under test.
  HearingTestGrid& currentGrid() { return isLeft_ ? manageLeftDictory() : manageRightDictory(); }
  void setIsLeft(bool isLeft) { isLeft_ = isLeft; }  ///< Makes an ear the one under test.

  bool isEnded() const { return isEnded_; }  ///< Whether endTest() has been called.

  /// How often startTest() has been called.
  int earsStarted() const { return earsStarted_; }

  /// Makes an item current before it is presented, or nothing current; false, and nothing changes, where it has
  /// no level.
  bool makeCurrent(const Item& item);

  /// Makes an item current and presents it, or makes nothing current. Since it is then the last item too, the stream
  /// starts it at full amplitude, and that is meant, see docs/BEHAVIOURS.md.
  void presentAtOnce(const Item& item);

  /// Marks the current item as heard and silences its player; the search waits for the clock. Nothing for a tone that
  /// is missing.
  void markHeard();

  /// Pauses the test and tells why. The item is to be tried again, never judged.
  void toneIsMissing(const Item& item, ToneMissingReason reason);

  /// The item whose tone is missing; null while tones sound.
  const Item& missingItem() const { return missingItem_; }
  /// Whether the delegate is being told of a missing tone.
  bool isTellingOfMissing() const { return isTellingOfMissing_; }

  /// Whether all of the current tone was played until now.
  bool hasSoundedWhole() { return path().hasSoundedWhole(); }

 private:
  SoundPath& path();
  bool takesPresses() const { return !isEnded_ && !missingItem_; }

  std::vector<std::string> hzs_;
  EarGrids grids_;
  TestResults results_;
  AudiometerPath audiometer_{*this};
  EarphonePath earphones_{*this};
  ToneStream stream_;
  bool isLeft_ = false;
  int earsStarted_ = 0;
  bool isEnded_ = false;
  Item missingItem_;
  bool isTellingOfMissing_ = false;
  bool isShowLog_ = false;
  const std::int32_t startY_ = 0;
};

}  // namespace orn
