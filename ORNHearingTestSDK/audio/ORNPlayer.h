#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <ORNHearingTestSDK/common/ToneFrequencies.h>
#include <ORNHearingTestSDK/platform/AudioPlayer.h>

namespace orn {

/// Levels in dB up to this one take the recording that is 40 dB quieter.
inline constexpr std::int64_t kHighestQuietLevel = 40;

/// The tone bank of the earphone path: fourteen looping recordings, a quiet and a loud one for each frequency, the
/// quiet one 40 dB below the loud one. A player is made at its first use, kept, and shared by all levels of its class.
/// It goes on from where it was at each play(), and keeps pan and volume, so set both before. Main thread.
class ORN_EXPORT ORNPlayer {
 public:
  using TonePlayer = std::shared_ptr<AudioPlayer>;  ///< A player, shared by all who ask for that tone.

  /// The one tone bank of the platform in force.
  static std::shared_ptr<ORNPlayer> shareInstance();

  ORNPlayer(const ORNPlayer&) = delete;
  ORNPlayer& operator=(const ORNPlayer&) = delete;

  /// Kept and without effect.
  bool isShowLog() const { return isShowLog_; }
  void setLogEnable(bool enabled) { isShowLog_ = enabled; }  ///< Changes nothing: the library writes no log.

  // For each frequency: the recordings for levels up to 40 dB and above; null if a recording can't be opened, and the
  // next call tries again. Their setters. And the one that a level in dB takes.
#define ORN_TONE_PLAYERS(HZ, INDEX)                                                              \
  TonePlayer playerOf##HZ##Hz_40Down() { return player(INDEX, kDown); }                          \
  TonePlayer playerOf##HZ##Hz_40Up() { return player(INDEX, kUp); }                              \
  void setPlayerOf##HZ##Hz_40Down(TonePlayer tone) { players_[INDEX][kDown] = std::move(tone); } \
  void setPlayerOf##HZ##Hz_40Up(TonePlayer tone) { players_[INDEX][kUp] = std::move(tone); }     \
  TonePlayer playerOf##HZ##HzWithDB(std::int64_t db) { return player(INDEX, db <= kHighestQuietLevel ? kDown : kUp); }
  ORN_TONE_PLAYERS(125, 0)
  ORN_TONE_PLAYERS(250, 1)
  ORN_TONE_PLAYERS(500, 2)
  ORN_TONE_PLAYERS(1000, 3)
  ORN_TONE_PLAYERS(2000, 4)
  ORN_TONE_PLAYERS(4000, 5)
  ORN_TONE_PLAYERS(8000, 6)
#undef ORN_TONE_PLAYERS

  /// The player for a frequency in Hz and a level in dB, panned to one side; any frequency but the seven takes the
  /// 1000 Hz one.
  TonePlayer playerWithHzValue(std::uint64_t hz, std::int64_t db, bool isleft);
  TonePlayer playerWithHz(std::int32_t hz, std::int64_t db, bool isleft);

  /// Forwards to ORNPlayerByArray, as if the tone before had been silent, which makes no difference to the sound.
  TonePlayer playerWithShz2(std::string_view hz, double lastzhenfu, double zhenfu, bool isleft);
  TonePlayer playerStopWithShz2(std::string_view hz, double lastzhenfu);  ///< Forwards to ORNPlayerByArray.

  /// Path of a file of the tone bundle, or nothing if there is no such bundle.
  std::optional<std::string> pathForResource(const std::string& name, const std::string& type) const;

  /// A looping, prepared player of a WAV file, or null if it can't be opened.
  TonePlayer playerWithUrl(const std::string& path) const;

 private:
  static constexpr std::size_t kDown = 0, kUp = 1;

  ORNPlayer() = default;  // there is one, and no second can be made

  TonePlayer player(std::size_t frequency, std::size_t recording);

  bool isShowLog_ = false;
  std::array<std::array<TonePlayer, 2>, kToneFrequencies.size()> players_;
};

}  // namespace orn
