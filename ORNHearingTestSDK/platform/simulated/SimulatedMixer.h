#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <memory>
#include <span>
#include <system_error>
#include <vector>

#include <ORNHearingTestSDK/platform/RunLoop.h>
#include <ORNHearingTestSDK/platform/SampleFormat.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedAudioOutput.h>

namespace orn {

/// Adds up what the sources play, up to the loop's present time. A source brings it up to date before it changes
/// anything that can be heard, so that a change is heard at its own sample. Main thread.
class SimulatedMixer {
 public:
  static constexpr std::size_t kMostFrames = kBlockSamples;

  /// Sums of what sounds in each channel, frame by frame.
  struct Sums {
    std::span<std::int32_t> left, right;
    std::size_t frames() const { return left.size(); }
    Sums after(std::size_t frames) const { return {left.subspan(frames), right.subspan(frames)}; }
  };

  /// Something that sounds.
  class Source {
   public:
    virtual ~Source() = default;
    /// Adds the next frames of this source.
    virtual void mixInto(Sums sums) = 0;
    /// The device has gone: the source is silent until it is started again.
    virtual void fallSilent() = 0;
    /// It is started and has something to play.
    virtual bool isSounding() const = 0;
  };

  /// The loop is not kept alive: the calls that it holds may hold players, and through them this mixer.
  explicit SimulatedMixer(std::weak_ptr<RunLoop> runLoop) : runLoop_(std::move(runLoop)) {}

  void addSource(Source* source);
  void removeSource(Source* source);
  void addListener(SimulatedAudioOutput::Listener listener) { listeners_.push_back(std::move(listener)); }

  /// The output is being destroyed, and its device with it: nobody listens any more.
  void close();

  /// Takes the device away, which silences every source, or brings it back.
  void setDevicePresent(bool isPresent);
  std::error_code device() const;

  /// Stops all sources where they are, or lets them go on.
  void setHeldBack(bool isHeldBack);

  /// Whether there is a device, and whether what should sound is heard.
  std::error_code status() const;

  /// A source that had nothing to play now has something.
  void soundIsDue();

  void addLapse() { ++lapses_; }
  std::uint64_t lapses() const { return lapses_; }

  /// Renders up to the present. Does nothing when called from within a listener or a source.
  void catchUp();

 private:
  void render(std::size_t frames);
  bool isSounding() const;

  std::weak_ptr<RunLoop> runLoop_;
  std::vector<Source*> sources_;
  std::deque<SimulatedAudioOutput::Listener> listeners_;  // stay in place while a listener adds another
  std::int64_t frame_ = 0;
  bool rendering_ = false;
  bool isDevicePresent_ = true;
  bool isHeldBack_ = false;
  bool hasHeldSoundBack_ = false;
  std::uint64_t lapses_ = 0;
  std::array<std::int32_t, kMostFrames> left_{}, right_{};
  std::array<std::int16_t, 2 * kMostFrames> samples_{};
};

}  // namespace orn
