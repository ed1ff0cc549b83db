#pragma once

#include <algorithm>
#include <cstdint>
#include <deque>
#include <fstream>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include <ORNHearingTestSDK/audio/WaveChange.h>
#include <ORNHearingTestSDK/platform/AudioQueueBuffers.h>
#include <ORNHearingTestSDK/platform/LoopedRecording.h>
#include <ORNHearingTestSDK/platform/PannedPlayer.h>
#include <ORNHearingTestSDK/platform/RunLoop.h>
#include <ORNHearingTestSDK/platform/SampleFormat.h>
#include <ORNHearingTestSDK/platform/ToneOutput.h>

// An audio backend as a porter writes one: its device is a WAV file, which grows as the loop's time passes. All of it
// runs on the thread of the loop.

namespace example {

class Sound {
 public:
  virtual ~Sound() = default;
  /// Adds what sounds now, interleaved left and right.
  virtual void add(std::span<std::int32_t> frames) = 0;
};

/// The device: adds up all sounds and writes them.
class WavDevice {
 public:
  WavDevice(std::weak_ptr<orn::RunLoop> loop, const std::string& path)
      : loop_(std::move(loop)), file_(path, std::ios::binary) {
    writeHeader();
  }

  /// Plays on until now. Called before any change to a sound, so that the change begins at the right sample.
  void catchUp() {
    const auto loop = loop_.lock();
    if (!loop) return;
    const auto due =
        std::chrono::duration_cast<std::chrono::duration<std::int64_t, std::ratio<1, orn::kSampleRate>>>(loop->now());
    while (played_ < due.count()) playBlock(std::min<std::int64_t>(due.count() - played_, kBlock));
  }

  /// From here on nothing sounds; the file's header says how long it is.
  void close() {
    catchUp();
    isOpen_ = false;
    file_.seekp(0);
    writeHeader();
    file_.close();
  }

  bool isOpen() const { return isOpen_ && file_.good(); }
  std::uint64_t lapses() const { return lapses_; }
  void lapse() { ++lapses_; }
  void add(Sound* sound) { sounds_.push_back(sound); }
  void remove(Sound* sound) { std::erase(sounds_, sound); }

 private:
  static constexpr std::int64_t kBlock = 480;  // frames

  void playBlock(std::int64_t frames) {
    mixed_.assign(static_cast<std::size_t>(frames) * 2, 0);
    played_ += frames;
    if (!isOpen_) return;
    for (Sound* sound : std::vector(sounds_)) {  // a copy: a callback may end a sound
      if (std::find(sounds_.begin(), sounds_.end(), sound) != sounds_.end()) sound->add(mixed_);
    }
    for (const std::int32_t one : mixed_) {
      const std::int32_t sample = std::clamp(one, -32768, 32767);
      file_.put(static_cast<char>(sample)).put(static_cast<char>(sample >> 8));
    }
    file_.flush();
  }

  void writeHeader() {
    std::uint8_t* header = createWaveHeader(static_cast<std::uint32_t>(played_ * 4), 2, orn::kSampleRate, 16);
    if (header) file_.write(reinterpret_cast<const char*>(header), getWaveHeaderSize());
    freeWaveHeader(header);
    file_.flush();
  }

  std::weak_ptr<orn::RunLoop> loop_;
  std::ofstream file_;
  std::vector<Sound*> sounds_;
  std::vector<std::int32_t> mixed_;
  std::int64_t played_ = 0;
  std::uint64_t lapses_ = 0;
  bool isOpen_ = true;
};

/// What queues and players have in common: a place at the device, and whether they sound.
class DeviceSound : public Sound {
 protected:
  explicit DeviceSound(std::shared_ptr<WavDevice> device) : device_(std::move(device)) { device_->add(this); }
  ~DeviceSound() override { device_->remove(this); }

  std::error_code setPlaying(bool isPlaying) {
    device_->catchUp();
    if (isPlaying && !device_->isOpen()) return std::make_error_code(std::errc::no_such_device);
    isPlaying_ = isPlaying;
    return {};
  }

  const std::shared_ptr<WavDevice> device_;
  bool isPlaying_ = false;
};

class WavQueue final : public orn::AudioQueue, DeviceSound {
 public:
  WavQueue(std::shared_ptr<WavDevice> device, OutputCallback callback)
      : DeviceSound(std::move(device)), callback_(std::move(callback)) {}

  orn::AudioQueueBuffer* allocateBuffer(std::uint32_t byteSize) override { return &buffers_.allocate(byteSize); }

  std::error_code enqueueBuffer(orn::AudioQueueBuffer& buffer) override {
    auto* playable = buffers_.playable(buffer);
    if (!playable) return std::make_error_code(std::errc::invalid_argument);
    playable->takeSamples();
    std::erase(queued_, playable);
    queued_.push_back(playable);
    return {};
  }

  std::error_code setVolume(float volume) override {
    volume_ = orn::volumeInRange(volume);
    return {};
  }

  std::error_code start() override { return setPlaying(true); }
  std::error_code pause() override { return setPlaying(false); }
  std::error_code stop() override {
    const auto error = setPlaying(false);
    queued_.clear();
    isDry_ = true;
    return error;
  }

  void add(std::span<std::int32_t> frames) override {
    for (std::size_t i = 0; isPlaying_ && i < frames.size(); i += 2) {
      if (queued_.empty()) {
        if (!std::exchange(isDry_, true)) device_->lapse();
        return;
      }
      isDry_ = false;
      auto* buffer = queued_.front();
      const std::int32_t sample = orn::scaledSample(buffer->samples[buffer->played++], volume_);
      frames[i] += sample;
      frames[i + 1] += sample;
      if (buffer->played < buffer->samples.size()) continue;
      queued_.pop_front();
      callback_(*this, *buffer);  // which usually enqueues it again
    }
  }

 private:
  const OutputCallback callback_;
  orn::AudioQueueBuffers buffers_;
  std::deque<orn::AudioQueueBuffers::Buffer*> queued_;
  float volume_ = 1;
  bool isDry_ = true;
};

class WavPlayer final : public orn::PannedPlayer, DeviceSound {
 public:
  WavPlayer(std::shared_ptr<WavDevice> device, std::vector<std::int16_t> samples)
      : DeviceSound(std::move(device)), recording_(std::move(samples)) {}

  void setNumberOfLoops(int loops) override {
    device_->catchUp();
    recording_.setNumberOfLoops(loops);
  }
  std::error_code prepareToPlay() override { return {}; }
  std::error_code play() override { return setPlaying(true); }
  void stop() override { setPlaying(false); }

  void add(std::span<std::int32_t> frames) override {
    while (isPlaying_ && !frames.empty()) {
      const auto piece = recording_.next(static_cast<std::int64_t>(frames.size() / 2));
      for (std::size_t i = 0; i < piece.size(); ++i) {
        frames[2 * i] += orn::scaledSample(piece[i], gain_.left);
        frames[2 * i + 1] += orn::scaledSample(piece[i], gain_.right);
      }
      recording_.move(static_cast<std::int64_t>(piece.size()));
      frames = frames.subspan(piece.size() * 2);
      isPlaying_ = recording_.left() > 0;
      if (!isPlaying_) recording_.rewind();
    }
  }

 private:
  void setGain(orn::StereoGain gain) override {
    device_->catchUp();
    gain_ = gain;
  }

  orn::LoopedRecording recording_;
  orn::StereoGain gain_;
};

class WavOutput final : public orn::ToneOutput {
 public:
  WavOutput(const std::shared_ptr<orn::RunLoop>& loop, const std::string& path)
      : device_(std::make_shared<WavDevice>(loop, path)) {
    clock_ = loop->scheduledTimer(std::chrono::milliseconds(10), [weak = std::weak_ptr(device_)] {
      if (const auto device = weak.lock()) device->catchUp();
    });
  }
  ~WavOutput() override {
    clock_->invalidate();
    device_->close();
  }

  std::error_code status() override {
    return device_->isOpen() ? std::error_code() : std::make_error_code(std::errc::no_such_device);
  }
  std::uint64_t lapses() override { return device_->lapses(); }

 private:
  std::unique_ptr<orn::AudioQueue> newQueue(orn::AudioQueue::OutputCallback callback) override {
    return std::make_unique<WavQueue>(device_, std::move(callback));
  }
  std::unique_ptr<orn::AudioPlayer> newPlayer(std::vector<std::int16_t> samples) override {
    return std::make_unique<WavPlayer>(device_, std::move(samples));
  }

  std::shared_ptr<WavDevice> device_;
  std::shared_ptr<orn::Timer> clock_;
};

}  // namespace example
