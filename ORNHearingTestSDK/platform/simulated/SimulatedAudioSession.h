#pragma once

#include <memory>
#include <optional>
#include <string>

#include <ORNHearingTestSDK/platform/AudioSession.h>

namespace orn {

class AudioSessionObservers;

/// A session whose route, volume and notices a script sets. Main thread; observers are called from within the scripting
/// operations.
class ORN_EXPORT SimulatedAudioSession final : public AudioSession {
 public:
  static constexpr std::int32_t kNewDeviceAvailable = 1;  ///< The reason when a device has come.

  SimulatedAudioSession();
  ~SimulatedAudioSession() override;

  /// Puts a route in force and tells the observers why.
  void setRoute(AudioRouteDescription route, std::optional<std::string> text, std::int32_t reason);

  /// An audiometer of that name at that address, such as "AA:BB:CC:DD:EE:FF", becomes the output.
  void plugAudiometer(const std::string& name, const std::string& address);
  void plugEarphones();  ///< Plugs wired earphones in.

  /// Goes back to the loudspeaker; the observers are told that the old device is unavailable.
  void unplug();

  /// Type 1: an interruption begins; 0: it has ended.
  void interrupt(std::int32_t type);

  /// What setActive() and setCategory() were asked for last; nothing before the first time.
  std::optional<bool> active() const { return active_; }
  std::optional<AudioSessionCategory> category() const { return category_; }  ///< As it was set last.
  std::uint32_t categoryOptions() const { return options_; }                  ///< As they were set last.
  int timesConfigured() const { return timesConfigured_; }                    ///< How often setCategory() was called.

  std::error_code setActive(bool active) override;
  std::error_code setCategory(AudioSessionCategory category, std::uint32_t options) override;
  std::optional<std::string> routeText() const override { return text_; }
  AudioRouteDescription currentRoute() const override { return route_; }
  float outputVolume() const override { return volume_; }
  std::error_code setOutputVolume(float volume) override;
  void addObserver(std::weak_ptr<const AudioSessionObserver> observer) override;

 private:
  AudioRouteDescription route_{{}, {{"Speaker", "Built-In Speaker"}}};
  std::optional<std::string> text_ = "Speaker";
  float volume_ = 0.5F;
  std::optional<bool> active_;
  std::optional<AudioSessionCategory> category_;
  std::uint32_t options_ = 0;
  int timesConfigured_ = 0;
  std::unique_ptr<AudioSessionObservers> observers_;
};

}  // namespace orn
