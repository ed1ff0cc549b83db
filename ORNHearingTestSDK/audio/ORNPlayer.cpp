#include <ORNHearingTestSDK/audio/ORNPlayer.h>

#include <algorithm>

#include <ORNHearingTestSDK/audio/ORNPlayerByArray.h>
#include <ORNHearingTestSDK/platform/AudioOutput.h>
#include <ORNHearingTestSDK/platform/FileManager.h>
#include <ORNHearingTestSDK/platform/PerPlatform.h>
#include <ORNHearingTestSDK/platform/Platform.h>

namespace orn {

std::shared_ptr<ORNPlayer> ORNPlayer::shareInstance() {
  static PerPlatform<ORNPlayer> instance;
  return instance.get([] { return std::shared_ptr<ORNPlayer>(new ORNPlayer); });
}

std::optional<std::string> ORNPlayer::pathForResource(const std::string& name, const std::string& type) const {
  const auto bundle = Platform::current().fileManager->resourceBundle("wav.bundle");
  if (!bundle) return std::nullopt;
  return *bundle + "/" + name + "." + type;
}

ORNPlayer::TonePlayer ORNPlayer::playerWithUrl(const std::string& path) const {
  TonePlayer tone = Platform::current().audioOutput->playerWithContentsOfFile(path);
  if (!tone) return nullptr;
  tone->setNumberOfLoops(-1);
  tone->prepareToPlay();
  return tone;
}

ORNPlayer::TonePlayer ORNPlayer::player(std::size_t frequency, std::size_t recording) {
  TonePlayer& tone = players_[frequency][recording];
  if (!tone) {
    const auto path = pathForResource((recording == kDown ? "40-" : "40+") + std::to_string(frequency), "wav");
    if (path) tone = playerWithUrl(*path);
  }
  return tone;
}

ORNPlayer::TonePlayer ORNPlayer::playerWithHzValue(std::uint64_t hz, std::int64_t db, bool isleft) {
  constexpr std::size_t oneThousand = 3;
  const auto* known = std::find_if(kToneFrequencies.begin(), kToneFrequencies.end(),
                                   [hz](int tone) { return static_cast<std::uint64_t>(tone) == hz; });
  const std::size_t frequency =
      known == kToneFrequencies.end() ? oneThousand : static_cast<std::size_t>(known - kToneFrequencies.begin());
  TonePlayer tone = player(frequency, db <= kHighestQuietLevel ? kDown : kUp);
  if (tone) tone->setPan(isleft ? -1.0F : 1.0F);
  return tone;
}

ORNPlayer::TonePlayer ORNPlayer::playerWithHz(std::int32_t hz, std::int64_t db, bool isleft) {
  return playerWithHzValue(static_cast<std::uint64_t>(hz), db, isleft);
}

ORNPlayer::TonePlayer ORNPlayer::playerWithShz2(std::string_view hz, double /*lastzhenfu*/, double zhenfu,
                                                bool isleft) {
  return ORNPlayerByArray::playerWithHz(hz, 0.0, zhenfu, isleft);
}

ORNPlayer::TonePlayer ORNPlayer::playerStopWithShz2(std::string_view hz, double lastzhenfu) {
  return ORNPlayerByArray::playerStopWithHz(hz, lastzhenfu);
}

}  // namespace orn
