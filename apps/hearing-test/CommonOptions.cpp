#include "hearing-test/CommonOptions.h"

#include <algorithm>
#include <charconv>
#include <CLI/CLI.hpp>

#include <ORNHearingTestSDK/common/ToneFrequencies.h>

namespace orn {
namespace {

using simulation::TestType;

constexpr auto kBoth = "both";

template <class Value>
CLI::Option* addChoice(CLI::App& command, const std::string& option, std::string& text, const std::string& meaning,
                       Choice choice, std::initializer_list<Value> values) {
  std::vector<std::string> names;
  for (const Value value : values) names.emplace_back(nameOf(value));
  if (choice == Choice::OfOneOrBoth) names.emplace_back(kBoth);
  return command.add_option(option, text, meaning)->check(CLI::IsMember(names))->capture_default_str();
}

template <class Value>
std::vector<Value> named(const std::string& text, std::initializer_list<Value> values) {
  std::vector<Value> meant;
  std::copy_if(values.begin(), values.end(), std::back_inserter(meant),
               [&](Value value) { return text == kBoth || text == nameOf(value); });
  return meant;
}

constexpr auto kTypes = {TestType::Automatic, TestType::Standard};
constexpr auto kPaths = {OutputPath::Audiometer, OutputPath::Earphones};

std::string allFrequencies() {
  std::string all;
  for (const int hz : kToneFrequencies) all += (all.empty() ? "" : ", ") + std::to_string(hz);
  return all;
}

}  // namespace

void addType(CLI::App& command, std::string& type, Choice choice) {
  addChoice(command, "--type", type, "The kind of test", choice, kTypes);
}
std::vector<TestType> typesNamed(const std::string& type) { return named(type, kTypes); }
const char* nameOf(TestType type) { return type == TestType::Standard ? "standard" : "auto"; }

CLI::Option* addPath(CLI::App& command, std::string& path, Choice choice) {
  return addChoice(command, "--path", path, "Where the sound goes", choice, kPaths);
}
std::vector<OutputPath> pathsNamed(const std::string& path) { return named(path, kPaths); }
const char* nameOf(OutputPath path) { return path == OutputPath::Earphones ? "earphones" : "audiometer"; }

void addFrequencies(CLI::App& command, std::vector<std::string>& frequencies) {
  command.add_option("--frequencies", frequencies, "Frequencies in Hz, in test order (the standard test has its own)")
      ->delimiter(',')
      ->check(checkFrequency)
      ->capture_default_str();
}

std::vector<std::string> shortTest() {
  std::vector<std::string> texts;
  for (const int hz : kShortTestOrder) texts.push_back(std::to_string(hz));
  return texts;
}

std::vector<std::string> frequencyKeys(const std::vector<std::string>& frequencies) {
  std::vector<std::string> keys;
  for (const std::string& hz : frequencies) keys.push_back(frequencyKey(std::stoi(hz)));
  return keys;
}

std::string checkFrequency(const std::string& text) {
  int hz = 0;
  const char* textEnd = text.data() + text.size();
  const auto [end, error] = std::from_chars(text.data(), textEnd, hz);
  const bool isRead = error == std::errc{} && end == textEnd;
  if (isRead && std::find(kToneFrequencies.begin(), kToneFrequencies.end(), hz) != kToneFrequencies.end()) return {};
  return "'" + text + "' is none of " + allFrequencies() + " Hz";
}

void addChances(CLI::App& command, double& slope, double& guess, double& lapse) {
  command.add_option("--slope", slope, "Steepness of the psychometric function per dB; 0 is a perfect listener")
      ->check(CLI::Range(0.0, 1e6))
      ->capture_default_str();
  command.add_option("--guess", guess, "Probability of a press for a tone not heard")
      ->check(CLI::Range(0.0, 1.0))
      ->capture_default_str();
  command.add_option("--lapse", lapse, "Probability of no press for a tone heard")
      ->check(CLI::Range(0.0, 1.0))
      ->capture_default_str();
}

CLI::Option* addCalibration(CLI::App& command, std::string& file) {
  return command.add_option("--calibration", file, "Calibration reply of the service, as a JSON file")
      ->option_text("REPLY.json");
}

void addJson(CLI::App& command, bool& json) {
  command.add_flag("--json", json, "Prints one JSON object on standard output and nothing else there");
}

}  // namespace orn
