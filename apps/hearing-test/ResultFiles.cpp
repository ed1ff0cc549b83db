#include "hearing-test/ResultFiles.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <CLI/CLI.hpp>

#include <ORNHearingTestSDK/common/NumericText.h>
#include <ORNHearingTestSDK/results/TestCSV.h>

#ifdef ORN_HAS_SCREENS
#include "hearing-test/Pictures.h"
#endif

namespace orn {
namespace {

constexpr double kLargestDeviation = 1;  // in dB

void writeFile(const std::string& path, const std::string& contents) {
  std::ofstream file(path, std::ios::binary);
  file << contents;
  file.close();
  if (!file) throw std::runtime_error("can't write " + path);
}

/// Says how exact the levels at the output were if a listener measured every tone there; empty if not. Nobody here
/// measures the sound of the earphones themselves.
std::string levelVerification(const simulation::TestOutcome& outcome) {
  double largest = 0;
  for (const auto& one : outcome.presentations) {
    if (!one.measured) return "";
    largest = std::max(largest, std::abs(one.measured->level - intValue(one.db)));
  }
  if (outcome.presentations.empty() || largest > kLargestDeviation) return "";
  char text[100];
  std::snprintf(text, sizeof text, "digital level of %zu tones at the output, within %.1f dB",
                outcome.presentations.size(), largest);
  return text;
}

}  // namespace

void ResultFiles::addTo(CLI::App& command) {
  command.add_option("--csv", csv_, "Writes the thresholds as CSV")->option_text("FILE");
#ifdef ORN_HAS_SCREENS
  command.add_option("--png", png_, "Draws the audiogram, as PNG")->option_text("FILE");
  command.add_option("--svg", svg_, "The same as SVG, for any size")->option_text("FILE");
  command.add_option("--pdf", pdf_, "The same as PDF")->option_text("FILE");
  command.add_option("--report", report_, "Writes a report to print, as PDF")->option_text("FILE");
#endif
}

void ResultFiles::write(const simulation::TestOutcome& outcome, const std::string& device) const {
  const FinishedTest test{outcome.left,
                          outcome.right,
                          outcome.leftLoss,
                          outcome.rightLoss,
                          device,
                          std::chrono::system_clock::now(),
                          levelVerification(outcome)};
  if (!csv_.empty()) writeFile(csv_, csvOf(test));
#ifdef ORN_HAS_SCREENS
  if (!png_.empty() || !svg_.empty() || !pdf_.empty() || !report_.empty()) {
    const Pictures pictures;
    if (!png_.empty()) writeFile(png_, pictures.audiogram(test, PictureFormat::Png));
    if (!svg_.empty()) writeFile(svg_, pictures.audiogram(test, PictureFormat::Svg));
    if (!pdf_.empty()) writeFile(pdf_, pictures.audiogram(test, PictureFormat::Pdf));
    if (!report_.empty()) writeFile(report_, pictures.report(test));
  }
#endif
}

}  // namespace orn
