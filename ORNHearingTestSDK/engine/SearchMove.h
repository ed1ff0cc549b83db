#pragma once

#include <cstdint>

namespace orn {

/// What is known of a level; the numbers are those of an item's hearStatus.
enum class Answer : std::int32_t { NotHeard = -1, NotJudged = 0, Heard = 1 };

/// What a search does after an answer: it presents another row, or settles one as the threshold.
struct SearchMove {
  enum class Kind { Present, Settle };

  Kind kind;
  int row;

  static constexpr SearchMove present(int row) { return {Kind::Present, row}; }
  static constexpr SearchMove settle(int row) { return {Kind::Settle, row}; }

  bool operator==(const SearchMove&) const = default;
};

}  // namespace orn
