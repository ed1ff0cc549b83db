#pragma once

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <vector>

namespace orn::reference {

// The stream as its rules say, sample by sample, for comparison.

using Block = std::vector<std::uint8_t>;
constexpr std::size_t kBytes = 7680;

struct Tone {
  int hz = 0;
  float target = 0;
  float reached = 0;
  bool mustStop = false;
  Block cycle{};  // made at first use and kept
};

inline bool isKnown(int hz) {
  return hz >= 125 && hz <= 8000 && 8000 % hz == 0 && std::has_single_bit(8000U / static_cast<unsigned>(hz));
}

inline void put(Block& block, float product) {
  const auto sample = static_cast<std::int32_t>(product);
  block.push_back(static_cast<std::uint8_t>(sample & 0xFF));
  block.push_back(static_cast<std::uint8_t>((sample >> 8) & 0xFF));
}

/// Full scale. The nudge takes exact halves, which the computed sine may miss from below, away from zero.
inline std::vector<float> sine(int hz) {
  const int count = 48000 / hz;
  std::vector<float> table;
  for (int n = 0; n < count; ++n) {
    const double exact = 32767 * std::sin(2 * std::numbers::pi * n / count) * (1 + 1e-13);
    table.push_back(static_cast<float>(std::round(exact)));
  }
  return table;
}

inline Block ramp(const Tone& tone, float from, float to) {
  Block block;
  if (!isKnown(tone.hz)) return Block(kBytes);
  const auto table = sine(tone.hz);
  const auto size = 2 * table.size(), cycles = kBytes / size;
  const float step = (std::max(to, 0.0F) - from) / static_cast<float>(cycles);
  for (std::size_t k = 0; k < cycles; ++k) {
    const float base = step * static_cast<float>(k) + from;
    for (std::size_t i = 0; i < size; i += 2) {
      put(block, (base + (step * static_cast<float>(i)) / static_cast<float>(size)) * table[i / 2]);
    }
  }
  return block;
}

inline Block steady(Tone* tone) {
  if (!tone || !isKnown(tone->hz)) return Block(kBytes);
  if (tone->cycle.empty()) {
    for (const float sample : sine(tone->hz)) put(tone->cycle, sample * tone->target);
  }
  Block block;
  while (block.size() < kBytes) block.insert(block.end(), tone->cycle.begin(), tone->cycle.end());
  return block;
}

inline float step(const Tone& tone) { return tone.target / static_cast<float>(std::max(2000 / tone.hz, 2)); }

struct Stream {
  Tone* current = nullptr;
  Tone* last = nullptr;

  void setCurrent(Tone* tone) {
    last = current;
    current = tone;
  }

  Block next() {
    if (current && current->mustStop) {
      if (current->reached <= 0) return Block(kBytes);
      const float from = current->reached;
      current->reached = std::max(from - step(*current), 0.0F);
      return ramp(*current, from, from - step(*current));
    }
    if (current == last) return steady(current);
    if (last && last->reached > 0) {
      const float from = last->reached;
      last->reached = from - step(*last);
      return ramp(*last, from, last->reached);
    }
    if (current && current->reached < current->target) {
      const float from = current->reached;
      current->reached = from + step(*current);
      return ramp(*current, from, current->reached);
    }
    return steady(current);
  }
};

}  // namespace orn::reference
