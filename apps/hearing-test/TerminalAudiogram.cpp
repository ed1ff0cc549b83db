#include "hearing-test/TerminalAudiogram.h"

#include <unistd.h>

#include <algorithm>

#include <ORNHearingTestSDK/common/NumericText.h>
#include <ORNHearingTestSDK/engine/LevelScale.h>

namespace orn {
namespace {

constexpr int kLines = kGridScale.rows + 2;

}  // namespace

TerminalAudiogram::TerminalAudiogram(std::FILE* out, const std::vector<std::string>& frequencies)
    : out_(out), isTerminal_(isatty(fileno(out)) != 0) {
  for (const std::string& hz : frequencies) frequencies_.push_back(intValue(hz));
  std::sort(frequencies_.begin(), frequencies_.end());
}

void TerminalAudiogram::say(const std::string& text) {
  text_ = text;
  if (isTerminal_) {
    draw();
  } else {
    std::fprintf(out_, "%s\n", text.c_str());
  }
  std::fflush(out_);
}

void TerminalAudiogram::setThreshold(bool isLeft, const std::string& hz, const std::string& db) {
  (isLeft ? left_ : right_)[intValue(hz)] = intValue(db);
  if (isTerminal_) {
    draw();
  } else {
    std::fprintf(out_, "  %6s: %s\n", hz.c_str(), db.c_str());
  }
  std::fflush(out_);
}

std::string TerminalAudiogram::cell(std::int32_t hz, std::int32_t db) const {
  const auto isAt = [&](const std::map<std::int32_t, std::int32_t>& ear) {
    const auto threshold = ear.find(hz);
    return threshold != ear.end() && threshold->second == db;
  };
  if (isAt(left_) && isAt(right_)) return "O X";
  if (isAt(left_)) return " X ";
  return isAt(right_) ? " O " : " . ";
}

void TerminalAudiogram::draw() {
  if (isDrawn_) std::fprintf(out_, "\033[%dA", kLines);
  isDrawn_ = true;
  std::fprintf(out_, "dB HL ");
  for (const std::int32_t hz : frequencies_) std::fprintf(out_, "%7d", hz);
  std::fprintf(out_, " Hz\033[K\n");
  for (int row = 0; row < kGridScale.rows; ++row) {
    const int db = kGridScale.levelOf(row);
    std::fprintf(out_, "%5d ", db);
    for (const std::int32_t hz : frequencies_) std::fprintf(out_, "    %s", cell(hz, db).c_str());
    std::fprintf(out_, "\033[K\n");
  }
  std::fprintf(out_, "%s\033[K\n", text_.c_str());
}

}  // namespace orn
