#pragma once

#include <cstdint>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// What is known of a level; the numbers are those of an item's hearStatus.
enum class Answer : std::int32_t { NotHeard = -1, NotJudged = 0, Heard = 1 };

/// What a search does after an answer: it presents another row, or settles one as the threshold.
struct SearchMove {
  /// What is to be done.
  enum class Kind { Present, Settle };

  Kind kind;  ///< What to do.
  int row;    ///< The row to present or to settle.

  static constexpr SearchMove present(int row) { return {Kind::Present, row}; }  ///< Presents a row's tone.
  static constexpr SearchMove settle(int row) { return {Kind::Settle, row}; }    ///< Makes a row the threshold.

  bool operator==(const SearchMove&) const = default;  ///< Whether both do the same.
};

}  // namespace orn
