#pragma once

#include <memory>
#include <utility>
#include <vector>

#include <ORNHearingTestSDK/platform/ToneOutput.h>
#include <ORNHearingTestSDK/platform/web/WebAudioPlayer.h>
#include <ORNHearingTestSDK/platform/web/WebAudioQueue.h>
#include <ORNHearingTestSDK/platform/web/WebSound.h>

namespace orn {

/// The page's sound: queues and players over one AudioWorklet, added up there. It can't choose a device, and there is
/// none until the page has opened the sound. Callbacks of queues come on the page's one main thread.
class WebAudioOutput final : public ToneOutput {
 public:
  /// The loop must be the page's.
  explicit WebAudioOutput(std::shared_ptr<RunLoop> runLoop) { state_->runLoop = std::move(runLoop); }
  ~WebAudioOutput() override {
    state_->isOpen = false;
    WebStream::silence(*state_);
  }

  std::error_code useCurrentDevice() override { return webSoundStatus(); }

  std::error_code status() override {
    watchWebSound();
    return webSoundStatus();
  }

  std::uint64_t lapses() override {
    watchWebSound();
    return state_->lapses;
  }

 private:
  std::unique_ptr<AudioQueue> newQueue(AudioQueue::OutputCallback callback) override {
    return std::make_unique<WebAudioQueue>(state_, std::move(callback));
  }

  std::unique_ptr<AudioPlayer> newPlayer(std::vector<std::int16_t> samples) override {
    return std::make_unique<WebAudioPlayer>(state_, std::move(samples));
  }

  const std::shared_ptr<WebOutputState> state_ = std::make_shared<WebOutputState>();
};

}  // namespace orn
