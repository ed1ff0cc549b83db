#include <ORNHearingTestSDK/platform/linux/LinuxRunLoop.h>

#include <algorithm>
#include <utility>

namespace orn {

namespace {
// A wait for a distant time would overflow the clock's own type.
constexpr std::chrono::hours kLongestIdle{1};
}  // namespace

void LinuxRunLoop::run() {
  while (true) {
    {
      const std::lock_guard lock(mutex_);
      if (std::exchange(stopped_, false)) return;
    }
    if (!makeDueCall()) waitForWork();
  }
}

void LinuxRunLoop::waitForWork() {
  const auto due = nextDue();
  std::unique_lock lock(mutex_);
  const auto awake = [this] { return hasWork_ || stopped_; };
  if (due) {
    work_.wait_for(lock, std::min<std::chrono::nanoseconds>(*due - now(), kLongestIdle), awake);
  } else {
    work_.wait(lock, awake);
  }
  hasWork_ = false;
}

void LinuxRunLoop::wake() {
  const std::lock_guard lock(mutex_);
  hasWork_ = true;
  work_.notify_one();
}

void LinuxRunLoop::stop() {
  const std::lock_guard lock(mutex_);
  stopped_ = true;
  work_.notify_one();
}

}  // namespace orn
