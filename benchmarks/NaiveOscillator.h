#pragma once

#include <cstdint>
#include <numbers>
#include <span>
#include <math.h>

namespace orn::bench {

/// A tone without tables: a sine computed for each sample, at 48 kHz.
class NaiveOscillator {
 public:
  explicit NaiveOscillator(float hz) : step_(2 * std::numbers::pi_v<float> * hz / 48000) {}

  void fill(std::span<std::int16_t> samples) {
    for (std::int16_t& sample : samples) {
      sample = static_cast<std::int16_t>(12000 * sinf(phase_));
      phase_ += step_;
      if (phase_ > 2 * std::numbers::pi_v<float>) phase_ -= 2 * std::numbers::pi_v<float>;
    }
  }

 private:
  float step_, phase_ = 0;
};

}  // namespace orn::bench
