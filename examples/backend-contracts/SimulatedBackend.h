#pragma once

#include <memory>
#include <span>
#include <utility>
#include <vector>

#include <ORNHearingTestSDK/contracts/AudioSessionContract.h>
#include <ORNHearingTestSDK/contracts/AudioUnderTest.h>
#include <ORNHearingTestSDK/contracts/FileManagerContract.h>
#include <ORNHearingTestSDK/contracts/RunLoopContract.h>
#include <ORNHearingTestSDK/contracts/URLSessionContract.h>
#include <ORNHearingTestSDK/contracts/UserDefaultsContract.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>

// The library's simulated backend, in the form that the suite of contracts takes. Hooks hold weakly what the suite lets
// go of.

namespace example {

using std::chrono::nanoseconds;

inline orn::contract::RunLoopUnderTest loop() {
  const auto made = std::make_shared<orn::SimulatedRunLoop>();
  return {made, [weak = std::weak_ptr(made)](nanoseconds span) { weak.lock()->runFor(span); }, true};
}

inline orn::contract::AudioUnderTest audio() {
  const auto loop = std::make_shared<orn::SimulatedRunLoop>();
  const auto output = std::make_shared<orn::SimulatedAudioOutput>(loop);
  const auto heard = std::make_shared<std::vector<std::int16_t>>();
  output->addListener([heard](std::int64_t, std::span<const std::int16_t> samples) {
    heard->insert(heard->end(), samples.begin(), samples.end());
  });
  const std::weak_ptr weak = output;
  return {.output = output,
          .runFor = [loop](nanoseconds span) { loop->runFor(span); },
          .heard = [heard] { return std::exchange(*heard, {}); },
          .takeDeviceAway = [weak] { weak.lock()->setDevicePresent(false); },
          .bringDeviceBack = [weak] { weak.lock()->setDevicePresent(true); }};
}

inline orn::contract::AudioSessionUnderTest session() {
  const auto loop = std::make_shared<orn::SimulatedRunLoop>();
  const auto made = std::make_shared<orn::SimulatedAudioSession>();
  const std::weak_ptr weak = made;
  return {
      .session = made,
      .runFor = [loop](nanoseconds span) { loop->runFor(span); },
      .plug = [weak] { weak.lock()->plugAudiometer("KV50-1234", "AA:BB:CC:DD:EE:FF"); },
      .unplug = [weak] { weak.lock()->unplug(); },
      .unplugAll =
          [weak] { weak.lock()->setRoute({}, std::nullopt, orn::kAudioSessionRouteChangeReasonOldDeviceUnavailable); },
      .interrupt = [weak](std::int32_t type) { weak.lock()->interrupt(type); }};
}

inline orn::contract::URLSessionUnderTest network() {
  const auto loop = std::make_shared<orn::SimulatedRunLoop>();
  const auto made = std::make_shared<orn::SimulatedURLSession>(loop);
  made->script("/answer", {"the answer", {}});
  made->script("/silent", {"never", {}}, std::chrono::hours(1));
  return {.session = made,
          .runFor = [loop](nanoseconds span) { loop->runFor(span); },
          .callsFromLoop = true,
          .answeringUrl = "http://host/answer",
          .answer = "the answer",
          .brokenStatusUrl = {},  // it has no status
          .refusingUrl = "http://host/nobody",
          .silentUrl = "http://host/silent",
          .arrived = [weak = std::weak_ptr(made)] { return weak.lock()->requests(); }};
}

/// In memory only: there is nothing to open again, and no disk.
inline orn::contract::UserDefaultsUnderTest defaults() {
  return {.defaults = std::make_shared<orn::SimulatedUserDefaults>(), .reopen = {}, .withFullDisk = {}};
}

inline orn::contract::FileManagerUnderTest files() {
  return {.files = std::make_shared<orn::SimulatedFileManager>(), .withFullDisk = {}};
}

inline std::shared_ptr<orn::Device> device() { return std::make_shared<orn::SimulatedDevice>(); }

}  // namespace example
