#pragma once

#include <memory>
#include <string>

#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>

#include "hearing-app/Profile.h"

namespace orn {

namespace service {
class HearingService;
}

/// Everything that the application needs, on any machine: a service of its own on the loopback interface, whose
/// database goes with this object, and a simulated machine that knows it. Main thread.
class SimulatedHost {
 public:
  /// In real time on the given loop, or without one in virtual time, where each request waits for its reply. Throws
  /// std::runtime_error if the service can't be had.
  explicit SimulatedHost(std::shared_ptr<RunLoop> realTime = {});
  ~SimulatedHost();
  SimulatedHost(const SimulatedHost&) = delete;
  SimulatedHost& operator=(const SimulatedHost&) = delete;

  Platform platform() const;
  SimulatedPlatform& machine() { return machine_; }
  service::HearingService& service() { return *service_; }

  void plugAudiometer();

 private:
  struct Folder;
  std::unique_ptr<Folder> folder_;
  std::unique_ptr<service::HearingService> service_;
  SimulatedPlatform machine_;
  std::shared_ptr<URLSession> urlSession_;
};

Profile sampleProfile();

}  // namespace orn
