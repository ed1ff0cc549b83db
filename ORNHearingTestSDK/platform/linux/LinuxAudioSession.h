#pragma once

#include <memory>

#include <ORNHearingTestSDK/platform/AudioSession.h>
#include <ORNHearingTestSDK/platform/AudioSessionObservers.h>
#include <ORNHearingTestSDK/platform/RunLoop.h>
#include <ORNHearingTestSDK/platform/linux/OutputVolumes.h>
#include <ORNHearingTestSDK/platform/linux/SoundServer.h>

namespace orn {

/// The sound of the user's session as its sound server reports it: the route is the default output. The server is not
/// asked before the first question or observer. Notices of interruptions come when the server wants the sound to make
/// way, such as for a call; the streams are silent until it allows them to go on.
class LinuxAudioSession final : public AudioSession {
 public:
  LinuxAudioSession(std::shared_ptr<SoundServer> server, std::weak_ptr<RunLoop> runLoop);
  ~LinuxAudioSession() override;

  /// The server knows neither activation nor categories: whatever plays is active. For the volume, a new use begins.
  std::error_code setActive(bool) override {
    volumes_.begin();
    return {};
  }
  std::error_code setCategory(AudioSessionCategory, std::uint32_t) override { return {}; }

  std::optional<std::string> routeText() const override;
  AudioRouteDescription currentRoute() const override;
  float outputVolume() const override;
  std::error_code setOutputVolume(float volume) override { return volumes_.set(volume); }

  /// Restores each channel exactly, muting and amplification included. An output that has gone gets its own volume back
  /// as soon as it reappears, and no other one is touched in its place.
  std::error_code restoreOutputVolume(float volume) override { return volumes_.putBack(volume); }
  void addObserver(std::weak_ptr<const AudioSessionObserver> observer) override;

 private:
  void tellOnMainThread(AudioSessionObservers::Notice notice, std::int32_t value);

  std::shared_ptr<SoundServer> server_;
  std::weak_ptr<RunLoop> runLoop_;
  std::shared_ptr<AudioSessionObservers> observers_ = std::make_shared<AudioSessionObservers>();
  OutputVolumes volumes_;
  SoundServerState atLastRouteChange_;  // guarded by the connection's lock
  std::list<SoundServer::StateObserver>::iterator stateObserver_;
};

}  // namespace orn
