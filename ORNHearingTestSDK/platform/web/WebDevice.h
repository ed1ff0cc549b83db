#pragma once

#include <string>

#include <ORNHearingTestSDK/platform/Device.h>

namespace orn {

/// What the browser says of itself; the application's identifier is the page's host.
class WebDevice final : public Device {
 public:
  explicit WebDevice(std::string applicationVersion);

  std::string machine() const override { return machine_; }
  std::string systemVersion() const override { return systemVersion_; }
  std::string applicationIdentifier() const override { return applicationIdentifier_; }
  std::string applicationVersion() const override { return applicationVersion_; }

 private:
  std::string machine_, systemVersion_, applicationIdentifier_, applicationVersion_;
};

}  // namespace orn
