#pragma once

#include <memory>
#include <utility>

#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/platform/RunLoop.h>

namespace orn {

/// The way back to the main thread for what a request leaves behind. It does not keep the loop alive: once that has
/// gone, nobody waits for the call. Any thread.
class MainQueue {
 public:
  static MainQueue current() { return MainQueue(Platform::current().runLoop); }

  void dispatchAsync(RunLoop::Action action) const {
    if (const auto loop = loop_.lock()) loop->dispatchAsync(std::move(action));
  }

  /// Tells a completion these values there, unless it is empty.
  template <class Completion, class... Values>
  void tell(Completion completion, Values... values) const {
    dispatchAsync([completion = std::move(completion), ... values = std::move(values)] {
      if (completion) completion(values...);
    });
  }

 private:
  explicit MainQueue(std::weak_ptr<RunLoop> loop) : loop_(std::move(loop)) {}

  std::weak_ptr<RunLoop> loop_;
};

}  // namespace orn
