#pragma once

#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <ORNHearingTestSDK/platform/AudioOutput.h>

namespace orn::contract {

/// A queue, a player and an output that forward everything but what a test changes.
struct ChangedQueue final : AudioQueue {
  /// What outlives the queue, if a test lets its sound outlive it.
  struct Hand {
    OutputCallback callback;
    std::function<void(AudioQueueBuffer&)> back;
  };

  ~ChangedQueue() override {
    if (dropped) dropped(*this);
  }
  AudioQueueBuffer* allocateBuffer(std::uint32_t size) override {
    AudioQueueBuffer* made = real->allocateBuffer(size);
    if (allocated) allocated(*made);
    return made;
  }
  std::error_code enqueueBuffer(AudioQueueBuffer& buffer) override {
    return enqueue ? enqueue(buffer) : real->enqueueBuffer(buffer);
  }
  std::error_code setVolume(float gain) override { return volume ? volume(gain) : real->setVolume(gain); }
  std::error_code start() override { return starting ? starting() : real->start(); }
  std::error_code pause() override { return pausing ? pausing() : real->pause(); }
  std::error_code stop() override { return stopping ? stopping() : real->stop(); }

  std::shared_ptr<AudioQueue> real;
  std::shared_ptr<Hand> hand = std::make_shared<Hand>();
  std::function<void(ChangedQueue&)> dropped;
  std::function<void(AudioQueueBuffer&)> allocated;
  std::function<std::error_code(AudioQueueBuffer&)> enqueue;
  std::function<std::error_code(float)> volume;
  std::function<std::error_code()> starting, pausing, stopping;

  // For tests to keep account of: what was enqueued and not handed back, and whether it was started.
  std::vector<AudioQueueBuffer*> enqueued;
  bool isRunning = false;

  /// What the changes above call in the end.
  void handBack(AudioQueueBuffer& buffer) { hand->callback(*this, buffer); }
};

struct ChangedPlayer final : AudioPlayer {
  void setNumberOfLoops(int loops) override {
    const int changed = looping ? looping(loops) : loops;
    again = [=, before = again] {
      auto player = before();
      player->setNumberOfLoops(changed);
      return player;
    };
    isLoopSet = true;
    real->setNumberOfLoops(changed);
  }
  std::error_code prepareToPlay() override { return preparing ? preparing() : real->prepareToPlay(); }
  void setPan(float pan) override {
    pan_ = pan;
    panning ? panning(pan) : real->setPan(pan);
  }
  void setVolume(float volume) override {
    volume_ = volume;
    scaling ? scaling(volume) : real->setVolume(volume);
  }
  float pan() const override { return pan_; }
  float volume() const override { return told ? told(volume_) : volume_; }
  std::error_code play() override {
    ++plays;
    return playing ? playing() : real->play();
  }
  void stop() override {
    plays = 0;
    stopping ? stopping() : real->stop();
  }

  std::unique_ptr<AudioPlayer> real;
  std::function<std::unique_ptr<AudioPlayer>()> again;  // the same recording from its beginning
  bool isLoopSet = false;
  int plays = 0;  // since the last stop()
  std::function<int(int)> looping;
  std::function<std::error_code()> preparing, playing;
  std::function<void(float)> panning, scaling;
  std::function<float(float)> told;
  std::function<void()> stopping;

 private:
  float pan_ = 0;
  float volume_ = 1;
};

struct ChangedOutput final : AudioOutput {
  explicit ChangedOutput(std::shared_ptr<AudioOutput> output) : real(std::move(output)) {}

  std::error_code useCurrentDevice() override { return choosing ? choosing() : real->useCurrentDevice(); }
  std::error_code status() override { return heard ? heard() : real->status(); }
  std::uint64_t lapses() override { return lapsed ? lapsed() : real->lapses(); }
  std::unique_ptr<AudioQueue> newOutputQueue(const AudioStreamBasicDescription& asked,
                                             AudioQueue::OutputCallback callback) override {
    auto made = std::make_unique<ChangedQueue>();
    made->hand->callback = std::move(callback);
    made->hand->back = [queue = made.get()](AudioQueueBuffer& buffer) { queue->handBack(buffer); };
    made->real = real->newOutputQueue(format ? format(asked) : asked,
                                      [hand = made->hand](auto&, auto& buffer) { hand->back(buffer); });
    if (!made->real) return nullptr;
    if (queue) queue(*made);
    return made;
  }
  std::unique_ptr<AudioPlayer> playerWithContentsOfFile(const std::string& path) override {
    return file ? file(path) : real->playerWithContentsOfFile(path);
  }
  std::unique_ptr<AudioPlayer> playerWithData(std::span<const std::uint8_t> given) override {
    auto made = std::make_unique<ChangedPlayer>();
    const std::vector<std::uint8_t> bytes = data ? data(given) : std::vector(given.begin(), given.end());
    made->again = [bytes, output = std::weak_ptr(real)] { return output.lock()->playerWithData(bytes); };
    made->real = made->again();
    if (!made->real) return nullptr;
    if (player) player(*made, given);
    return made;
  }

  std::shared_ptr<AudioOutput> real;
  std::function<std::error_code()> choosing, heard;
  std::function<std::uint64_t()> lapsed;
  std::function<AudioStreamBasicDescription(AudioStreamBasicDescription)> format;
  std::function<void(ChangedQueue&)> queue;
  std::function<std::unique_ptr<AudioPlayer>(const std::string&)> file;
  std::function<std::vector<std::uint8_t>(std::span<const std::uint8_t>)> data;
  std::function<void(ChangedPlayer&, std::span<const std::uint8_t>)> player;
};

}  // namespace orn::contract
