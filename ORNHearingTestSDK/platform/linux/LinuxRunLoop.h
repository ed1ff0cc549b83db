#pragma once

#include <condition_variable>
#include <mutex>

#include <ORNHearingTestSDK/platform/QueuedRunLoop.h>

namespace orn {

/// A run loop in real time, on a condition variable and the steady clock. run() is for the main thread; stop(),
/// dispatchAsync(), now() and date() for any.
class ORN_EXPORT LinuxRunLoop final : public QueuedRunLoop {
 public:
  /// Makes calls as they fall due until stop(). Also from within a call: stop() then ends the inner run() first.
  void run();

  /// Ends run() after the call that is going on; ends the next run() at once if none is going on.
  void stop();

 private:
  void waitForWork();
  void wake() override;

  std::mutex mutex_;
  std::condition_variable work_;
  bool hasWork_ = false;
  bool stopped_ = false;
};

}  // namespace orn
