#include <ORNHearingTestSDK/platform/QueuedRunLoop.h>

#include <utility>

namespace orn {

using std::chrono::nanoseconds;

QueuedRunLoop::QueuedRunLoop() : timers_([this] { dueChanged(); }) {}
QueuedRunLoop::~QueuedRunLoop() = default;

nanoseconds QueuedRunLoop::now() const { return std::chrono::steady_clock::now() - start_; }

std::chrono::system_clock::time_point QueuedRunLoop::date() const { return std::chrono::system_clock::now(); }

std::shared_ptr<Timer> QueuedRunLoop::scheduledTimer(nanoseconds interval, Action action) {
  return timers_.addTimer(now(), interval, std::move(action));
}

void QueuedRunLoop::performAfterDelay(nanoseconds delay, Action action) {
  timers_.addCall(now(), delay, std::move(action));
}

void QueuedRunLoop::dispatchAsync(Action action) {
  {
    const std::lock_guard lock(mutex_);
    dispatched_.push_back(std::move(action));
  }
  wake();
}

bool QueuedRunLoop::makeDispatchedCall() {
  Action first;
  {
    const std::lock_guard lock(mutex_);
    if (dispatched_.empty()) return false;
    first = std::move(dispatched_.front());
    dispatched_.pop_front();
  }
  first();
  return true;
}

bool QueuedRunLoop::makeDueCall() { return makeDispatchedCall() || timers_.fireNext(now()); }

}  // namespace orn
