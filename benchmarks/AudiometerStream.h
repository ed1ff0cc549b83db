#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include <ORNHearingTestSDK/calibration/ORNDeviceVolumeIOS.h>
#include <ORNHearingTestSDK/engine/ORNManualHearingTest.h>
#include <ORNHearingTestSDK/platform/SampleFormat.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>

namespace orn::bench {

/// The tone stream of a manual test on an audiometer.
class AudiometerStream {
 public:
  explicit AudiometerStream(int hz) {
    Platform::setCurrent(machine_.platform());
    session_ = ORNManualHearingTest::init();
    session_->setKV50MAC("AA:BB:CC:DD:EE:FF");
    const auto record = std::make_shared<ORNDeviceVolumeIOS>();
    for (auto set : {&ORNDeviceVolumeIOS::setS125, &ORNDeviceVolumeIOS::setS1000, &ORNDeviceVolumeIOS::setS8000}) {
      ((*record).*set)("-50");
    }
    session_->setAb(record);
    session_->playAtHz(std::to_string(hz) + "hz", "60db");
    for (int fade = 0; fade < 20; ++fade) session_->playerGetData();
  }
  ~AudiometerStream() {
    session_.reset();
    Platform::clearCurrent();
  }
  AudiometerStream(const AudiometerStream&) = delete;
  AudiometerStream& operator=(const AudiometerStream&) = delete;

  /// The next block, into the buffer that is played.
  void steadyBlock(std::uint8_t* buffer) { std::memcpy(buffer, session_->playerGetData().data(), kBlockBytes); }

  /// The first block of a tone's fade-in.
  void fadingBlock(std::uint8_t* buffer) {
    session_->currentItem()->setAdjustzhenfu(0);
    steadyBlock(buffer);
  }

 private:
  SimulatedPlatform machine_;
  std::shared_ptr<ORNManualHearingTest> session_;
};

}  // namespace orn::bench
