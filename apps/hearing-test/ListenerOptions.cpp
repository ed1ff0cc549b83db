#include "hearing-test/ListenerOptions.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <string_view>
#include <CLI/CLI.hpp>

#include <ORNHearingTestSDK/audio/SineTables.h>

namespace orn {
namespace {

/// Who takes the test where no thresholds are given at all.
const std::vector<std::string> kSomebodysRight{"500=15", "1000=12", "2000=20", "4000=35"};
const std::vector<std::string> kSomebodysLeft{"500=20", "1000=25", "2000=40", "4000=55"};

bool isTestFrequency(std::int32_t hz) {
  return std::find(kToneFrequencies.begin(), kToneFrequencies.end(), hz) != kToneFrequencies.end();
}

template <class Number>
bool readsWholly(std::string_view text, Number& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc{} && end == text.data() + text.size();
}

/// Empty if the text is one of the seven frequencies, else what is wrong with it.
std::string checkFrequency(const std::string& text) {
  std::int32_t hz = 0;
  if (readsWholly(text, hz) && isTestFrequency(hz)) return {};
  return "'" + text + "' is none of 125, 250, 500, 1000, 2000, 4000, 8000 Hz";
}

std::string checkThreshold(const std::string& text) {
  const auto equals = text.find('=');
  if (equals == std::string::npos) return "'" + text + "' is not of the form HZ=DB";
  double db = 0;
  if (!readsWholly(std::string_view(text).substr(equals + 1), db) || !(db >= -1000 && db <= 1000)) {
    return "'" + text + "' does not give a level in dB";
  }
  return checkFrequency(text.substr(0, equals));
}

std::map<std::int32_t, double> thresholds(const std::vector<std::string>& texts) {
  std::map<std::int32_t, double> levels;
  for (const std::string& text : texts) {
    const auto equals = text.find('=');
    levels[std::stoi(text.substr(0, equals))] = std::stod(text.substr(equals + 1));
  }
  return levels;
}

}  // namespace

void ListenerOptions::addTo(CLI::App& command) {
  command
      .add_option("--left", left_,
                  "Thresholds of the left ear, HZ=DB,...; 20 dB where none is given. Without --left "
                  "and --right somebody with a mild loss takes the test")
      ->delimiter(',')
      ->check(checkThreshold);
  command.add_option("--right", right_, "Thresholds of the right ear")->delimiter(',')->check(checkThreshold);
  command.add_option("--slope", slope_, "Steepness of the listener's psychometric function per dB; 0 is perfect")
      ->check(CLI::Range(0.0, 1e6))
      ->capture_default_str();
  command.add_option("--guess", guess_, "Probability of a press for a tone not heard")->check(CLI::Range(0.0, 1.0));
  command.add_option("--lapse", lapse_, "Probability of no press for a tone heard")->check(CLI::Range(0.0, 1.0));
  command.add_option("--seed", seed_, "Seed of the listener's chances")->capture_default_str();
}

simulation::ListenerTraits ListenerOptions::traits() const {
  simulation::ListenerTraits traits;
  const bool isAnybodyGiven = !left_.empty() || !right_.empty();
  traits.left = thresholds(isAnybodyGiven ? left_ : kSomebodysLeft);
  traits.right = thresholds(isAnybodyGiven ? right_ : kSomebodysRight);
  traits.slope = slope_;
  traits.guess = guess_;
  traits.lapse = lapse_;
  traits.seed = seed_;
  return traits;
}

CLI::Option* addFrequencies(CLI::App& command, std::vector<std::string>& frequencies) {
  return command
      .add_option("--frequencies", frequencies, "Frequencies in Hz, in test order (the standard test has its own)")
      ->delimiter(',')
      ->check(checkFrequency)
      ->capture_default_str();
}

std::vector<std::string> frequencyKeys(const std::vector<std::string>& frequencies) {
  std::vector<std::string> keys;
  for (const std::string& hz : frequencies) keys.push_back(hz + "hz");
  return keys;
}

}  // namespace orn
