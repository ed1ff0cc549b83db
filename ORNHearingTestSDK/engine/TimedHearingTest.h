#pragma once

#include <cstdint>
#include <memory>

#include <ORNHearingTestSDK/engine/ORNManualHearingTest.h>
#include <ORNHearingTestSDK/engine/PresentationClock.h>

namespace orn {

/// What the automatic and the standard test share: a clock gives each tone its time, and the tone is judged at its end
/// by whether the user has pressed. Where the search goes from there is each test's own.
///
/// Only a tone that could be heard and answered is judged as not heard. One that did not sound whole, or whose end
/// comes very late, is presented again; what a hold-up of the main thread took from its time is made up for; where an
/// output fails the same tone time after time, the test pauses and says so.
///
/// The session lives from startTest() to the ear's last threshold, whoever else lets go of it. Main thread.
class ORN_EXPORT TimedHearingTest : public ORNManualHearingTest {
 public:
  /// The first tone comes one presentation time later.
  void startTest(bool isLeft) override;
  /// Marks the tone as heard; the search goes on at the clock's next tick.
  void listened() override;
  /// A tone that is due within the second after a threshold still comes.
  void pauseTest() override;
  /// Judges the current tone at once, whatever time it had. A missing one is tried again.
  void continueTest() override;
  void endTest() override;
  void testItem(const Item& item) override;

  /// Time of a presentation in seconds, 4 or more; the user default "BOFANGSHICHANG".
  std::int32_t getPlayTime() const { return PresentationClock::getPlayTime(); }

  bool isAutomatic() const { return isAutomatic_; }  ///< Whether it has been started.

  /// The clock, made if there is none.
  std::shared_ptr<Timer> autoPlayTimer() { return clock_.autoPlayTimer(tick()); }
  void timerUpdate();  ///< A tick: judges the current tone and goes on.

  virtual void hasListened() = 0;  ///< Goes on after a tone that was heard.
  virtual void notListened() = 0;  ///< Goes on after a tone that was not heard.
  /// The starting item of the next frequency, or null after the last one.
  virtual Item getNextColnTestItem() = 0;

 protected:
  TimedHearingTest() = default;

  /// Presents the next frequency's tone, a second after a threshold.
  void afterThreshold(RunLoop::Action present);

  /// After the last threshold of the ear that was the `ears`-th to be started. A host that started the other ear from
  /// the completion call has set the clock for it.
  void endEar(int ears);

 private:
  RunLoop::Action tick();
  void presentBrokenToneAgain(const Item& item);
  void presentNextFrequency(const RunLoop::Action& present);

  PresentationClock clock_;
  bool isAutomatic_ = false;
  bool isNextToneDue_ = false;       // a threshold is settled, and the next tone comes by itself
  bool isFirstOfFrequency_ = false;  // while that tone is presented
  int timesBroken_ = 0;              // in a row
};

}  // namespace orn
