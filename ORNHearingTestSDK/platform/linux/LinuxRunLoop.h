#pragma once

#include <condition_variable>
#include <mutex>

#include <ORNHearingTestSDK/platform/QueuedRunLoop.h>

namespace orn {

/// A run loop in real time, on a condition variable and the steady clock. run() is for the main thread; stop(),
/// dispatchAsync(), now() and date() are for any thread.
class ORN_EXPORT LinuxRunLoop final : public QueuedRunLoop {
 public:
  /// Makes calls as they fall due until stop(). May be called from within a call: stop() then ends the inner run()
  /// first.
  void run();

  /// Ends run() after the call that is being made; if run() is not running, ends the next one at once.
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
