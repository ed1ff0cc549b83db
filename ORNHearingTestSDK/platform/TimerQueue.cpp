#include <ORNHearingTestSDK/platform/TimerQueue.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <utility>

namespace orn {
namespace {

using Time = TimerQueue::Time;

// Both stop at the distant future, also where a date lies before the loop's beginning.
Time later(Time time, Time span) {
  return time > Time::zero() && span > RunLoop::distantFuture - time ? RunLoop::distantFuture : time + span;
}

Time between(Time from, Time to) { return from < to - RunLoop::distantFuture ? RunLoop::distantFuture : to - from; }

}  // namespace

/// What waits, by due time and then by age. Timers reach it weakly, since they may outlive their loop.
struct TimerQueue::Calls {
  using Key = std::pair<Time, std::uint64_t>;

  explicit Calls(std::function<void()> whenChanged) : changed(std::move(whenChanged)) {}

  void add(Key key, std::shared_ptr<QueuedTimer> timer) {
    waiting.emplace(key, std::move(timer));
    if (changed) changed();
  }

  std::map<Key, std::shared_ptr<QueuedTimer>> waiting;
  std::uint64_t nextAge = 1;  // age 0 is that of a key that never waited
  std::function<void()> changed;
};

/// A repeating timer, or a delayed call, which is a timer without an interval.
class TimerQueue::QueuedTimer final : public Timer, public std::enable_shared_from_this<QueuedTimer> {
 public:
  QueuedTimer(const std::shared_ptr<Calls>& calls, Time interval, RunLoop::Action action)
      : calls_(calls), interval_(interval), action_(std::move(action)) {}

  void setFireDate(Time time) override {
    const auto calls = calls_.lock();
    if (!calls || !action_) return;
    calls->waiting.erase(key_);
    key_ = {time, calls->nextAge++};
    if (!isRunning_) calls->add(key_, shared_from_this());
  }

  void invalidate() override {
    // The action may own the last hold on this timer's user, so it goes when everything else is in order.
    const RunLoop::Action released = std::exchange(action_, nullptr);
    if (const auto calls = calls_.lock()) calls->waiting.erase(key_);
  }

  void fire(Time now) {
    const RunLoop::Action action = action_;
    const Running running(*this);
    if (interval_ > Time::zero()) {
      // Dated before the call, so that the call can move the date; the rhythm is kept, missed firings are not made up.
      const Time missed = between(key_.first, now) / interval_ * interval_;
      setFireDate(later(key_.first + missed, interval_));
    } else {
      action_ = nullptr;
    }
    if (action) action();
  }

 private:
  /// Until its call has ended, a timer has a date but doesn't wait, so no loop that the call runs can fire it.
  struct Running {
    explicit Running(QueuedTimer& its) : timer(its) { timer.isRunning_ = true; }
    ~Running() {
      timer.isRunning_ = false;
      const auto calls = timer.calls_.lock();
      if (calls && timer.action_) calls->add(timer.key_, timer.shared_from_this());
    }
    QueuedTimer& timer;
  };

  std::weak_ptr<Calls> calls_;
  Time interval_;
  RunLoop::Action action_;
  Calls::Key key_{};
  bool isRunning_ = false;
};

TimerQueue::TimerQueue(std::function<void()> changed) : calls_(std::make_shared<Calls>(std::move(changed))) {}

TimerQueue::~TimerQueue() {
  calls_->changed = nullptr;
  // An action that goes may itself add or end timers.
  while (!calls_->waiting.empty()) {
    const auto timer = calls_->waiting.begin()->second;
    timer->invalidate();
  }
}

std::shared_ptr<Timer> TimerQueue::addTimer(Time now, Time interval, RunLoop::Action action) {
  interval = std::max(interval, Time{1});
  auto timer = std::make_shared<QueuedTimer>(calls_, interval, std::move(action));
  timer->setFireDate(later(now, interval));
  return timer;
}

void TimerQueue::addCall(Time now, Time delay, RunLoop::Action action) {
  std::make_shared<QueuedTimer>(calls_, Time::zero(), std::move(action))
      ->setFireDate(later(now, std::max(delay, Time::zero())));
}

std::optional<Time> TimerQueue::nextDue() const {
  if (calls_->waiting.empty()) return std::nullopt;
  const Time due = calls_->waiting.begin()->first.first;
  if (due == RunLoop::distantFuture) return std::nullopt;
  return due;
}

bool TimerQueue::fireNext(Time now) {
  if (const auto due = nextDue(); !due || *due > now) return false;
  // Out of the queue first, so that the timer may be armed again or go.
  const auto first = calls_->waiting.begin();
  const std::shared_ptr<QueuedTimer> timer = first->second;
  calls_->waiting.erase(first);
  timer->fire(now);
  return true;
}

}  // namespace orn
