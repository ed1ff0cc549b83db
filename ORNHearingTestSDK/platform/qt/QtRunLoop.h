#pragma once

#include <memory>

#include <ORNHearingTestSDK/platform/QueuedRunLoop.h>

class QSocketNotifier;
class QTimer;

namespace orn {

/// A run loop in real time on the event loop of Qt, which the program runs. It must be made after the QCoreApplication,
/// on its thread, and be destroyed before it. It makes one call at each turn of that loop, so that the screen stays
/// alive between calls; nested loops, such as a dialog's, make calls as well.
class ORN_EXPORT QtRunLoop final : public QueuedRunLoop {
 public:
  /// Throws std::system_error if the system has no file descriptor left.
  QtRunLoop();
  ~QtRunLoop() override;

 private:
  class WakeUp;

  void turn();
  void armTimer();
  void wake() override;
  void dueChanged() override { armTimer(); }

  std::unique_ptr<WakeUp> wakeUp_;
  std::unique_ptr<QSocketNotifier> notifier_;
  std::unique_ptr<QTimer> timer_;
};

}  // namespace orn
