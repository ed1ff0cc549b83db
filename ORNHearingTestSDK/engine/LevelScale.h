#pragma once

#include <cstdint>

namespace orn {

/// The scale that levels are tested on: rows of 5 dB HL each, row 0 the quietest.
struct LevelScale {
  static constexpr int kStep = 5;  ///< Between two rows, in dB.

  int rows;    ///< How many.
  int lowest;  ///< dB HL of row 0

  constexpr int levelOf(int row) const { return lowest + kStep * row; }  ///< Of a row, in dB HL.
  constexpr int highest() const { return levelOf(rows - 1); }            ///< Of the last row, in dB HL.

  /// Cut towards zero, so that on the grid 12 dB is row 0 like 15 dB, and 10 dB is row -1. Any level has an answer.
  constexpr std::int64_t rowOf(std::int64_t level) const { return (level - lowest) / kStep; }
};

/// Of every column of a session's grid: 15 to 90 dB HL.
inline constexpr LevelScale kGridScale{16, 15};

/// Of the standard test's second look at 1000 Hz: -5 to 90 dB HL.
inline constexpr LevelScale kRetestScale{20, -5};

/// Of the picture of a result: -10 to 120 dB HL.
inline constexpr LevelScale kResultScale{27, -10};

}  // namespace orn
