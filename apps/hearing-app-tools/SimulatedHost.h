#pragma once

#include <memory>

#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>

#include "hearing-app/Profile.h"

namespace orn {

namespace service {
class HearingService;
}

/// Everything that the application needs, on any machine: a simulated machine, and a service of its own on the loopback
/// interface, whose database is deleted with this object. Main thread.
class SimulatedHost {
 public:
  /// In real time on the given loop; without a loop in virtual time, where each request waits for its reply. Throws
  /// std::runtime_error if there is no place for the database.
  explicit SimulatedHost(std::shared_ptr<RunLoop> realTime = {});
  ~SimulatedHost();
  SimulatedHost(const SimulatedHost&) = delete;
  SimulatedHost& operator=(const SimulatedHost&) = delete;

  /// Starts the service and puts its address into the machine's settings. Throws std::runtime_error if it can't start.
  service::HearingService& startService();

  Platform platform() const;
  SimulatedPlatform& machine() { return machine_; }

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
