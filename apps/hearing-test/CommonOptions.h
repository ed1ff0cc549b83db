#pragma once

#include <string>
#include <vector>

#include <ORNHearingTestSDK/calibration/CalibrationCheck.h>

#include "simulation/runs/TestRun.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace orn {

// The options that several commands take, and what their texts stand for.

/// Whether an option may also be "both".
enum class Choice { OfOne, OfOneOrBoth };

/// --type: "auto" or "standard".
void addType(CLI::App& command, std::string& type, Choice choice = Choice::OfOne);
std::vector<simulation::TestType> typesNamed(const std::string& type);
const char* nameOf(simulation::TestType type);

/// --path: "audiometer" or "earphones".
CLI::Option* addPath(CLI::App& command, std::string& path, Choice choice = Choice::OfOne);
std::vector<OutputPath> pathsNamed(const std::string& path);
const char* nameOf(OutputPath path);

/// --frequencies: in Hz and in test order, texts such as "1000".
void addFrequencies(CLI::App& command, std::vector<std::string>& frequencies);
std::vector<std::string> shortTest();
std::vector<std::string> frequencyKeys(const std::vector<std::string>& frequencies);

/// Empty if a text is one of the seven frequencies in Hz, else what is wrong with it.
std::string checkFrequency(const std::string& text);

/// --slope, --guess and --lapse of a virtual listener.
void addChances(CLI::App& command, double& slope, double& guess, double& lapse);

/// --calibration: a file.
CLI::Option* addCalibration(CLI::App& command, std::string& file);

/// --json.
void addJson(CLI::App& command, bool& json);

}  // namespace orn
