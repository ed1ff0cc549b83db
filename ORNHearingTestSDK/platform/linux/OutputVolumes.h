#pragma once

#include <list>
#include <system_error>
#include <vector>

#include <ORNHearingTestSDK/platform/linux/DrivenVolumes.h>
#include <ORNHearingTestSDK/platform/linux/SoundServer.h>

namespace orn {

/// Drives the volume of outputs, and puts back exactly what an output had before it was first driven. DrivenVolumes
/// decides what is to be set. Main thread.
class OutputVolumes {
 public:
  explicit OutputVolumes(SoundServer& server);
  ~OutputVolumes();
  OutputVolumes(const OutputVolumes&) = delete;
  OutputVolumes& operator=(const OutputVolumes&) = delete;

  void begin();
  std::error_code set(float volume) { return make(&DrivenVolumes::drive, volume); }
  std::error_code putBack(float volume) { return make(&DrivenVolumes::putBack, volume); }

 private:
  using Change = std::vector<DrivenVolumes::Setting> (DrivenVolumes::*)(const SoundServerState& now, float volume);

  std::error_code make(Change change, float volume);

  SoundServer& server_;
  DrivenVolumes volumes_;  // guarded by the connection's lock
  std::list<SoundServer::StateObserver>::iterator observer_;
};

}  // namespace orn
