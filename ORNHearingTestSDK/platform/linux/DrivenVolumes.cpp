#include <ORNHearingTestSDK/platform/linux/DrivenVolumes.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include <ORNHearingTestSDK/platform/StereoGain.h>

namespace orn {
namespace {

using Loudness = DrivenVolumes::Loudness;

Loudness loudnessOf(const SoundOutput& output) { return {output.volume, output.isMuted}; }

Loudness levelled(Loudness loudness, float volume) {
  const float level = volumeInRange(volume);
  std::fill_n(loudness.volume.values, loudness.volume.channels,
              static_cast<pa_volume_t>(std::lround(level * PA_VOLUME_NORM)));
  loudness.isMuted = false;
  return loudness;
}

bool isPresent(const SoundServerState& now, const SoundOutputKey& key) {
  return std::any_of(now.outputs.begin(), now.outputs.end(), [&](const auto& output) { return output.key == key; });
}

}  // namespace

bool DrivenVolumes::Loudness::hasVolumeOf(const Loudness& other) const {
  return std::equal(volume.values, volume.values + volume.channels, other.volume.values,
                    other.volume.values + other.volume.channels);
}

/// A server sets volume and muting one after the other.
bool DrivenVolumes::Original::isServers(const Loudness& now) const {
  return now.hasVolumeOf(driven) || now.hasVolumeOf(found) || now.hasVolumeOf(users);
}

std::vector<DrivenVolumes::Setting> DrivenVolumes::drive(const SoundServerState& now, float volume) {
  const bool isNew = std::exchange(isNew_, false);
  const SoundOutput* current = now.current();
  if (!current) return {};
  const Loudness loudness = loudnessOf(*current);
  const auto [found, isFirst] = originals_.try_emplace(current->key);
  Original& original = found->second;
  // A volume still at full was left so by a test that did not put it back.
  const bool isLeft = original.isServers(loudness) && original.driven == levelled(loudness, 1);
  if (isFirst || (isNew && !isLeft)) original.users = loudness;
  original.driven = levelled(loudness, volume);
  original.isDue = false;
  original.heldUntil.reset();
  return {{current->key, original.driven}};
}

std::vector<DrivenVolumes::Setting> DrivenVolumes::putBack(const SoundServerState& now, float volume) {
  std::vector<Setting> settings;
  for (auto& [key, original] : originals_) {
    if (std::exchange(original.isDue, true)) continue;
    if (isPresent(now, key)) settings.push_back({key, original.users});
  }
  const SoundOutput* current = now.current();
  if (std::exchange(isNew_, false) && originals_.empty() && current) {
    settings.push_back({current->key, levelled(loudnessOf(*current), volume)});
  }
  return settings;
}

void DrivenVolumes::wasMade(const Setting& setting, Time time) {
  const auto found = originals_.find(setting.output);
  if (found != originals_.end() && found->second.isDue) found->second.heldUntil = time + kHold;
}

std::vector<DrivenVolumes::Setting> DrivenVolumes::see(const SoundServerState& now, Time time) {
  std::vector<Setting> settings;
  const auto before = std::exchange(appeared_, {});
  for (const SoundOutput& output : now.outputs) {
    const auto earlier = before.find(output.key);
    const bool hasAppeared = earlier == before.end();
    const Time appeared = appeared_[output.key] = hasAppeared ? time : earlier->second;
    const auto found = originals_.find(output.key);
    if (found == originals_.end()) continue;
    Original& original = found->second;
    const Loudness loudness = loudnessOf(output);
    if (hasAppeared) {
      original.found = loudness;
      original.heldUntil.reset();
    }
    if (!original.isDue) continue;
    if (time > original.heldUntil.value_or(time)) {
      originals_.erase(found);
    } else if (!original.heldUntil || (time <= appeared + kHold && original.isServers(loudness))) {
      if (!original.heldUntil) original.heldUntil = time + kHold;
      if (!(loudness == original.users)) settings.push_back({output.key, original.users});
    }
  }
  return settings;
}

}  // namespace orn
