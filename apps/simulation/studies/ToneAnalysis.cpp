#include "simulation/studies/ToneAnalysis.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdlib>
#include <numbers>
#include <vector>

#include <ORNHearingTestSDK/platform/SampleFormat.h>

namespace orn::simulation {
namespace {

using Samples = std::span<const std::int16_t>;
using Complex = std::complex<double>;

constexpr std::int32_t kRoundingSteps = 2;
const double kTwentyDown = std::pow(10.0, -20.0 / 20);
const double kOneDown = std::pow(10.0, -1.0 / 20);

/// The turn of the n-th sample of a cycle of so many samples.
Complex turn(std::size_t n, std::size_t cycle) {
  return std::polar(1.0, -2 * std::numbers::pi * static_cast<double>(n % cycle) / static_cast<double>(cycle));
}

/// The sine in each cycle-long window, its amplitude in steps of 16 bits and its phase against the first sample.
std::vector<Complex> cycleByCycle(Samples samples, std::size_t cycle) {
  std::vector<Complex> turns;
  for (std::size_t n = 0; n < cycle; ++n) turns.push_back(turn(n, cycle));
  std::vector<Complex> windows;
  if (samples.size() < cycle) return windows;
  Complex sum = 0;
  for (std::size_t n = 0; n < samples.size(); ++n) {
    if (n >= cycle) windows.push_back(2.0 * sum / static_cast<double>(cycle));
    sum += static_cast<double>(samples[n]) * turns[n % cycle];
    if (n >= cycle) sum -= static_cast<double>(samples[n - cycle]) * turns[n % cycle];
  }
  windows.push_back(2.0 * sum / static_cast<double>(cycle));
  return windows;
}

/// Amplitude of a sine of so many turns per sample in samples that hold whole cycles of it, or very nearly (Goertzel
/// 1958).
double amplitudeAt(double turns, Samples samples) {
  const double factor = 2 * std::cos(2 * std::numbers::pi * turns);
  double last = 0, before = 0;
  for (const std::int16_t sample : samples) {
    const double next = sample + factor * last - before;
    before = last;
    last = next;
  }
  const double power = last * last + before * before - factor * last * before;
  return 2 * std::sqrt(std::max(power, 0.0)) / static_cast<double>(samples.size());
}

double distortionOf(Samples steady, double hz) {
  const double turns = hz / kSampleRate;
  const auto wholeCycles = std::floor(static_cast<double>(steady.size()) * turns * (1 + 1e-9));
  const Samples whole =
      steady.first(std::min(steady.size(), static_cast<std::size_t>(std::lround(wholeCycles / turns))));
  double power = 0;
  for (int order = 2; order * turns < 0.5 - 1e-6; ++order) power += std::pow(amplitudeAt(order * turns, whole), 2);
  return std::sqrt(power) / amplitudeAt(turns, whole);
}

double amplitudeOf(std::span<const Complex> windows) {
  double sum = 0;
  for (const Complex& window : windows) sum += std::abs(window);
  return sum / static_cast<double>(windows.size());
}

/// From how far the phase advances in each cycle.
double frequencyOf(std::span<const Complex> windows, std::int32_t hz, std::size_t cycle) {
  double turned = 0;
  std::size_t cycles = 0;
  for (std::size_t n = cycle; n < windows.size(); n += cycle, ++cycles) {
    turned += std::arg(windows[n] * std::conj(windows[n - cycle]));
  }
  return hz * (1 + turned / (2 * std::numbers::pi * static_cast<double>(std::max<std::size_t>(cycles, 1))));
}

double seamOf(Samples steady, std::size_t cycle, double amplitude) {
  std::int32_t largest = 0;
  for (std::size_t n = cycle; n < steady.size(); ++n) {
    largest = std::max(largest, std::abs(steady[n] - steady[n - cycle]));
  }
  return std::max(0, largest - kRoundingSteps) / amplitude;
}

double inSeconds(std::ptrdiff_t frames) { return static_cast<double>(frames) / kSampleRate; }

void noteTimes(ToneFigures& figures, std::span<const Complex> windows, double amplitude) {
  const auto reaches = [&](double share) {
    return [least = share * amplitude](const Complex& window) { return std::abs(window) >= least; };
  };
  const auto twentyDown = std::find_if(windows.begin(), windows.end(), reaches(kTwentyDown));
  figures.riseSeconds = inSeconds(std::find_if(twentyDown, windows.end(), reaches(kOneDown)) - twentyDown);
  const auto lastTwentyDown = std::find_if(windows.rbegin(), windows.rend(), reaches(kTwentyDown));
  figures.fallSeconds = inSeconds(std::find_if(lastTwentyDown, windows.rend(), reaches(kOneDown)) - lastTwentyDown);
  double loudest = 0;
  for (const Complex& window : windows) loudest = std::max(loudest, std::abs(window));
  figures.overshoot = std::max(0.0, 20 * std::log10(loudest / amplitude));
}

}  // namespace

std::optional<ToneFigures> analysed(std::span<const std::int16_t> samples, std::int32_t hz, SteadyPart steady) {
  const auto cycle = static_cast<std::size_t>(kSampleRate / hz);
  const Samples steadySamples = samples.subspan(steady.first, steady.frames);
  const std::vector<Complex> windows = cycleByCycle(samples, cycle);
  const auto steadyWindows = std::span(windows).subspan(steady.first, steady.frames - cycle + 1);
  const double amplitude = amplitudeOf(steadyWindows);
  if (amplitude < 0.1) return std::nullopt;  // of a step of 16 bits
  ToneFigures figures;
  figures.amplitude = amplitude / kFullScale;
  figures.hz = frequencyOf(steadyWindows, hz, cycle);
  figures.distortion = distortionOf(steadySamples, figures.hz);
  figures.seam = seamOf(steadySamples, cycle, amplitude);
  noteTimes(figures, windows, amplitude);
  return figures;
}

}  // namespace orn::simulation
