// Writes so many seconds of the tone stream at 1000 Hz to stdout, 48 kHz, 16 bits, mono, as fast as it goes.

#include <array>
#include <cstdio>
#include <cstdlib>

#include "benchmarks/AudiometerStream.h"

int main(int argc, char** argv) {
  const int blocks = argc > 1 ? std::atoi(argv[1]) * 25 / 2 : 0;  // of 80 ms
  orn::bench::AudiometerStream stream(1000);
  std::array<std::uint8_t, orn::kBlockBytes> block{};
  for (int i = 0; i < blocks; ++i) {
    stream.steadyBlock(block.data());
    if (std::fwrite(block.data(), block.size(), 1, stdout) != 1) return 1;
  }
  return std::fflush(stdout) == 0 ? 0 : 1;
}
