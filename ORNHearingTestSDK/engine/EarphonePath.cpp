#include <ORNHearingTestSDK/engine/EarphonePath.h>

#include <ORNHearingTestSDK/audio/ORNPlayer.h>
#include <ORNHearingTestSDK/calibration/LevelMapping.h>
#include <ORNHearingTestSDK/common/NumericText.h>

namespace orn {

void EarphonePath::startEar(const std::shared_ptr<PlayerGetDataSouce>& /*session*/) {}

SoundPath::Preparation EarphonePath::prepare(ORNHearingTestItem& item, bool isLeft) {
  const std::int32_t hz = item.frequency();
  const std::int32_t level = intValue(item.dbValue());
  const auto gain = earphoneGain((isLeft ? records_.leftVolume() : records_.rightVolue()).get(), hz, level);
  if (!gain) return {ToneMissingReason::Calibration};
  // The player is shared by many items, so pan and gain are set for each tone; the side asked for here is overruled.
  item.setPlayer(ORNPlayer::shareInstance()->playerWithHzValue(static_cast<std::uint64_t>(hz), level, false));
  if (!item.player()) return {ToneMissingReason::Recording};
  return {{}, static_cast<float>(*gain)};
}

bool EarphonePath::play(ORNHearingTestItem& item, float volume) {
  AudioPlayer& player = *item.player();
  player.setPan(item.pan());
  player.setVolume(volume);
  return !player.play();
}

void EarphonePath::leave(ORNHearingTestItem& item) { item.stop(); }

void EarphonePath::silence(ORNHearingTestItem& item) { item.stop(); }

void EarphonePath::pause(const PlayerGetDataSouce& /*session*/, ORNHearingTestItem* item) {
  if (item) item->stop();
}

/// A stopped tone is not resumed: that is meant, see docs/BEHAVIOURS.md.
void EarphonePath::resume() {}

}  // namespace orn
