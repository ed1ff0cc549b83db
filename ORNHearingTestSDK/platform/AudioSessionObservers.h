#pragma once

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include <ORNHearingTestSDK/platform/AudioSession.h>

namespace orn {

/// The observers of an audio session, as long as somebody keeps them alive. Main thread.
class AudioSessionObservers {
 public:
  using Notice = std::function<void(std::int32_t)> AudioSessionObserver::*;  ///< A member of an observer.

  /// Held weakly.
  void add(std::weak_ptr<const AudioSessionObserver> observer) {
    std::erase_if(observers_, [](const auto& one) { return one.expired(); });
    observers_.push_back(std::move(observer));
  }

  /// A copy is gone through, since an observer may add observers.
  void tell(Notice notice, std::int32_t value) const {
    for (const auto& one : std::vector(observers_)) {
      const auto observer = one.lock();
      if (observer && (*observer).*notice) ((*observer).*notice)(value);
    }
  }

 private:
  std::vector<std::weak_ptr<const AudioSessionObserver>> observers_;
};

}  // namespace orn
