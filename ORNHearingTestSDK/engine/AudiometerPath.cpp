#include <ORNHearingTestSDK/engine/AudiometerPath.h>

#include <ORNHearingTestSDK/calibration/LevelMapping.h>
#include <ORNHearingTestSDK/engine/LevelScale.h>

namespace orn {

double AudiometerPath::amplitude(std::int32_t db, const std::string& hz) const {
  return audiometerAmplitude(records_.ab().get(), records_.aabb().get(), records_.xxyy().get(), db, hz);
}

void AudiometerPath::startEar(const std::shared_ptr<PlayerGetDataSouce>& session) {
  const auto player = Player::shareInstance();
  player->setDataSouce(session);
  player->start();
}

SoundPath::Preparation AudiometerPath::prepare(ORNHearingTestItem& item, bool /*isLeft*/) {
  if (!hasCalibrationValue(records_.ab().get(), item.frequency())) return {ToneMissingReason::Calibration};
  // The level comes from the row and not from dbValue; on the retest scale that is 20 dB more, and is meant, see
  // docs/BEHAVIOURS.md.
  const auto level = kGridScale.levelOf(static_cast<int>(item.point().y));
  const auto volume = static_cast<float>(amplitude(level, item.hzValue()));
  if (!(volume > 0)) return {ToneMissingReason::Calibration};
  item.setZhenfu(volume);
  if (!item.hasTable()) return {ToneMissingReason::Recording};
  return {{}, volume};
}

bool AudiometerPath::play(ORNHearingTestItem& /*item*/, float /*volume*/) {
  Player::shareInstance()->play();
  return true;  // the player does not tell of a failure; the output does
}

void AudiometerPath::leave(ORNHearingTestItem& /*item*/) {}

void AudiometerPath::silence(ORNHearingTestItem& item) {
  item.setNeedStop(true);  // never set back: the item stays silent for the rest of the session
}

void AudiometerPath::pause(const PlayerGetDataSouce& session, ORNHearingTestItem* /*item*/) {
  const auto player = Player::shareInstance();
  // The stream of another session is not this one's to stop.
  const auto source = player->dataSouce().lock();
  if (!source || source.get() == &session) player->pause();
}

void AudiometerPath::resume() { Player::shareInstance()->play(); }

}  // namespace orn
