#pragma once

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include <ORNHearingTestSDK/platform/LoopedRecording.h>
#include <ORNHearingTestSDK/platform/PannedPlayer.h>
#include <ORNHearingTestSDK/platform/SampleFormat.h>
#include <ORNHearingTestSDK/platform/web/WebStream.h>

namespace orn {

/// A recording that the audio thread is given a second ahead, so that a tone outlasts a stall of the main thread; a
/// change of gain and a stop are heard at once all the same.
class WebAudioPlayer final : public PannedPlayer {
 public:
  WebAudioPlayer(std::shared_ptr<WebOutputState> output, std::vector<std::int16_t> samples)
      : recording_(std::move(samples)),
        stream_(std::move(output), kSampleRate, [this](std::size_t most) { return next(most); }) {
    stream_.onEnd = [this] { recording_.rewind(); };
  }

  void setNumberOfLoops(int loops) override { recording_.setNumberOfLoops(loops); }
  std::error_code prepareToPlay() override { return stream_.device(); }
  std::error_code play() override { return recording_.isEmpty() ? stream_.device() : stream_.play(); }
  void stop() override { stream_.pause(); }

 private:
  void setGain(StereoGain gain) override { stream_.setGain(gain); }

  WebStream::Samples next(std::size_t most) {
    const auto samples = recording_.next(static_cast<std::int64_t>(most));
    recording_.move(static_cast<std::int64_t>(samples.size()));
    return {samples, recording_.left() == 0};
  }

  LoopedRecording recording_;
  WebStream stream_;
};

}  // namespace orn
