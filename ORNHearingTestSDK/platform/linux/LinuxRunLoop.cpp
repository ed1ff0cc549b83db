#include <ORNHearingTestSDK/platform/linux/LinuxRunLoop.h>

#include <algorithm>
#include <utility>

namespace orn {

using std::chrono::nanoseconds;

namespace {
// A time far off would overflow the clock's own type.
constexpr std::chrono::hours longestWait{1};
}  // namespace

LinuxRunLoop::LinuxRunLoop() = default;
LinuxRunLoop::~LinuxRunLoop() = default;

void LinuxRunLoop::run() {
  while (true) {
    {
      const std::lock_guard lock(mutex_);
      if (std::exchange(stopped_, false)) return;
    }
    if (!makeDueCall()) waitForWork();
  }
}

bool LinuxRunLoop::makeDueCall() {
  if (const auto action = dispatched_.takeFirst()) {
    (*action)();
    return true;
  }
  return timers_.fireNext(now());
}

void LinuxRunLoop::waitForWork() {
  const auto due = timers_.nextDue();
  std::unique_lock lock(mutex_);
  const auto awake = [this] { return hasWork_ || stopped_; };
  if (due) {
    work_.wait_until(lock, start_ + std::min(*due, now() + longestWait), awake);
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

nanoseconds LinuxRunLoop::now() const { return std::chrono::steady_clock::now() - start_; }

std::chrono::system_clock::time_point LinuxRunLoop::date() const { return std::chrono::system_clock::now(); }

std::shared_ptr<Timer> LinuxRunLoop::scheduledTimer(nanoseconds interval, Action action) {
  return timers_.addTimer(now(), interval, std::move(action));
}

void LinuxRunLoop::performAfterDelay(nanoseconds delay, Action action) {
  timers_.addCall(now(), delay, std::move(action));
}

void LinuxRunLoop::dispatchAsync(Action action) {
  dispatched_.add(std::move(action));
  wake();
}

}  // namespace orn
