#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <system_error>

#include <ORNHearingTestSDK/platform/AudioPlayer.h>
#include <ORNHearingTestSDK/platform/AudioQueue.h>

namespace orn {

/// Makes the queues and players of a platform; a backend derives from ToneOutput. Main thread. What it makes may
/// outlive it, and is silent then.
///
/// All of them sound on one device, together, and add up. When that goes away they fall silent, and their start() and
/// play() fail until it is back or another one is chosen.
class ORN_EXPORT AudioOutput {
 public:
  virtual ~AudioOutput() = default;

  /// From now on everything sounds on the device that is the current route at this moment; std::errc::no_such_device
  /// if there is none. Before the first call the first sound chooses it. An output of only one device has no choice.
  virtual std::error_code useCurrentDevice() { return {}; }

  /// Whether what is told to sound now is heard: std::errc::no_such_device where the device is not there, timed_out
  /// where the sound server does not answer or has stopped taking samples, device_or_resource_busy where it holds sound
  /// back, in a call perhaps or with the device suspended. Does not wait. An output that can't lose its sound has no
  /// error.
  virtual std::error_code status() { return {}; }

  /// How many times so far sound was lost that should have been heard: the device or its server was lost, stalled or
  /// held it back, a queue that was playing ran dry, samples came too late. Pausing, stopping and the end of a
  /// recording are none of these, and neither is a start that failed. The number before and after a tone is the same if
  /// all of it was played; what is missing right now counts already.
  virtual std::uint64_t lapses() { return 0; }

  /// A queue for 16-bit signed mono PCM at 48000 Hz; null for another format.
  virtual std::unique_ptr<AudioQueue> newOutputQueue(const AudioStreamBasicDescription& format,
                                                     AudioQueue::OutputCallback callback) = 0;

  /// A player of a WAV file (16-bit mono PCM at 48000 Hz); null if it can't be read or is not such a file. Reads it,
  /// and asks playerWithData().
  virtual std::unique_ptr<AudioPlayer> playerWithContentsOfFile(const std::string& path);

  /// The same for a WAV file in memory, whose bytes are copied.
  virtual std::unique_ptr<AudioPlayer> playerWithData(std::span<const std::uint8_t> wavFile) = 0;
};

}  // namespace orn
