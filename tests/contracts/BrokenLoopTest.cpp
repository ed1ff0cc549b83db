#include <thread>
#include <utility>

#include <ORNHearingTestSDK/contracts/RunLoopContract.h>

#include "BrokenCopies.h"
#include "examples/backend-contracts/SimulatedBackend.h"

namespace orn::contract {
namespace {

using namespace std::chrono_literals;
using std::chrono::nanoseconds;
using Action = RunLoop::Action;

struct BrokenTimer final : Timer {
  ~BrokenTimer() override {
    if (breaks("a timer goes on without its handle")) real->invalidate();
  }

  void setFireDate(nanoseconds time) override {
    if (breaks("distantFuture parks") || breaks("setFireDate() moves")) return;
    if (breaks("a fire date that has passed")) time = std::max(time, nanoseconds(0));
    if (breaks("missed firings") && time < 0ns) time += 17ms;
    if (breaks("calls come in the order") && time > 0ns) time -= nanoseconds(number);
    real->setFireDate(time);
  }

  void invalidate() override {
    if (!breaks("invalidate() ends") || interval < 1h) real->invalidate();
  }

  std::shared_ptr<Timer> real;
  nanoseconds interval{};
  int number = 0;
};

struct BrokenLoop final : RunLoop {
  nanoseconds now() const override { return real->now() + (breaks("now() counts from") ? 24h : 0h); }
  std::chrono::system_clock::time_point date() const override {
    return breaks("now() and date() pass") ? std::chrono::system_clock::time_point() : real->date();
  }

  std::shared_ptr<Timer> scheduledTimer(nanoseconds interval, Action action) override {
    const auto timer = std::make_shared<BrokenTimer>();
    timer->interval = interval;
    timer->number = ++timers;
    if (breaks("invalidate() releases")) keptForEver.push_back(action);
    if (breaks("a timer fires first")) interval *= 2;
    if (breaks("an interval below") && interval <= 0ns) interval = 1h;
    if (breaks("a timer goes on firing")) {
      action = [action, firings = std::make_shared<int>(0)] { ++*firings < 3 ? action() : void(); };
    }
    if (breaks("a timer does not fire while")) {
      action = [this, action] { real->performAfterDelay(1ms, action), action(); };
    }
    timer->real = real->scheduledTimer(interval, action);
    return timer;
  }

  void performAfterDelay(nanoseconds time, Action action) override {
    if (breaks("a loop that goes")) keptForEver.push_back(action);
    if (breaks("a delay of 0 or below") && time <= 0ns) return action();
    if (breaks("a delayed call")) real->performAfterDelay(time, action);
    if (breaks("an action may use") && isWithin) return;
    real->performAfterDelay(time, [this, action] {
      isWithin = true;
      action();
      isWithin = false;
    });
  }

  void dispatchAsync(Action action) override {
    const bool isOther = std::this_thread::get_id() != here;
    if (breaks("dispatchAsync() makes") && !isOther) return action();
    if (breaks("dispatched calls come before") && !isOther) return real->performAfterDelay(0ns, std::move(action));
    if (breaks("calls that other threads") && isOther) return action();
    if (breaks("a call that another thread") && isOther)
      return real->dispatchAsync([this, action] { real->performAfterDelay(1s, action); });
    real->dispatchAsync(std::move(action));
  }

  std::shared_ptr<RunLoop> real;
  static inline std::vector<Action> keptForEver;
  const std::thread::id here = std::this_thread::get_id();
  int timers = 0;
  bool isWithin = false;
};

TEST(BrokenCopies, OfTheLoopAreNamed) {
  expectEachNamed<RunLoopUnderTest>(checkRunLoop,
                                    [] { return brokenIn<BrokenLoop>(example::loop(), &RunLoopUnderTest::loop); });
}

}  // namespace
}  // namespace orn::contract
