#pragma once

#include <atomic>
#include <functional>

#include <ORNHearingTestSDK/platform/QueuedRunLoop.h>

namespace orn {

/// A run loop in virtual time: it jumps from one due call to the next, and time stands still while a call runs. The
/// same calls come in the same order every time. Its operations are for the main thread, except dispatchAsync(), now()
/// and date(), which are for any.
class ORN_EXPORT SimulatedRunLoop final : public QueuedRunLoop {
 public:
  /// The wall clock starts at the given date.
  explicit SimulatedRunLoop(std::chrono::system_clock::time_point start = kDefaultStart);

  /// Makes every call that is due within the span, then stands at its end. May be called from within a call, which has
  /// then taken that long.
  void runFor(std::chrono::nanoseconds span);

  /// Runs until the condition holds, which is asked after each call; true if it came to hold within the span.
  bool runUntil(const std::function<bool()>& condition, std::chrono::nanoseconds span);

  /// Time advances by the span without a call, as while a process is suspended: what falls due is called late. May be
  /// called from within a call, which has then taken that long.
  void holdUp(std::chrono::nanoseconds span);

  /// Steps the wall clock; the loop's own time and its timers are untouched by it.
  void setDate(std::chrono::system_clock::time_point date);

  std::chrono::nanoseconds now() const override;
  std::chrono::system_clock::time_point date() const override;

 private:
  static constexpr std::chrono::system_clock::time_point kDefaultStart{std::chrono::seconds{1'767'225'600}};  // 2026

  /// Makes one call that is due by the limit, moving time to when it is due; false if there is none.
  bool step(std::chrono::nanoseconds limit);

  std::atomic<std::chrono::nanoseconds> now_{std::chrono::nanoseconds::zero()};
  std::atomic<std::chrono::system_clock::time_point> start_;
};

}  // namespace orn
