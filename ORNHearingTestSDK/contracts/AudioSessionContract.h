#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>

#include <ORNHearingTestSDK/contracts/Contract.h>
#include <ORNHearingTestSDK/platform/AudioSession.h>

namespace orn::contract {

/// A new session on a machine with an output, and what happens to it. The suite lets go of the session first; the hooks
/// must not hold it. Those below `runFor` may be empty, and the contracts that need them are not checked then.
struct AudioSessionUnderTest {
  std::shared_ptr<AudioSession> session;  ///< A new session, with nothing plugged in.

  /// Lets a span of the machine's time pass, in which its loop makes the calls that are due.
  std::function<void(std::chrono::nanoseconds span)> runFor;

  /// False for an output whose volume nobody can read or set.
  bool hasVolume = true;

  /// Makes another device the output.
  std::function<void()> plug;
  std::function<void()> unplug;  ///< Takes away the device that is the output; others may be left.

  /// Takes all outputs away.
  std::function<void()> unplugAll;

  /// An interruption of the sound, such as a call, begins (type 1) or ends (0).
  std::function<void(std::int32_t type)> interrupt;
};

Report checkAudioSession(const std::function<AudioSessionUnderTest()>& make);

}  // namespace orn::contract
