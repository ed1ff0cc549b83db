#include "hearing-test/ListenerOptions.h"

#include <charconv>
#include <map>
#include <CLI/CLI.hpp>

#include "hearing-test/CommonOptions.h"

namespace orn {
namespace {

/// The listener's thresholds if none are given at all.
const std::vector<std::string> kSomebodysRight{"500=15", "1000=12", "2000=20", "4000=35"};
const std::vector<std::string> kSomebodysLeft{"500=20", "1000=25", "2000=40", "4000=55"};

std::string checkThreshold(const std::string& text) {
  const auto equals = text.find('=');
  if (equals == std::string::npos) return "'" + text + "' is not of the form HZ=DB";
  double db = 0;
  const char* textEnd = text.data() + text.size();
  const auto [end, error] = std::from_chars(text.data() + equals + 1, textEnd, db);
  if (error != std::errc{} || end != textEnd || !(db >= -1000 && db <= 1000)) {
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
                  "Thresholds of the left ear, HZ=DB,...; 20 dB at other frequencies. Without --left "
                  "and --right the listener has a mild loss")
      ->delimiter(',')
      ->check(checkThreshold);
  command.add_option("--right", right_, "Thresholds of the right ear")->delimiter(',')->check(checkThreshold);
  addChances(command, slope_, guess_, lapse_);
  command.add_option("--seed", seed_, "Seed of the listener's random choices")->capture_default_str();
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

}  // namespace orn
