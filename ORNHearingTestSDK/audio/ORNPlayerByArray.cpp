#include <ORNHearingTestSDK/audio/ORNPlayerByArray.h>

#include <limits>
#include <vector>

#include <ORNHearingTestSDK/audio/SineTables.h>
#include <ORNHearingTestSDK/audio/WaveChange.h>
#include <ORNHearingTestSDK/common/NumericText.h>
#include <ORNHearingTestSDK/platform/AudioOutput.h>
#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/platform/SampleFormat.h>

namespace orn {
namespace {

using WaveBuffer = std::unique_ptr<std::uint8_t, decltype(&freeWaveData)>;

std::vector<std::uint8_t> waveFile(const std::uint8_t* oneData, std::int64_t dataSize, float lastzhenfu, float zhenfu,
                                   std::int32_t times) {
  const std::int64_t total = times * dataSize;
  // No ramp, so the amplitude of the tone before has no effect.
  const WaveBuffer samples(creatWaveDataByTimes(oneData, dataSize, lastzhenfu, zhenfu, times, 0), freeWaveData);
  const WaveBuffer header(createWaveHeader(static_cast<std::uint32_t>(total), 1, kSampleRate, 16), freeWaveHeader);
  if ((!samples && total > 0) || !header) return {};
  std::vector<std::uint8_t> file;
  file.reserve(static_cast<std::size_t>(total + getWaveHeaderSize()));
  file.insert(file.end(), header.get(), header.get() + getWaveHeaderSize());
  file.insert(file.end(), samples.get(), samples.get() + total);
  return file;
}

// Truncated without rounding before, and limited to what a count can hold.
std::int32_t cyclesFor(double lastzhenfu) {
  const double times = lastzhenfu / static_cast<double>(0.0001F);
  if (!(times > 0)) return 0;
  constexpr auto most = std::numeric_limits<std::int32_t>::max();
  return times >= most ? most : static_cast<std::int32_t>(times);
}

}  // namespace

std::shared_ptr<AudioPlayer> ORNPlayerByArray::playerWithOneData(const std::uint8_t* oneData, std::int64_t dataSize,
                                                                 double lastzhenfu, double zhenfu, std::int32_t times) {
  // More would not fit the size field of a WAV file.
  constexpr std::int64_t mostBytes = std::numeric_limits<std::int32_t>::max();
  if (!oneData || dataSize < 0 || times < 0 || (times > 0 && dataSize > mostBytes / times)) return nullptr;
  const auto file = waveFile(oneData, dataSize, static_cast<float>(lastzhenfu), static_cast<float>(zhenfu), times);
  std::shared_ptr<AudioPlayer> player = Platform::current().audioOutput->playerWithData(file);
  if (!player) return nullptr;
  player->setNumberOfLoops(-1);
  player->setPan(0.0F);
  player->prepareToPlay();
  return player;
}

std::shared_ptr<AudioPlayer> ORNPlayerByArray::playerWithHz(std::int32_t hz, double lastzhenfu, double zhenfu,
                                                            bool /*isleft*/) {
  const auto table = sineTable(hz);
  if (!table) return nullptr;
  return playerWithOneData(table->data, table->size, lastzhenfu, zhenfu, 2 * hz);
}

std::shared_ptr<AudioPlayer> ORNPlayerByArray::playerWithHz(std::string_view hz, double lastzhenfu, double zhenfu,
                                                            bool isleft) {
  return playerWithHz(intValue(hz), lastzhenfu, zhenfu, isleft);
}

std::shared_ptr<AudioPlayer> ORNPlayerByArray::playerStopWithHz(std::int32_t hz, double lastzhenfu) {
  const auto table = sineTable(hz);
  if (!table) return nullptr;
  return playerWithOneData(table->data, table->size, lastzhenfu, 0.0, cyclesFor(lastzhenfu));
}

std::shared_ptr<AudioPlayer> ORNPlayerByArray::playerStopWithHz(std::string_view hz, double lastzhenfu) {
  return playerStopWithHz(intValue(hz), lastzhenfu);
}

}  // namespace orn
