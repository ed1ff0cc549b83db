#pragma once

#include <memory>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// Tells those who depend on the platform in force that it is going. Main thread.
class ORN_EXPORT PlatformBound {
 public:
  PlatformBound();
  virtual ~PlatformBound();
  PlatformBound(const PlatformBound&) = delete;
  PlatformBound& operator=(const PlatformBound&) = delete;

  virtual void release() = 0;
};

/// Holds a single instance that is made at its first use and lives as long as the platform that it was made on.
template <class T>
class PerPlatform final : public PlatformBound {
 public:
  template <class Make>
  const std::shared_ptr<T>& get(Make make) {
    if (!instance_) instance_ = make();
    return instance_;
  }

  void release() override { instance_.reset(); }

 private:
  std::shared_ptr<T> instance_;
};

}  // namespace orn
