#pragma once

#include <array>
#include <span>
#include <string>
#include <vector>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// The frequencies in Hz that have a tone, ascending.
inline constexpr std::array<int, 7> kToneFrequencies{125, 250, 500, 1000, 2000, 4000, 8000};

/// The same in the order in which a test takes them: up from 1000 Hz, then down from 500 Hz.
inline constexpr std::array<int, 7> kTestOrder{1000, 2000, 4000, 8000, 500, 250, 125};

/// Those of a short test, such as that of the screens, in its order.
inline constexpr std::array<int, 4> kShortTestOrder{1000, 2000, 4000, 500};

/// The key of a frequency: "1000hz" for 1000.
inline std::string frequencyKey(int hz) { return std::to_string(hz) + "hz"; }

inline std::vector<std::string> frequencyKeys(std::span<const int> frequencies) {
  std::vector<std::string> keys;
  for (const int hz : frequencies) keys.push_back(frequencyKey(hz));
  return keys;
}

}  // namespace orn
