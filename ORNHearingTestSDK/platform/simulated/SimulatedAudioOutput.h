#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <vector>

#include <ORNHearingTestSDK/platform/RunLoop.h>
#include <ORNHearingTestSDK/platform/ToneOutput.h>

namespace orn {

class SimulatedMixer;

/// A stereo output at 48000 Hz that plays as its loop's time passes and needs no sound device. All queues and players
/// are mixed into it: a queue's mono stream goes to both channels as it stands, a player's samples by pan and gain. Its
/// samples can be listened to and kept, silence included. Main thread, callbacks of queues and listeners too.
class ORN_EXPORT SimulatedAudioOutput final : public ToneOutput {
 public:
  /// Called with interleaved left and right samples, at most 3840 frames at a time, without a gap from the first frame
  /// on. The number is the index of the first of these frames since the output was made.
  using Listener = std::function<void(std::int64_t firstFrame, std::span<const std::int16_t> samples)>;

  explicit SimulatedAudioOutput(std::shared_ptr<RunLoop> runLoop);  ///< Plays as that loop's time passes.
  ~SimulatedAudioOutput() override;

  /// Adds a listener for the output's life.
  void addListener(Listener listener);

  /// Keeps every sample from now on.
  void keepSamples();
  const std::vector<std::int16_t>& keptSamples() const;  ///< Since keepSamples(), interleaved.

  std::error_code useCurrentDevice() override;
  std::error_code status() override;
  std::uint64_t lapses() override;

  /// Takes the device away, or brings it back; it is there at first. Observers of a simulated session are not told.
  void setDevicePresent(bool isPresent);

  /// Holds all sound back, as a server does that is in a call or stalled, or lets it go on. Meanwhile time passes in
  /// silence, and nothing is lost of what is to sound later; a play() or start() gives device_or_resource_busy and is
  /// heard once the sound goes on. It counts as one lapse if something was to be heard meanwhile.
  void setHeldBack(bool isHeldBack);

 private:
  std::unique_ptr<AudioQueue> newQueue(AudioQueue::OutputCallback callback) override;
  std::unique_ptr<AudioPlayer> newPlayer(std::vector<std::int16_t> samples) override;

  std::shared_ptr<SimulatedMixer> mixer_;
  std::shared_ptr<Timer> deviceClock_;
  std::shared_ptr<std::vector<std::int16_t>> kept_ = std::make_shared<std::vector<std::int16_t>>();
};

}  // namespace orn
