#pragma once

#include <cstdint>
#include <memory>

#include <ORNHearingTestSDK/engine/ORNManualHearingTest.h>
#include <ORNHearingTestSDK/engine/PresentationClock.h>

namespace orn {

/// The automatic test, which needs nothing but a press at each tone heard. A clock gives each tone its time and judges
/// it at its end; the search goes 10 dB up or down until the answer changes and closes the gap by 5 dB, so no level is
/// presented twice in a search.
///
/// The session lives from startTest() to the ear's last threshold, whoever else lets go of it.
class ORN_EXPORT ORNAutoHearingTest final : public ORNManualHearingTest {
 public:
  static std::shared_ptr<ORNAutoHearingTest> init();

  /// The first tone comes one presentation time later.
  void startTest(bool isLeft) override;
  /// Marks the tone as heard; the search goes on at the clock's next tick.
  void listened() override;
  void targetItem(const Item& item) override;
  /// A tone that is due within the second after a threshold still comes.
  void pauseTest() override;
  /// Judges the current tone at once, whatever time it had.
  void continueTest() override;
  void endTest() override;

  /// Time of a presentation in seconds, 4 or more; the user default "BOFANGSHICHANG".
  std::int32_t getPlayTime() const { return PresentationClock::getPlayTime(); }

  bool isAutomatic() const { return isAutomatic_; }

  /// The clock, made if there is none.
  std::shared_ptr<Timer> autoPlayTimer();
  void timerUpdate();
  void hasListened();
  void notListened();
  /// The starting item of the next frequency, or null after the last one.
  Item getNextColnTestItem();

 private:
  ORNAutoHearingTest();

  RunLoop::Action tick();

  PresentationClock clock_;
  bool isAutomatic_ = false;
};

}  // namespace orn
