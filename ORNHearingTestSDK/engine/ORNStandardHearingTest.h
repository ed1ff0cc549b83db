#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include <ORNHearingTestSDK/engine/TimedHearingTest.h>

namespace orn {

/// The stricter timed test: 10 dB down after each tone heard, 5 dB up after each tone not heard, and a level counts
/// once it has been heard more often than not over at least three presentations. In the middle of each ear it repeats
/// 1000 Hz on a scale of its own, down to -5 dB; the result holds the value of this retest alone. On the audiometer
/// path the retest sounds 20 dB above the level that it records, and that is meant.
class ORN_EXPORT ORNStandardHearingTest final : public TimedHearingTest {
 public:
  static std::shared_ptr<ORNStandardHearingTest> init();  ///< A new session.

  /// Always the list of this test, whatever setTestHzs() was given.
  std::vector<std::string> hzs() override;

  void targetItem(const Item& item) override;
  /// The same for the retest, after which the 500 Hz column is current at once. In spite of its name it compares
  /// nothing.
  void targetItemAndCheck(const Item& item);

  void hasListened() override;  ///< Goes on after a tone that was heard.
  void notListened() override;  ///< Goes on after a tone that was not heard.
  /// The starting item of the frequency at testIndex(), or null after the last one.
  Item getNextColnTestItem() override;

  /// Counts a presentation; true if the search of this frequency goes on, false if the level has been accepted.
  bool addStatusForItem(const Item& item, bool isHeard);

  /// Index into hzs() of the frequency under test.
  std::int32_t testIndex() const { return testIndex_; }

  /// The retest scales of 1000 Hz, from -5 to 90 dB, made at their first read. Both are panned to the left.
  HearingTestColumn& manageReTestLeftDictory();
  HearingTestColumn& manageReTestRightDictory();  ///< The retest's column of the right ear.

  /// Always null: the search has no clock of its own.
  std::shared_ptr<Timer> autoFindPlayTimer() const { return nullptr; }

 private:
  ORNStandardHearingTest() = default;

  void goOn(const Item& judged, bool isHeard);
  void goOnTo(const Item& item, int ears);

  std::int32_t testIndex_ = 0;
  std::optional<HearingTestColumn> manageReTestLeftDictory_;
  std::optional<HearingTestColumn> manageReTestRightDictory_;
};

}  // namespace orn
