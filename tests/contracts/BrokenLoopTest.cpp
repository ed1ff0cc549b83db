#include <set>
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

/// The suite's timers that fire once have an interval of an hour.
bool firesOnce(nanoseconds interval) { return interval == 1h; }

struct BrokenTimer final : Timer {
  ~BrokenTimer() override {
    if (breaks("a timer goes on without its handle")) real->invalidate();
  }

  void setFireDate(nanoseconds time) override {
    if (isEnding) return;
    const bool isMoved = time != RunLoop::distantFuture && !firesOnce(interval);
    if (breaks("distantFuture parks") && time == RunLoop::distantFuture) return;
    if (breaks("now() counts from") && time > 12h && time != RunLoop::distantFuture) time -= 24h;
    if (breaks("a fire date that has passed")) time = std::max(time, nanoseconds(0));
    if (breaks("setFireDate() moves") && isMoved) time += interval;
    if (breaks("missed firings") && isMoved && time < 0ns) time += 17ms;
    if (breaks("calls come in the order") && !dates->insert(time).second) time -= 1ns;
    real->setFireDate(time);
  }

  void invalidate() override {
    if (breaks("invalidate() ends") && interval == 1ms) {
      isEnding = true;
      return loop->performAfterDelay(2ms, [timer = real] { timer->invalidate(); });
    }
    real->invalidate();
  }

  std::shared_ptr<Timer> real;
  nanoseconds interval{};
  bool isEnding = false;
  RunLoop* loop = nullptr;
  std::shared_ptr<std::set<nanoseconds>> dates;
};

struct BrokenLoop final : RunLoop {
  explicit BrokenLoop(std::shared_ptr<RunLoop> loop) : real(std::move(loop)), made(real->date()) {}

  nanoseconds now() const override { return real->now() + (breaks("now() counts from") ? 24h : 0h); }
  std::chrono::system_clock::time_point date() const override {
    return breaks("now() and date() pass") ? made : real->date();
  }

  std::shared_ptr<Timer> scheduledTimer(nanoseconds interval, Action action) override {
    const auto timer = std::make_shared<BrokenTimer>();
    const auto own = std::make_shared<std::weak_ptr<Timer>>();  // what the action may reach of its own timer
    if (breaks("invalidate() releases")) kept.push_back(action);
    timer->real = real->scheduledTimer(interval, changed(std::move(action), own));
    timer->interval = interval;
    timer->loop = real.get();
    timer->dates = dates;
    *own = timer->real;
    if (breaks("a timer fires first")) timer->real->setFireDate(real->now() + 2 * interval);
    if (breaks("an interval below") && interval <= 0ns) timer->real->setFireDate(distantFuture);
    return timer;
  }

  Action changed(Action action, const std::shared_ptr<std::weak_ptr<Timer>>& own) {
    if (breaks("a timer goes on firing")) {
      return [action, own, firings = std::make_shared<int>(0)] {
        action();
        if (const auto timer = own->lock(); timer && ++*firings == 3) timer->invalidate();
      };
    }
    if (breaks("a timer does not fire while")) {
      return [this, action, isRunning = std::make_shared<bool>(false)] {
        *isRunning = true;
        real->performAfterDelay(3ms, [=] { *isRunning ? action() : void(); });
        action();
        *isRunning = false;
      };
    }
    return action;
  }

  void performAfterDelay(nanoseconds time, Action action) override {
    static std::vector<Action> keptForEver;
    if (breaks("a loop that goes")) keptForEver.push_back(action);
    if (breaks("a delay of 0 or below") && time <= 0ns) return action();
    if (breaks("a delayed call") && time > 5ms) real->performAfterDelay(time, action);
    if (!breaks("an action may use")) return real->performAfterDelay(time, std::move(action));
    if (std::exchange(isWithin, false)) return;
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
  std::chrono::system_clock::time_point made;
  std::vector<Action> kept;
  std::shared_ptr<std::set<nanoseconds>> dates = std::make_shared<std::set<nanoseconds>>();
  std::thread::id here = std::this_thread::get_id();
  bool isWithin = false;
};

TEST(BrokenCopies, OfTheLoopAreNamed) {
  expectEachNamed<RunLoopUnderTest>(checkRunLoop, [] {
    RunLoopUnderTest copy = example::loop();
    copy.loop = std::make_shared<BrokenLoop>(copy.loop);
    return copy;
  });
}

}  // namespace
}  // namespace orn::contract
