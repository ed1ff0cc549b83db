#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <system_error>

#include <ORNHearingTestSDK/platform/AudioPlayer.h>
#include <ORNHearingTestSDK/platform/AudioQueue.h>

namespace orn {

/// Makes the queues and players of a platform. Main thread. What it makes may outlive it, and is silent then.
///
/// All of them sound on one device, together, and add up. When that goes away they fall silent, and their start() and
/// play() fail until it is back or another one is chosen.
class ORN_EXPORT AudioOutput {
 public:
  virtual ~AudioOutput() = default;

  /// From now on everything sounds on the device that is the current route at this moment; std::errc::no_such_device
  /// if there is none. Before the first call the first sound chooses it. An output of only one device has no choice.
  virtual std::error_code useCurrentDevice() { return {}; }

  /// A queue for 16-bit signed mono PCM at 48000 Hz; null for another format.
  virtual std::unique_ptr<AudioQueue> newOutputQueue(const AudioStreamBasicDescription& format,
                                                     AudioQueue::OutputCallback callback) = 0;

  /// A player of a WAV file (16-bit mono PCM at 48000 Hz); null if it can't be read or is no such file.
  virtual std::unique_ptr<AudioPlayer> playerWithContentsOfFile(const std::string& path) = 0;

  /// The same for a WAV file in memory, whose bytes are copied.
  virtual std::unique_ptr<AudioPlayer> playerWithData(std::span<const std::uint8_t> wavFile) = 0;
};

}  // namespace orn
