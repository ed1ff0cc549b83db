#include <ORNHearingTestSDK/platform/simulated/SimulatedRunLoop.h>

#include <algorithm>

namespace orn {

using std::chrono::nanoseconds;
using std::chrono::system_clock;

SimulatedRunLoop::SimulatedRunLoop(system_clock::time_point start) : start_(start) {}

void SimulatedRunLoop::runFor(nanoseconds span) {
  runUntil([] { return false; }, span);
}

bool SimulatedRunLoop::runUntil(const std::function<bool()>& condition, nanoseconds span) {
  const nanoseconds limit = span > distantFuture - now() ? distantFuture : now() + span;
  while (!condition()) {
    if (step(limit)) continue;
    now_ = std::max(now(), limit);
    return false;
  }
  return true;
}

bool SimulatedRunLoop::step(nanoseconds limit) {
  if (makeDispatchedCall()) return true;
  const auto due = nextDue();
  if (!due || *due > limit) return false;
  now_ = std::max(now(), *due);
  return makeDueCall();
}

void SimulatedRunLoop::holdUp(nanoseconds span) {
  now_ = now() + std::clamp(span, nanoseconds::zero(), distantFuture - now());
}

void SimulatedRunLoop::setDate(system_clock::time_point date) {
  start_ = date - std::chrono::duration_cast<system_clock::duration>(now());
}

nanoseconds SimulatedRunLoop::now() const { return now_; }

system_clock::time_point SimulatedRunLoop::date() const {
  return start_.load() + std::chrono::duration_cast<system_clock::duration>(now());
}

}  // namespace orn
