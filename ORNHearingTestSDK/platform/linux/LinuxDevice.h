#pragma once

#include <string>

#include <ORNHearingTestSDK/platform/Device.h>

namespace orn {

/// What the running system says of itself, read once when this object is made; and what the program says of itself. Any
/// thread.
class ORN_EXPORT LinuxDevice final : public Device {
 public:
  /// The root is the folder below which the system's files stand.
  LinuxDevice(std::string applicationIdentifier, std::string applicationVersion, const std::string& root = "/");
  ~LinuxDevice() override;

  /// The product name of DMI, or the model of the device tree (phones and boards), or the processor's architecture
  /// where neither says anything; one line.
  std::string machine() const override;

  /// VERSION_ID of os-release, such as "12", or its PRETTY_NAME on systems that have no versions.
  std::string systemVersion() const override;
  std::string applicationIdentifier() const override;
  std::string applicationVersion() const override;

 private:
  const std::string applicationIdentifier_;
  const std::string applicationVersion_;
  const std::string machine_;
  const std::string systemVersion_;
};

}  // namespace orn
