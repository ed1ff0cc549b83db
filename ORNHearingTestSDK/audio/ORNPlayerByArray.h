#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include <ORNHearingTestSDK/platform/AudioPlayer.h>

namespace orn {

/// Looping players of computed tones: a cycle of a sine table repeated as a WAV file in memory, made anew at each call.
/// Main thread. Every operation gives null if no player can be made.
class ORN_EXPORT ORNPlayerByArray {
 public:
  ORNPlayerByArray() = delete;

  /// `times` repetitions of one cycle of `dataSize` bytes at amplitude `zhenfu`, centred, looping, prepared.
  /// `lastzhenfu` does not change the sound.
  static std::shared_ptr<AudioPlayer> playerWithOneData(const std::uint8_t* oneData, std::int64_t dataSize,
                                                        double lastzhenfu, double zhenfu, std::int32_t times);

  /// Two seconds of one of the seven frequencies at amplitude `zhenfu`; null for another frequency. `isleft` is not
  /// used: the player comes out centred. A frequency text counts by its leading integer.
  static std::shared_ptr<AudioPlayer> playerWithHz(std::int32_t hz, double lastzhenfu, double zhenfu, bool isleft);
  /// By a frequency text.
  static std::shared_ptr<AudioPlayer> playerWithHz(std::string_view hz, double lastzhenfu, double zhenfu, bool isleft);

  /// Silence on purpose: cycles at amplitude 0, one for each 0.0001 of `lastzhenfu`; null for another frequency.
  static std::shared_ptr<AudioPlayer> playerStopWithHz(std::int32_t hz, double lastzhenfu);
  /// By a frequency text.
  static std::shared_ptr<AudioPlayer> playerStopWithHz(std::string_view hz, double lastzhenfu);
};

}  // namespace orn
