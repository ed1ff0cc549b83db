#pragma once

#include <deque>
#include <mutex>
#include <optional>
#include <utility>

#include <ORNHearingTestSDK/platform/RunLoop.h>

namespace orn {

/// Calls handed to the main thread by any thread, in the order of their coming.
class DispatchQueue {
 public:
  void add(RunLoop::Action action) {
    const std::lock_guard lock(mutex_);
    actions_.push_back(std::move(action));
  }

  /// Takes the oldest one, if there is any. Main thread.
  std::optional<RunLoop::Action> takeFirst() {
    const std::lock_guard lock(mutex_);
    if (actions_.empty()) return std::nullopt;
    std::optional first = std::move(actions_.front());
    actions_.pop_front();
    return first;
  }

 private:
  std::mutex mutex_;
  std::deque<RunLoop::Action> actions_;
};

}  // namespace orn
