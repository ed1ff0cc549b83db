#include <algorithm>
#include <cmath>
#include <cstring>
#include <set>
#include <thread>
#include <utility>

#include <ORNHearingTestSDK/contracts/AudioCheck.h>
#include <ORNHearingTestSDK/contracts/AudioOutputContract.h>
#include <ORNHearingTestSDK/contracts/AudioPlayerContract.h>
#include <ORNHearingTestSDK/contracts/AudioQueueContract.h>

#include "BrokenCopies.h"
#include "examples/backend-contracts/SimulatedBackend.h"

namespace orn::contract {
namespace {

using Buffer = AudioQueueBuffer;
using Observer = std::shared_ptr<const AudioSessionObserver>;

const std::error_code kFine;
std::vector<std::shared_ptr<void>> keptForGood;

struct BrokenQueue final : AudioQueue {
  ~BrokenQueue() override {
    if (breaks("the destructor")) keptForGood.push_back(real);
  }

  /// What the real queue calls instead of the callback.
  static OutputCallback broken(const OutputCallback& callback) {
    return [callback, isSecond = true](AudioQueue& queue, Buffer& buffer) mutable {
      isSecond = !isSecond;
      if (breaks("each buffer is handed back") && isSecond) return;
      if (breaks("all callbacks") && isSecond) return std::thread([&] { callback(queue, buffer); }).join();
      callback(queue, buffer);
      if (breaks("setVolume() may be called")) (void)queue.setVolume(1);
      if (breaks("what the callback enqueues")) {
        Buffer& gap = *queue.allocateBuffer(20);
        gap.mAudioDataByteSize = 20;
        (void)queue.enqueueBuffer(gap);
      }
    };
  }

  Buffer* allocateBuffer(std::uint32_t size) override {
    Buffer* buffer = real->allocateBuffer(size);
    if (breaks("a new buffer is zeroed")) std::memset(buffer->mAudioData.data(), 1, size);
    return buffer;
  }

  std::error_code enqueueBuffer(Buffer& buffer) override {
    const bool isNew = known.insert(&buffer).second;
    const std::size_t room = buffer.mAudioData.size();
    if (breaks("a buffer that is enqueued again") && !isNew) return kFine;
    if (breaks("buffers of any length") && room == 10) buffer.mAudioDataByteSize = 8;
    if (breaks("no more is played") && buffer.mAudioDataByteSize > room) buffer.mAudioDataByteSize = 2;
    if (breaks("a queue that runs dry is silent") && known.size() > 3) (void)real->pause();
    const std::error_code error = real->enqueueBuffer(buffer);
    if (breaks("nothing sounds and no buffer")) (void)real->start();
    return breaks("a buffer without bytes") ? kFine : error;
  }

  std::error_code setVolume(float gain) override {
    if (breaks("the volume is a linear gain")) gain *= gain;
    if (breaks("beyond 0 and 1") && std::isnan(gain)) gain = 1;
    return real->setVolume(gain);
  }

  std::error_code start() override {
    const bool isAgain = std::exchange(wasStarted, true);
    if (breaks("start() is harmless") && isAgain) return std::make_error_code(std::errc::already_connected);
    if (breaks("what was queued when") && isAgain) (void)real->stop();
    for (Buffer* buffer : known) {
      if (breaks("a buffer's bytes are copied")) (void)real->enqueueBuffer(*buffer);
    }
    const std::error_code error = real->start();
    return breaks("a queue whose device goes") ? kFine : error;
  }
  std::error_code pause() override {
    if (breaks("no callback comes between")) return real->setVolume(0);
    return breaks("pause() stops the sound") ? real->stop() : real->pause();
  }
  std::error_code stop() override {
    if (breaks("stop() hands nothing back")) return real->setVolume(0);
    return breaks("stop() stops the sound") ? real->pause() : real->stop();
  }

  std::shared_ptr<AudioQueue> real;
  std::set<Buffer*> known;
  bool wasStarted = false;
};

struct BrokenPlayer final : AudioPlayer {
  explicit BrokenPlayer(std::unique_ptr<AudioPlayer> player) : real(std::move(player)) {
    if (breaks("0 loops")) real->setNumberOfLoops(1);
  }

  void setNumberOfLoops(int number) override {
    if (breaks("a number of loops") && number > 0) --number;
    if (breaks("-1 plays forever") && number < 0) number = 9;
    real->setNumberOfLoops(number);
  }
  std::error_code prepareToPlay() override { return breaks("prepareToPlay()") ? real->play() : real->prepareToPlay(); }

  void setPan(float value) override {
    if (breaks("pan -1 is left only")) value = -value;
    if (breaks("between, the far side")) value *= std::abs(value);
    real->setPan(value);
  }
  void setVolume(float value) override {
    if (breaks("the volume is a linear gain")) value = std::min(value, 1.0F);
    if (breaks("samples beyond")) value = std::min(value, 1.6F);
    if (breaks("a pan or a volume that is no number") && std::isnan(value)) value = 1;
    if (!breaks("a pan and a volume are heard") || plays == 0) real->setVolume(value);
  }
  float pan() const override { return real->pan(); }
  float volume() const override { return breaks("pan() and volume()") ? 1 : real->volume(); }

  std::error_code play() override {
    const bool isAgain = ++plays > 1;
    if (breaks("after its end") && isAgain) return kFine;
    if (breaks("play() is harmless") && isAgain) return stop(), kFine;
    const std::error_code error = real->play();
    return breaks("a player whose device goes") ? kFine : error;
  }
  void stop() override {
    if (!breaks("stop() stops the sound")) real->stop();
  }

  std::unique_ptr<AudioPlayer> real;
  int plays = 0;
};

struct BrokenOutput final : AudioOutput {
  std::error_code useCurrentDevice() override {
    if (breaks("useCurrentDevice() succeeds")) return std::make_error_code(std::errc::no_such_device);
    return breaks("useCurrentDevice() gives") ? kFine : real->useCurrentDevice();
  }
  std::error_code status() override { return breaks("status() gives") ? kFine : real->status(); }
  std::uint64_t lapses() override {
    if (breaks("sound that is whole")) return ++asked;
    if (breaks("a device that goes is a lapse")) return 0;
    return breaks("a queue that runs dry is a lapse") ? std::min<std::uint64_t>(real->lapses(), 1) : real->lapses();
  }

  std::unique_ptr<AudioQueue> newOutputQueue(const AudioStreamBasicDescription& format,
                                             AudioQueue::OutputCallback callback) override {
    auto queue = std::make_unique<BrokenQueue>();
    queue->real = real->newOutputQueue(breaks("there is a queue") ? toneFormat() : format, queue->broken(callback));
    if (!queue->real) return nullptr;
    if (breaks("queues and players")) (void)queue->real->setVolume(0);
    return queue;
  }
  std::unique_ptr<AudioPlayer> playerWithData(std::span<const std::uint8_t> data) override {
    const Bytes other = waveFile(ramp(4800, 9000));
    auto player = real->playerWithData(breaks("playerWithData() copies") ? other : data);
    if (breaks("playerWithData() is null") && !player) player = real->playerWithData(other);
    return player ? std::make_unique<BrokenPlayer>(std::move(player)) : nullptr;
  }
  std::unique_ptr<AudioPlayer> playerWithContentsOfFile(const std::string& path) override {
    if (breaks("playerWithContentsOfFile() plays")) return nullptr;
    auto player = real->playerWithContentsOfFile(path);
    return player || !breaks("playerWithContentsOfFile() is null") ? std::move(player) : playerWithData(waveFile({}));
  }

  std::shared_ptr<AudioOutput> real;
  std::uint64_t asked = 0;
};

struct BrokenSession final : AudioSession {
  std::error_code setActive(bool active) override { return real->setActive(active); }
  std::error_code setCategory(AudioSessionCategory category, std::uint32_t options) override {
    return breaks("it is activated") ? std::make_error_code(std::errc::io_error) : real->setCategory(category, options);
  }
  std::optional<std::string> routeText() const override {
    if (breaks("an output has a route text")) return std::nullopt;
    return breaks("without an output there is") ? "Speaker" : real->routeText();
  }
  AudioRouteDescription currentRoute() const override {
    AudioRouteDescription route = real->currentRoute();
    for (AudioPort& port : route.outputs) {
      if (breaks("an output is a port")) port.portName.clear();
      if (breaks("a new device becomes")) port.UID = "the same";
    }
    return route;
  }

  float outputVolume() const override { return real->outputVolume(); }
  std::error_code setOutputVolume(float level) override {
    if (breaks("the volume that is set")) level *= level;
    if (breaks("beyond 0 and 1") && level > 1) level = 0;
    const std::error_code error = real->setOutputVolume(level);
    return breaks("without an output setOutputVolume()") ? std::error_code() : error;
  }
  std::error_code restoreOutputVolume(float level) override {
    return breaks("restoreOutputVolume() puts") ? std::error_code() : real->restoreOutputVolume(level);
  }

  void addObserver(std::weak_ptr<const AudioSessionObserver> observer) override {
    if (breaks("an observer may let go") && isTelling) return;
    if (breaks("an observer is not kept")) kept.push_back(observer.lock());
    const auto routeChange = [this, observer](std::int32_t reason) { tell(observer.lock(), reason); };
    const auto interruption = [observer](std::int32_t type) {
      observer.lock()->interruption(breaks("an interruption") ? 1 : type);
    };
    kept.push_back(std::make_shared<AudioSessionObserver>(AudioSessionObserver{routeChange, interruption}));
    real->addObserver(kept.back());
  }

  void tell(const Observer& observer, std::int32_t reason) {
    if (!observer || (!observer->routeChange && !breaks("an empty member"))) return;
    if (breaks("a device that goes")) reason = 0;
    if (breaks("notices come on")) return std::thread([&] { observer->routeChange(reason); }).join();
    isTelling = true;
    observer->routeChange(reason);
    isTelling = false;
  }

  std::shared_ptr<AudioSession> real;
  std::vector<Observer> kept;
  bool isTelling = false;
};

AudioUnderTest brokenSound() {
  AudioUnderTest copy = example::audio();
  if (breaks("what an output made")) keptForGood.push_back(copy.output);
  return brokenIn<BrokenOutput>(copy, &AudioUnderTest::output);
}

TEST(BrokenCopies, OfTheQueueAreNamed) { expectEachNamed<AudioUnderTest>(checkAudioQueue, brokenSound); }
TEST(BrokenCopies, OfThePlayerAreNamed) { expectEachNamed<AudioUnderTest>(checkAudioPlayer, brokenSound); }
TEST(BrokenCopies, OfTheOutputAreNamed) { expectEachNamed<AudioUnderTest>(checkAudioOutput, brokenSound); }
TEST(BrokenCopies, OfTheSessionAreNamed) {
  expectEachNamed<AudioSessionUnderTest>(
      checkAudioSession, [] { return brokenIn<BrokenSession>(example::session(), &AudioSessionUnderTest::session); });
}

}  // namespace
}  // namespace orn::contract
