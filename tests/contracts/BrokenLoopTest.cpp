#include <map>
#include <memory>
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

/// A timer, and a loop, that forward everything but what a test changes.
struct ChangedTimer final : Timer {
  ~ChangedTimer() override {
    if (dropped) dropped();
  }
  void setFireDate(nanoseconds time) override { fireDate ? fireDate(time) : real->setFireDate(time); }
  void invalidate() override { end ? end() : real->invalidate(); }

  std::shared_ptr<Timer> real;
  std::function<void(nanoseconds)> fireDate;
  std::function<void()> end, dropped;
};

struct ChangedLoop final : RunLoop {
  explicit ChangedLoop(std::shared_ptr<RunLoop> loop) : real(std::move(loop)) {}

  nanoseconds now() const override { return clock ? clock() : real->now(); }
  std::chrono::system_clock::time_point date() const override { return calendar ? calendar() : real->date(); }
  std::shared_ptr<Timer> scheduledTimer(nanoseconds interval, Action action) override {
    const auto made = std::make_shared<ChangedTimer>();
    const auto inner = std::make_shared<std::weak_ptr<Timer>>();  // what an action may reach of its own timer
    made->real = real->scheduledTimer(interval, wrap ? wrap(std::move(action), inner) : std::move(action));
    *inner = made->real;
    if (timer) timer(*made, interval);
    return made;
  }
  void performAfterDelay(nanoseconds time, Action action) override {
    delay ? delay(time, std::move(action)) : real->performAfterDelay(time, std::move(action));
  }
  void dispatchAsync(Action action) override {
    dispatch ? dispatch(std::move(action)) : real->dispatchAsync(std::move(action));
  }

  std::shared_ptr<RunLoop> real;
  std::function<nanoseconds()> clock;
  std::function<std::chrono::system_clock::time_point()> calendar;
  std::function<Action(Action, std::shared_ptr<std::weak_ptr<Timer>>)> wrap;
  std::function<void(ChangedTimer&, nanoseconds interval)> timer;
  std::function<void(nanoseconds, Action)> delay;
  std::function<void(Action)> dispatch;
};

std::function<RunLoopUnderTest()> loopThat(const std::function<void(ChangedLoop& loop, RunLoop& real)>& change) {
  return [change] {
    RunLoopUnderTest copy = example::loop();
    const auto changed = std::make_shared<ChangedLoop>(copy.loop);
    change(*changed, *copy.loop);
    copy.loop = changed;
    return copy;
  };
}

bool isHere(std::thread::id here) { return std::this_thread::get_id() == here; }

/// What a timer's re-dating is changed to, for timers of an interval that is not the hour of timers that fire once.
auto redating(const std::function<nanoseconds(nanoseconds time, nanoseconds interval)>& change) {
  return loopThat([change](ChangedLoop& loop, RunLoop&) {
    loop.timer = [change](ChangedTimer& timer, nanoseconds interval) {
      if (interval == 1h) return;
      timer.fireDate = [change, interval, real = timer.real](nanoseconds time) {
        real->setFireDate(change(time, interval));
      };
    };
  });
}

const std::vector<BrokenCopy<RunLoopUnderTest>> kLoops = {
    {"now() counts from", loopThat([](ChangedLoop& loop, RunLoop& real) {
       loop.clock = [&real] { return real.now() + 24h; };
       loop.timer = [](ChangedTimer& timer, nanoseconds) {
         timer.fireDate = [real = timer.real](nanoseconds time) {
           real->setFireDate(time < 12h || time == RunLoop::distantFuture ? time : time - 24h);
         };
       };
     })},
    {"now() and date() pass",
     loopThat([](ChangedLoop& loop, RunLoop& real) { loop.calendar = [date = real.date()] { return date; }; })},
    {"a timer fires first", loopThat([](ChangedLoop& loop, RunLoop& real) {
       loop.timer = [&real](ChangedTimer& timer, nanoseconds interval) {
         timer.real->setFireDate(real.now() + 2 * interval);
       };
     })},
    {"a timer goes on firing", loopThat([](ChangedLoop& loop, RunLoop&) {
       loop.wrap = [](Action action, const auto& timer) {
         return [action, timer, firings = std::make_shared<int>(0)] {
           action();
           if (const auto real = timer->lock(); real && ++*firings == 3) real->invalidate();
         };
       };
     })},
    {"an interval below", loopThat([](ChangedLoop& loop, RunLoop&) {
       loop.timer = [](ChangedTimer& timer, nanoseconds interval) {
         if (interval <= 0ns) timer.real->setFireDate(RunLoop::distantFuture);
       };
     })},
    {"setFireDate() moves", redating([](nanoseconds time, nanoseconds interval) {
       return time == RunLoop::distantFuture ? time : time + interval;
     })},
    {"a fire date that has passed", loopThat([](ChangedLoop& loop, RunLoop& real) {
       const auto past = std::make_shared<bool>(false);
       loop.wrap = [&real, past](Action action, const auto&) {
         return [&real, past, action] { *past ? real.performAfterDelay(1h, action) : action(); };
       };
       loop.timer = [past](ChangedTimer& timer, nanoseconds interval) {
         timer.fireDate = [past, interval, real = timer.real](nanoseconds time) {
           if (time < 0ns && interval == 1h) *past = true;
           real->setFireDate(time);
         };
       };
     })},
    {"distantFuture parks", loopThat([](ChangedLoop& loop, RunLoop&) {
       loop.timer = [](ChangedTimer& timer, nanoseconds) {
         timer.fireDate = [real = timer.real](nanoseconds time) {
           if (time != RunLoop::distantFuture) real->setFireDate(time);
         };
       };
     })},
    {"missed firings", redating([](nanoseconds time, nanoseconds) { return time < 0ns ? time + 17ms : time; })},
    {"a timer does not fire while", loopThat([](ChangedLoop& loop, RunLoop& real) {
       loop.wrap = [&real](Action action, const auto&) {
         return [&real, action, isRunning = std::make_shared<bool>(false)] {
           *isRunning = true;
           real.performAfterDelay(3ms, [=] { *isRunning ? action() : void(); });
           action();
           *isRunning = false;
         };
       };
     })},
    {"calls come in the order", loopThat([](ChangedLoop& loop, RunLoop&) {
       // Of two timers at one time, the younger one fires first: they change their actions.
       const auto last = std::make_shared<std::weak_ptr<Action>>();
       const auto at = std::make_shared<std::map<nanoseconds, std::weak_ptr<Action>>>();
       loop.wrap = [last](Action action, const auto&) {
         const auto slot = std::make_shared<Action>(std::move(action));
         *last = slot;
         return [slot] { (*slot)(); };
       };
       loop.timer = [last, at](ChangedTimer& timer, nanoseconds) {
         timer.fireDate = [at, slot = *last, real = timer.real](nanoseconds time) {
           const auto own = slot.lock(), other = (*at)[time].lock();
           if (own && other) std::swap(*own, *other);
           (*at)[time] = slot;
           real->setFireDate(time);
         };
       };
     })},
    {"invalidate() ends", loopThat([](ChangedLoop& loop, RunLoop&) {
       // Called from within the action, it lets the timer fire once more.
       const auto running = std::make_shared<int>(0), ending = std::make_shared<int>(0);
       loop.wrap = [running, ending](Action action, const auto& timer) {
         return [=] {
           const bool isLast = *ending > 0;
           ++*running;
           action();
           --*running;
           if (const auto real = timer->lock(); real && isLast) real->invalidate();
         };
       };
       loop.timer = [running, ending](ChangedTimer& timer, nanoseconds interval) {
         timer.end = [running, ending, interval, real = timer.real] {
           *running > 0 && interval < 1h && *ending == 0 ? void(++*ending) : real->invalidate();
         };
       };
     })},
    {"invalidate() releases", loopThat([](ChangedLoop& loop, RunLoop&) {
       const auto kept = std::make_shared<std::vector<Action>>();
       loop.wrap = [kept](Action action, const auto&) { return kept->emplace_back(std::move(action)); };
     })},
    {"a timer goes on without", loopThat([](ChangedLoop& loop, RunLoop&) {
       loop.timer = [](ChangedTimer& timer, nanoseconds) {
         timer.dropped = [real = timer.real] { real->invalidate(); };
       };
     })},
    {"a delayed call", loopThat([](ChangedLoop& loop, RunLoop& real) {
       loop.delay = [&real](nanoseconds time, Action action) {
         real.performAfterDelay(time > 0ns ? 2 * time : time, std::move(action));
       };
     })},
    {"a delayed call", loopThat([](ChangedLoop& loop, RunLoop& real) {
       loop.delay = [&real](nanoseconds time, const Action& action) {
         for (int i = 0; i < (time > 5ms ? 2 : 1); ++i) real.performAfterDelay(time, action);
       };
     })},
    {"a delay of 0 or below", loopThat([](ChangedLoop& loop, RunLoop& real) {
       loop.delay = [&real](nanoseconds time, const Action& action) {
         time > 0ns ? real.performAfterDelay(time, action) : action();
       };
     })},
    {"dispatchAsync() makes", loopThat([](ChangedLoop& loop, RunLoop& real) {
       loop.dispatch = [&real, here = std::this_thread::get_id()](const Action& action) {
         isHere(here) ? action() : real.dispatchAsync(action);
       };
     })},
    {"dispatched calls come before", loopThat([](ChangedLoop& loop, RunLoop& real) {
       loop.dispatch = [&real, here = std::this_thread::get_id()](const Action& action) {
         isHere(here) ? real.performAfterDelay(0ns, action) : real.dispatchAsync(action);
       };
     })},
    {"calls that other threads", loopThat([](ChangedLoop& loop, RunLoop& real) {
       loop.dispatch = [&real, here = std::this_thread::get_id()](const Action& action) {
         isHere(here) ? real.dispatchAsync(action) : action();
       };
     })},
    {"a call that another thread", loopThat([](ChangedLoop& loop, RunLoop& real) {
       loop.dispatch = [&real, here = std::this_thread::get_id()](const Action& action) {
         isHere(here) ? real.dispatchAsync(action)
                      : real.dispatchAsync([&real, action] { real.performAfterDelay(1s, action); });
       };
     })},
    {"an action may use", loopThat([](ChangedLoop& loop, RunLoop& real) {
       loop.delay = [&real, isWithin = std::make_shared<bool>(false)](nanoseconds time, const Action& action) {
         if (*isWithin) return;
         real.performAfterDelay(time, [isWithin, action] {
           *isWithin = true;
           action();
           *isWithin = false;
         });
       };
     })},
    {"a loop that goes", loopThat([kept = std::make_shared<std::vector<Action>>()](ChangedLoop& loop, RunLoop& real) {
       loop.delay = [&real, kept](nanoseconds time, const Action& action) {
         real.performAfterDelay(time, kept->emplace_back(action));
       };
     })},
};

TEST(BrokenCopies, OfTheLoopAreNamed) { expectNamed("RunLoop", checkRunLoop, kLoops); }

}  // namespace
}  // namespace orn::contract
