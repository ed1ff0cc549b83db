#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include <ORNHearingTestSDK/platform/AudioOutput.h>

namespace orn::contract {

/// A new output, and how it is listened to. The suite lets go of the output first; the hooks must not hold it. The
/// functions below `runFor` may be empty, and the contracts that need them are not checked then.
struct AudioUnderTest {
  std::shared_ptr<AudioOutput> output;  ///< A new output.

  /// Lets a span of the machine's time pass, in which it plays and its loop makes the calls that are due.
  std::function<void(std::chrono::nanoseconds span)> runFor;

  /// What came out of the device since the last question, or since the output was made: interleaved left and right
  /// samples, silence included and without a gap. They may come late.
  std::function<std::vector<std::int16_t>()> heard;

  /// How many frames at the end of a sound the device may keep until more follows, for a server that mixes in whole
  /// periods.
  std::size_t framesHeldBack = 0;

  /// Takes away the only device there is, and brings it back; each returns when the output knows.
  std::function<void()> takeDeviceAway;
  std::function<void()> bringDeviceBack;  ///< Brings the only device back.
};

}  // namespace orn::contract
