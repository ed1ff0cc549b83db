#pragma once

#include <chrono>
#include <memory>

#include <ORNHearingTestSDK/platform/RunLoop.h>

namespace orn {

/// Notices that the main thread was held up, by whatever it was, since nobody can answer a tone meanwhile: a timer that
/// beats ten times a second, and every beat that is missing. Main thread.
class HoldUpWatch {
 public:
  HoldUpWatch() = default;
  ~HoldUpWatch();
  HoldUpWatch(const HoldUpWatch&) = delete;
  HoldUpWatch& operator=(const HoldUpWatch&) = delete;

  /// Harmless while it beats.
  void begin();
  void end();  ///< Watches no longer.

  /// For how long the thread was held up so far, in all, the present hold-up included.
  std::chrono::nanoseconds total() const;

 private:
  struct Beats {
    std::chrono::nanoseconds last{0};
    std::chrono::nanoseconds missed{0};
  };

  std::shared_ptr<Beats> beats_ = std::make_shared<Beats>();
  std::shared_ptr<Timer> timer_;
};

}  // namespace orn
