#include <algorithm>
#include <cmath>
#include <cstring>
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

const std::error_code kFine;

struct BrokenQueue final : AudioQueue {
  /// What a real queue calls, which may outlive the copy.
  struct Hand {
    OutputCallback callback;
    BrokenQueue* copy = nullptr;
    AudioQueue* real = nullptr;
  };

  ~BrokenQueue() override {
    hand->copy = nullptr;
    static std::vector<std::shared_ptr<AudioQueue>> playsOn;
    if (breaks("the destructor waits")) (void)real->setVolume(0);
    if (breaks("the destructor")) playsOn.push_back(real);
  }

  static void handBack(const std::shared_ptr<Hand>& hand, Buffer& buffer) {
    if (hand->copy) return hand->copy->handBack(buffer);
    if (breaks("the destructor waits")) hand->callback(*hand->real, buffer);
  }

  void handBack(Buffer& buffer) {
    const int number = ++callbacks;
    std::erase(enqueued, &buffer);
    if (breaks("each buffer is handed back") && number == 2) return;
    if (breaks("all callbacks") && number == 2) return std::thread([&] { hand->callback(*this, buffer); }).join();
    isWithin = true;
    hand->callback(*this, buffer);
    isWithin = false;
    if (breaks("a queue that runs dry is silent") && enqueued.empty()) (void)real->pause();
  }

  Buffer* allocateBuffer(std::uint32_t size) override {
    Buffer* buffer = real->allocateBuffer(size);
    if (breaks("a new buffer is zeroed")) std::memset(buffer->mAudioData.data(), 1, size);
    return buffer;
  }

  std::error_code enqueueBuffer(Buffer& buffer) override {
    const std::size_t room = buffer.mAudioData.size();
    const bool isIn = std::find(enqueued.begin(), enqueued.end(), &buffer) != enqueued.end();
    if (breaks("buffers of any length") && room == 10) buffer.mAudioDataByteSize = 8;
    if (breaks("what the callback enqueues") && ++enqueueings == 10 && room == QueueUnderTest::kBlock) return kFine;
    if (breaks("a buffer that is enqueued again") && isIn) return kFine;
    if (breaks("no more is played") && buffer.mAudioDataByteSize > room)
      return std::make_error_code(std::errc::invalid_argument);
    const std::error_code error = real->enqueueBuffer(buffer);
    std::erase(enqueued, &buffer);
    if (!error) enqueued.push_back(&buffer);
    if (breaks("nothing sounds and no buffer")) (void)real->start();
    return breaks("a buffer without bytes") ? kFine : error;
  }

  std::error_code setVolume(float gain) override {
    if (breaks("the volume is a linear gain") && std::abs(gain) < 0.3F) gain *= gain;
    if (breaks("beyond 0 and 1") && std::isnan(gain)) gain = 1;
    return breaks("setVolume() may be called") && isWithin ? kFine : real->setVolume(gain);
  }

  std::error_code start() override {
    const bool isFirst = !std::exchange(wasStarted, true), isAnew = !std::exchange(isRunning, true);
    for (Buffer* buffer : enqueued) {
      if (breaks("a buffer's bytes are copied") && isFirst) (void)real->enqueueBuffer(*buffer);
    }
    const std::error_code error = real->start();
    if (breaks("start() is harmless") && !isAnew && !error) return std::make_error_code(std::errc::already_connected);
    return breaks("a queue whose device goes") ? kFine : error;
  }
  std::error_code pause() override {
    isRunning = false;
    for (int i = 0; i < 2 && breaks("no callback comes between"); ++i) handBack(*enqueued.back());
    return breaks("pause() stops the sound") ? real->stop() : real->pause();
  }
  std::error_code stop() override {
    isRunning = false;
    const std::error_code error = breaks("stop() stops the sound") ? real->pause() : real->stop();
    for (Buffer* buffer : std::exchange(enqueued, {})) {
      if (breaks("stop() hands nothing back")) handBack(*buffer);
    }
    return error;
  }

  std::shared_ptr<AudioQueue> real;
  std::shared_ptr<Hand> hand = std::make_shared<Hand>();
  std::vector<Buffer*> enqueued;  // and not handed back
  int callbacks = 0, enqueueings = 0;
  bool isWithin = false, isRunning = false, wasStarted = false;
};

struct BrokenPlayer final : AudioPlayer {
  BrokenPlayer(const std::shared_ptr<AudioOutput>& output, std::span<const std::uint8_t> data)
      : given(data), bytes(data.begin(), data.end()), output_(output), real(again()) {}

  /// The same recording from its beginning.
  std::unique_ptr<AudioPlayer> again() const {
    auto player = output_.lock()->playerWithData(bytes);
    if (player) player->setNumberOfLoops(loops);
    return player;
  }

  void setNumberOfLoops(int number) override {
    if (breaks("a number of loops") && number > 0) --number;
    if (breaks("-1 plays forever") && number < 0) number = 9;
    loops = number;
    isLoopSet = true;
    real->setNumberOfLoops(number);
  }
  std::error_code prepareToPlay() override { return breaks("prepareToPlay()") ? real->play() : real->prepareToPlay(); }

  void setPan(float value) override {
    pan_ = value;
    if (breaks("pan -1 is left only") && value == 1) value = -1;
    if (breaks("between, the far side")) value *= std::abs(value);
    if (!breaks("a pan and a volume are heard")) real->setPan(value);
  }
  void setVolume(float value) override {
    volume_ = value;
    if (breaks("the volume is a linear gain") && value == 2.5F) value = 1;
    if (breaks("samples beyond") && value == 3) value = 1.6F;
    if (breaks("a pan or a volume that is no number") && std::isnan(value)) value = 1;
    if (!breaks("a pan and a volume are heard")) real->setVolume(value);
  }
  float pan() const override { return pan_; }
  float volume() const override { return breaks("pan() and volume()") ? std::min(volume_, 1.0F) : volume_; }

  std::error_code play() override {
    const bool isAgain = ++plays > 1;
    if (breaks("0 loops") && !isLoopSet) real->setNumberOfLoops(1);
    if (breaks("after its end") && isAgain) return real->prepareToPlay();
    if (breaks("play() is harmless") && isAgain) real = again();
    if (breaks("playerWithData() copies") && !isLoopSet) real = output_.lock()->playerWithData(given);
    if (breaks("a pan and a volume are heard")) real->setPan(pan_), real->setVolume(volume_);
    const std::error_code error = real->play();
    if (breaks("a device that goes is a lapse") && error) ++*wrongLapses;
    return breaks("a player whose device goes") ? kFine : error;
  }
  void stop() override {
    plays = 0;
    if (breaks("sound that is whole")) ++*wrongLapses;
    if (breaks("stop() stops the sound")) real = again();
    real->stop();
  }

  std::span<const std::uint8_t> given;
  std::vector<std::uint8_t> bytes;
  std::weak_ptr<AudioOutput> output_;
  int loops = 0, plays = 0;  // plays since the last stop
  bool isLoopSet = false;
  std::unique_ptr<AudioPlayer> real;
  std::shared_ptr<std::uint64_t> wrongLapses;

 private:
  float pan_ = 0, volume_ = 1;
};

struct BrokenOutput final : AudioOutput {
  explicit BrokenOutput(std::shared_ptr<AudioOutput> output) : real(std::move(output)) {}

  std::error_code useCurrentDevice() override {
    if (breaks("useCurrentDevice() succeeds") && !std::exchange(wasAsked, true))
      return std::make_error_code(std::errc::no_such_device);
    return breaks("useCurrentDevice() gives") ? kFine : real->useCurrentDevice();
  }
  std::error_code status() override { return breaks("status() gives") ? kFine : real->status(); }
  std::uint64_t lapses() override {
    const std::uint64_t all = real->lapses() + *wrongLapses;
    return breaks("a queue that runs dry is a lapse") ? std::min<std::uint64_t>(all, 1) : all;
  }

  std::unique_ptr<AudioQueue> newOutputQueue(const AudioStreamBasicDescription& format,
                                             AudioQueue::OutputCallback callback) override {
    AudioStreamBasicDescription asked = format;
    if (breaks("there is a queue")) asked.mSampleRate = 48000;
    auto queue = std::make_unique<BrokenQueue>();
    queue->real = real->newOutputQueue(
        asked, [hand = queue->hand](auto&, Buffer& buffer) { BrokenQueue::handBack(hand, buffer); });
    if (!queue->real) return nullptr;
    *queue->hand = {std::move(callback), queue.get(), queue->real.get()};
    if (breaks("queues and players") && hasPlayer) (void)queue->real->setVolume(0);
    queues.push_back(queue->hand);
    return queue;
  }

  std::unique_ptr<AudioPlayer> playerWithData(std::span<const std::uint8_t> data) override {
    const Bytes other = waveFile(ramp(10));
    const bool isOther = breaks("playerWithData() is null") && data.size() == 200;
    auto player = std::make_unique<BrokenPlayer>(real, isOther ? other : data);
    if (!player->real) return nullptr;
    player->wrongLapses = wrongLapses;
    hasPlayer = true;
    return player;
  }
  std::unique_ptr<AudioPlayer> playerWithContentsOfFile(const std::string& path) override {
    if (breaks("playerWithContentsOfFile() plays")) return nullptr;
    auto player = real->playerWithContentsOfFile(path);
    if (breaks("playerWithContentsOfFile() is null") && !player) return real->playerWithData(waveFile(ramp(10)));
    return player;
  }

  void deviceGoes() {
    for (const auto& hand : queues) {
      if (!hand->copy) continue;
      hand->copy->isRunning = false;
      if (breaks("what was queued when")) (void)hand->real->stop();
    }
  }

  std::shared_ptr<AudioOutput> real;
  std::vector<std::shared_ptr<BrokenQueue::Hand>> queues;
  std::shared_ptr<std::uint64_t> wrongLapses = std::make_shared<std::uint64_t>(0);
  bool wasAsked = false, hasPlayer = false;
};

AudioUnderTest brokenSound() {
  static std::vector<std::shared_ptr<AudioOutput>> keptForEver;
  AudioUnderTest copy = example::audio();
  if (breaks("what an output made")) keptForEver.push_back(copy.output);
  const auto broken = std::make_shared<BrokenOutput>(copy.output);
  copy.output = broken;
  copy.takeDeviceAway = [output = std::weak_ptr(broken), away = copy.takeDeviceAway] {
    output.lock()->deviceGoes();
    away();
  };
  return copy;
}

TEST(BrokenCopies, OfTheQueueAreNamed) { expectEachNamed<AudioUnderTest>(checkAudioQueue, brokenSound); }
TEST(BrokenCopies, OfThePlayerAreNamed) { expectEachNamed<AudioUnderTest>(checkAudioPlayer, brokenSound); }
TEST(BrokenCopies, OfTheOutputAreNamed) { expectEachNamed<AudioUnderTest>(checkAudioOutput, brokenSound); }

}  // namespace
}  // namespace orn::contract
