#pragma once

#include <cstdint>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace orn {

/// The audiogram of a test under way in a terminal, drawn over itself as it grows; where the output is no terminal, one
/// line for each threshold. O is the right ear, X the left one.
class TerminalAudiogram {
 public:
  TerminalAudiogram(std::FILE* out, const std::vector<std::string>& frequencies);

  /// The line below the picture.
  void say(const std::string& text);

  void setThreshold(bool isLeft, const std::string& hz, const std::string& db);

 private:
  void draw();
  std::string cell(std::int32_t hz, std::int32_t db) const;

  std::FILE* out_;
  bool isTerminal_;
  std::vector<std::int32_t> frequencies_;
  std::map<std::int32_t, std::int32_t> left_, right_;
  std::string text_;
  bool isDrawn_ = false;
};

}  // namespace orn
