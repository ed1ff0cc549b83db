#pragma once

#include <memory>

#include <ORNHearingTestSDK/platform/AudioSession.h>
#include <ORNHearingTestSDK/platform/AudioSessionObservers.h>
#include <ORNHearingTestSDK/platform/web/WebSound.h>

namespace orn {

/// The page's output, of which a browser tells only whether it sounds. Whatever stops the sound is the loss of the old
/// device: a suspension or interruption, a hidden or frozen page, a clock that stands still, a change of output. What
/// is connected stays unknown, and the volume can be neither read nor set.
class WebAudioSession final : public AudioSession {
 public:
  static constexpr std::int32_t kNewDeviceAvailable = 1;

  WebAudioSession();

  std::error_code setActive(bool active) override;
  std::error_code setCategory(AudioSessionCategory category, std::uint32_t options) override;
  std::optional<std::string> routeText() const override;
  AudioRouteDescription currentRoute() const override;
  /// 1, the gain of the browser alone.
  float outputVolume() const override { return 1; }
  /// std::errc::not_supported; no_such_device without an output.
  std::error_code setOutputVolume(float volume) override;
  void addObserver(std::weak_ptr<const AudioSessionObserver> observer) override;

 private:
  AudioSessionObservers observers_;
  std::shared_ptr<const WebSoundObserver> soundObserver_;
};

}  // namespace orn
