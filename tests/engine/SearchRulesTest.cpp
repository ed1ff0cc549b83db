// The searches as lines of answers: H heard, N not. After the last answer nothing is heard.

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <ORNHearingTestSDK/engine/AutomaticSearch.h>
#include <ORNHearingTestSDK/engine/LevelScale.h>
#include <ORNHearingTestSDK/engine/StandardSearch.h>

namespace orn {
namespace {

using Line = std::pair<const char*, const char*>;

/// The levels presented and the threshold, such as "40 30 35 -> 35".
std::string line(std::string answers, const LevelScale& scale, int row,
                 const std::function<SearchMove(int row, bool isHeard)>& judged) {
  std::erase(answers, ' ');
  std::string levels;
  for (std::size_t at = 0; at < 99; ++at) {
    levels += std::to_string(scale.levelOf(row)) + " ";
    const SearchMove move = judged(row, at < answers.size() && answers[at] == 'H');
    row = move.row;
    if (move.kind == SearchMove::Kind::Settle) return levels + "-> " + std::to_string(scale.levelOf(row));
  }
  return levels + "without end";
}

std::string automatic(const std::string& answers, std::vector<Answer> known = {}) {
  known.resize(static_cast<std::size_t>(kGridScale.rows), Answer::NotJudged);
  return line(answers, kGridScale, AutomaticSearch::kStartRow, [&](int row, bool isHeard) {
    known[static_cast<std::size_t>(row)] = isHeard ? Answer::Heard : Answer::NotHeard;
    return AutomaticSearch::next(known, row, isHeard);
  });
}

std::string standard(const std::string& answers, const LevelScale& scale) {
  std::vector<Presentations> levels(static_cast<std::size_t>(scale.rows));
  return line(answers, scale, StandardSearch::kStartRow, [&](int row, bool isHeard) {
    Presentations& level = levels[static_cast<std::size_t>(row)];
    ++(isHeard ? level.heard : level.notHeard);
    return StandardSearch::next(level, row, scale.rows, isHeard);
  });
}

TEST(AutomaticSearchRule, BracketsTheThreshold) {
  const Line table[] = {
      {"H H H H", "40 30 20 15 -> 15"},
      {"H H H N", "40 30 20 15 -> 20"},
      {"H N H", "40 30 35 -> 35"},
      {"H N N", "40 30 35 -> 40"},
      {"H H N H", "40 30 20 25 -> 25"},
      {"H H N N", "40 30 20 25 -> 30"},
      {"N H H", "40 50 45 -> 45"},
      {"N H N", "40 50 45 -> 50"},
      {"N N N N N N", "40 50 60 70 80 90 -> 90"},
      {"N N N N N H H", "40 50 60 70 80 90 85 -> 85"},
      {"N N N N N H N", "40 50 60 70 80 90 85 -> 90"},
  };
  for (const auto& [answers, levels] : table) EXPECT_EQ(automatic(answers), levels);
}

TEST(AutomaticSearchRule, RemembersAnEarlierRunOfTheEar) {
  // 15 to 45 dB HL: the marks left by a run in which all was heard, and by one in which 40 dB and more were heard.
  constexpr auto H = Answer::Heard, N = Answer::NotHeard, O = Answer::NotJudged;
  EXPECT_EQ(automatic("H H H H H", {H, H, O, H, O, H}), "40 35 25 20 15 -> 15");
  EXPECT_EQ(automatic("H", {O, O, O, N, N, H, H}), "40 -> 40") << "not heard below, heard above";
  EXPECT_EQ(automatic("H H", {O, O, O, N, H, H, N}), "40 35 -> 35");
  EXPECT_EQ(automatic("N", {O, O, O, O, O, O, H}), "40 -> 45");
}

TEST(StandardSearchRule, AcceptsALevelHeardMoreOftenThanNotOverThreePresentations) {
  const Line table[] = {
      {"HHH NN H NN H", "60 50 40 30 35 40 30 35 40 -> 40"},
      {"HHH NN H NN N", "60 50 40 30 35 40 30 35 40 -> 40"},
      {"HHH NN N H N H", "60 50 40 30 35 40 45 35 40 -> 40"},
      // 40 dB: one against two, two against two, three against two.
      {"HHH NN N H NN H N H NN H", "60 50 40 30 35 40 45 35 40 45 35 40 30 35 40 -> 40"},
      {"", "60 65 70 75 80 85 90 -> 90"},
      {"HHHHHHHH", "60 50 40 30 20 15 15 15 -> 15"},
  };
  for (const auto& [answers, levels] : table) EXPECT_EQ(standard(answers, kGridScale), levels);
}

TEST(StandardSearchRule, GoesLowerOnTheScaleOfTheRetest) {
  const Line table[] = {
      {"HHHHHHHH", "40 30 20 10 0 -5 -5 -5 -> -5"},
      {"HHHHH N H N H", "40 30 20 10 0 -5 0 -5 0 -> 0"},
      {"", "40 45 50 55 60 65 70 75 80 85 90 -> 90"},
  };
  for (const auto& [answers, levels] : table) EXPECT_EQ(standard(answers, kRetestScale), levels);
}

}  // namespace
}  // namespace orn
