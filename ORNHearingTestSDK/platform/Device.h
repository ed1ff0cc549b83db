#pragma once

#include <string>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// What this machine and this application are. Every text is one line, stays the same, and may be empty. Any thread.
class ORN_EXPORT Device {
 public:
  virtual ~Device() = default;

  /// The hardware model, the system value "hw.machine".
  virtual std::string machine() const = 0;
  virtual std::string systemVersion() const = 0;          ///< Such as "12.5".
  virtual std::string applicationIdentifier() const = 0;  ///< Such as "org.example.diary".
  virtual std::string applicationVersion() const = 0;     ///< Such as "1.0".
};

}  // namespace orn
