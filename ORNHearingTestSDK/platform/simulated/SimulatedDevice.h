#pragma once

#include <string>

#include <ORNHearingTestSDK/platform/Device.h>

namespace orn {

/// Given values; set them before anything reads them.
struct ORN_EXPORT SimulatedDevice final : Device {
  std::string givenMachine = "Simulated1,1";                  ///< What machine() answers.
  std::string givenSystemVersion = "1.0";                     ///< What systemVersion() answers.
  std::string givenApplicationIdentifier = "simulated.host";  ///< What applicationIdentifier() answers.
  std::string givenApplicationVersion = "1";                  ///< What applicationVersion() answers.

  std::string machine() const override { return givenMachine; }
  std::string systemVersion() const override { return givenSystemVersion; }
  std::string applicationIdentifier() const override { return givenApplicationIdentifier; }
  std::string applicationVersion() const override { return givenApplicationVersion; }
};

}  // namespace orn
