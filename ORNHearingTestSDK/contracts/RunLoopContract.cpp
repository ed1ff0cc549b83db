#include <ORNHearingTestSDK/contracts/RunLoopContract.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <ORNHearingTestSDK/contracts/Checking.h>

namespace orn::contract {
namespace {

using namespace std::chrono_literals;
using std::chrono::nanoseconds;

/// A loop whose calls write down letters. On a busy machine a loop in real time makes its calls late, so only their
/// order is checked, never how late they are.
class LoopCheck {
 public:
  explicit LoopCheck(RunLoopUnderTest loop) : underTest_(std::move(loop)) {}

  RunLoop& loop() { return *underTest_.loop; }
  nanoseconds now() { return loop().now(); }
  void runFor(nanoseconds span) { underTest_.runFor(span); }
  bool runsWithin() const { return underTest_.runsWithin; }

  /// Runs until something holds, at most for ten seconds of the loop.
  template <class Condition>
  bool runUntil(Condition holds) {
    for (int i = 0; i < 1000 && !holds(); ++i) runFor(10ms);
    return holds();
  }

  RunLoop::Action says(const char* letter) {
    return [this, letter] { said += letter; };
  }

  /// A timer with an interval of an hour, which fires at that time; kept alive here.
  std::shared_ptr<Timer> at(nanoseconds time, RunLoop::Action action) {
    timers_.push_back(loop().scheduledTimer(1h, std::move(action)));
    timers_.back()->setFireDate(time);
    return timers_.back();
  }

  void expectSaid(const std::string& expected) const {
    expect(said == expected, "the calls came as \"" + said + "\" instead of \"" + expected + "\"");
  }

  /// Lets go of the loop, and returns its timers, which may outlive it.
  std::vector<std::shared_ptr<Timer>> dropLoop() {
    underTest_.loop.reset();
    return timers_;
  }

  std::string said;

 private:
  RunLoopUnderTest underTest_;
  std::vector<std::shared_ptr<Timer>> timers_;
};

/// Each firing must be in a period of its own, counted from the date at which the first is due.
void expectRhythm(const std::vector<nanoseconds>& firings, nanoseconds first, nanoseconds interval) {
  nanoseconds::rep last = -1;
  for (const nanoseconds time : firings) {
    expect(time >= first, "it fired too early");
    const auto period = (time - first) / interval;
    expect(period > last, "it fired twice in one interval");
    last = period;
  }
}

const Contract<LoopCheck> kRunLoopContracts[] = {
    {"now() counts from when the loop was made",
     [](LoopCheck& check) { expect(check.now() >= 0ns && check.now() < 1min, "a new loop says another time"); }},

    {"now() and date() pass as the loop runs",
     [](LoopCheck& check) {
       const auto before = check.now();
       const auto date = check.loop().date();
       const auto after = check.now();
       check.runFor(50ms);
       const auto laterBefore = check.now();
       const nanoseconds passed = check.loop().date() - date;
       expect(laterBefore - after >= 50ms - 1ms, "now() did not pass");
       expect(passed >= laterBefore - after - 5ms && passed <= check.now() - before + 5ms,
              "date() did not pass as now() did");
     }},

    {"a timer fires first one interval after it was made",
     [](LoopCheck& check) {
       const auto made = check.now();
       nanoseconds fired{};
       const auto timer = check.loop().scheduledTimer(20ms, [&] {
         if (check.said.empty()) fired = check.now();
         check.said += "t";
       });
       check.loop().performAfterDelay(30ms, check.says("m"));
       check.runFor(35ms);
       expect(check.said.starts_with("t"), "it did not fire within one and a half intervals");
       expect(fired >= made + 20ms, "it fired too early");
     }},

    {"a timer goes on firing at its interval",
     [](LoopCheck& check) {
       const auto made = check.now();
       std::vector<nanoseconds> firings;
       const auto timer = check.loop().scheduledTimer(5ms, [&] { firings.push_back(check.now()); });
       expect(check.runUntil([&] { return firings.size() >= 4; }), "it fired less than 4 times");
       expectRhythm(firings, made + 5ms, 5ms);
     }},

    {"an interval below a nanosecond counts as one",
     [](LoopCheck& check) {
       for (const nanoseconds interval : {nanoseconds(0ns), nanoseconds(-1h)}) {
         int firings = 0;
         const auto timer = check.loop().scheduledTimer(interval, [&] { ++firings; });
         expect(firings == 0, "it fired within the call");
         for (int i = 0; i < 1000 && firings < 3; ++i) check.runFor(10ns);
         timer->invalidate();
         expect(firings >= 3, "it fired less than 3 times");
       }
     }},

    {"setFireDate() moves the next firing, and the interval goes on from there",
     [](LoopCheck& check) {
       const auto date = check.now() + 40ms;
       std::vector<nanoseconds> firings;
       const auto timer = check.loop().scheduledTimer(10ms, [&] { firings.push_back(check.now()); });
       timer->setFireDate(date);
       std::size_t byThen = 0;
       check.at(date + 5ms, [&] { byThen = firings.size(); });
       expect(check.runUntil([&] { return firings.size() >= 3; }), "it fired less than 3 times");
       expect(byThen == 1, "the first firing came at another time");
       expectRhythm(firings, date, 10ms);
     }},

    {"a fire date that has passed fires at the loop's next turn, never within the call",
     [](LoopCheck& check) {
       check.at(-1ns, check.says("c"));
       check.at(-2h, check.says("b"));
       check.at(nanoseconds::min(), check.says("a"));
       check.expectSaid("");
       check.runFor(1ms);
       check.expectSaid("abc");
     }},

    {"distantFuture parks a timer until it gets another date",
     [](LoopCheck& check) {
       std::shared_ptr<Timer> timer;
       timer = check.loop().scheduledTimer(1ms, [&] {
         check.said += "t";
         timer->setFireDate(RunLoop::distantFuture);
       });
       timer->setFireDate(RunLoop::distantFuture);
       check.runFor(10ms);
       check.expectSaid("");
       timer->setFireDate(check.now());
       check.runFor(10ms);
       check.expectSaid("t");
     }},

    {"missed firings are made up for by one, and the rhythm is kept",
     [](LoopCheck& check) {
       const auto date = check.now() - 50ms;  // three are missed
       std::vector<nanoseconds> firings;
       const auto timer = check.loop().scheduledTimer(20ms, [&] { firings.push_back(check.now()); });
       timer->setFireDate(date);
       expect(check.runUntil([&] { return firings.size() >= 2; }), "it fired less than twice");
       expect(firings[1] >= date + 60ms, "more than one was made up for, or the rhythm was lost");
     }},

    {"a timer does not fire while its own action runs, not even in a loop that the action runs",
     [](LoopCheck& check) {
       if (!check.runsWithin()) throw NotChecked{"needs a loop that an action can run"};
       for (const auto moved : {nanoseconds(0ns), nanoseconds(3ms)}) {
         std::vector<nanoseconds> firings;
         bool isRunning = false, overlaps = false, goesOn = false;
         nanoseconds first = check.now() + 5ms, ended{};
         std::shared_ptr<Timer> timer;
         timer = check.loop().scheduledTimer(5ms, [&] {
           overlaps = overlaps || isRunning;
           firings.push_back(check.now());
           if (firings.size() > 1) return;
           isRunning = true;
           if (moved > 0ns) timer->setFireDate(first = check.now() + moved);
           check.loop().performAfterDelay(20ms, [&] { goesOn = true; });
           check.runUntil([&] { return goesOn; });
           isRunning = false;
           ended = check.now();
         });
         expect(check.runUntil([&] { return firings.size() >= 3; }), "it fired less than 3 times");
         timer->invalidate();
         expect(!overlaps && firings[1] >= ended, "it fired within its own action");
         expect(goesOn, "other calls waited as well");
         if (moved > 0ns) firings.erase(firings.begin());
         expectRhythm(firings, first, 5ms);
       }
     }},

    {"calls come in the order of their due times and, at one time, of their age",
     [](LoopCheck& check) {
       const auto start = check.now();
       check.at(start + 9ms, check.says("d"));
       check.at(start + 5ms, check.says("b"));
       check.at(start + 2ms, check.says("a"));
       check.at(start + 5ms, check.says("c"));
       check.runFor(15ms);
       check.expectSaid("abcd");
     }},

    {"invalidate() ends a timer for good, also from within its action",
     [](LoopCheck& check) {
       std::shared_ptr<Timer> within, due;
       within = check.loop().scheduledTimer(1ms, [&] {
         check.said += "a";
         within->invalidate();
         within->setFireDate(check.now());
       });
       check.at(check.now(), [&] { due->invalidate(); });
       due = check.at(check.now() + 1ns, check.says("b"));
       check.runFor(20ms);
       check.expectSaid("a");
       within->setFireDate(0ns);
       within->invalidate();
       check.runFor(5ms);
       check.expectSaid("a");
     }},

    {"invalidate() releases the action",
     [](LoopCheck& check) {
       auto owned = std::make_shared<int>();
       const std::weak_ptr<int> watched = owned;
       const auto outside = check.loop().scheduledTimer(1ms, [owned] {});
       std::shared_ptr<Timer> within;
       within = check.loop().scheduledTimer(1ms, [&within, owned] {
         within->invalidate();
         *owned = 1;  // an action lives as long as it runs
       });
       outside->invalidate();
       owned.reset();
       check.runFor(10ms);
       expect(watched.expired(), "an action was kept");
     }},

    {"a timer goes on without its handle",
     [](LoopCheck& check) {
       check.loop().scheduledTimer(1ms, check.says("t"));
       expect(check.runUntil([&] { return check.said.size() >= 2; }), "it fired less than twice");
     }},

    {"a delayed call comes once, after its delay",
     [](LoopCheck& check) {
       const auto start = check.now();
       nanoseconds called{};
       check.loop().performAfterDelay(20ms, [&] {
         called = check.now();
         check.said += "c";
       });
       check.at(start + 30ms, check.says("m"));
       check.at(start + 100ms, check.says("e"));
       check.runFor(110ms);
       check.expectSaid("cme");
       expect(called >= start + 20ms, "it came too early");
     }},

    {"a delay of 0 or below means the next turn, never within the call",
     [](LoopCheck& check) {
       check.loop().performAfterDelay(0ns, check.says("a"));
       check.loop().performAfterDelay(-1h, check.says("b"));
       check.loop().performAfterDelay(nanoseconds::min(), check.says("c"));
       check.expectSaid("");
       check.runFor(1ms);
       expect(check.said.size() == 3, "not all of three calls came");
     }},

    {"dispatchAsync() makes calls in the order of the dispatches, never within the call",
     [](LoopCheck& check) {
       check.loop().dispatchAsync([&] {
         check.said += "a";
         check.loop().dispatchAsync(check.says("c"));
         check.said += ".";
       });
       check.loop().dispatchAsync(check.says("b"));
       check.expectSaid("");
       check.runFor(1ms);
       check.expectSaid("a.bc");
     }},

    {"dispatched calls come before timers that are due",
     [](LoopCheck& check) {
       check.at(check.now(), check.says("t"));
       check.loop().dispatchAsync([&] { check.loop().dispatchAsync(check.says("d")); });
       check.runFor(1ms);
       check.expectSaid("dt");
     }},

    {"calls that other threads dispatch come on the loop's thread, in order",
     [](LoopCheck& check) {
       constexpr int count = 1000;
       std::mutex mutex;
       std::vector<int> made;
       bool isElsewhere = false;
       const auto here = std::this_thread::get_id();
       std::thread other = newThread([&] {
         for (int i = 0; i < count; ++i) {
           check.loop().dispatchAsync([&, i] {
             const std::lock_guard lock(mutex);
             made.push_back(i);
             isElsewhere = isElsewhere || std::this_thread::get_id() != here;
           });
         }
       });
       check.runFor(1ms);  // meanwhile
       other.join();
       check.runUntil([&] { return made.size() >= count; });
       expect(made.size() == count, "not all of the calls came");
       expect(!isElsewhere, "a call came on another thread");
       expect(std::is_sorted(made.begin(), made.end()), "they came in another order");
     }},

    {"a call that another thread dispatches wakes a loop that waits",
     [](LoopCheck& check) {
       std::atomic<nanoseconds> asked{}, called{-1ns};
       std::thread other = newThread([&] {
         for (int i = 0; i < 2000 && check.now() < 20ms; ++i) std::this_thread::sleep_for(1ms);
         asked = check.now();
         check.loop().dispatchAsync([&] { called = check.now(); });
       });
       check.runFor(1s);
       other.join();
       check.runFor(1ms);  // virtual time is over before the other thread has its turn
       check.runUntil([&] { return called.load() >= 0ns; });
       expect(called.load() >= 0ns && called.load() - asked.load() < 500ms, "it came when the loop woke by itself");
     }},

    {"an action may use the loop freely",
     [](LoopCheck& check) {
       std::shared_ptr<Timer> timer;
       check.loop().performAfterDelay(0ns, [&] {
         check.loop().performAfterDelay(1ms, check.says("a"));
         check.loop().dispatchAsync(check.says("b"));
         timer = check.at(check.now() + 2ms, check.says("c"));
         check.at(check.now() + 3ms, [&] { check.loop().performAfterDelay(-1ns, check.says("d")); });
       });
       check.runFor(20ms);
       check.expectSaid("bacd");
     }},

    {"a loop that goes releases what waits, and its timers do nothing then",
     [](LoopCheck& check) {
       auto owned = std::make_shared<int>();
       const std::weak_ptr<int> watched = owned;
       check.at(check.now() + 1h, [owned] {});
       check.loop().performAfterDelay(1h, [owned] {});
       check.loop().dispatchAsync([owned] {});
       owned.reset();
       for (const auto& timer : check.dropLoop()) {
         timer->setFireDate(0ns);
         timer->invalidate();
       }
       expect(watched.expired(), "an action was kept");
     }},
};

}  // namespace

Report checkRunLoop(const std::function<RunLoopUnderTest()>& make) {
  return checkAll<LoopCheck>("RunLoop", kRunLoopContracts, make);
}

}  // namespace orn::contract
