#include <ORNHearingTestSDK/common/OneLine.h>

#include <ORNHearingTestSDK/platform/Utf8.h>

namespace orn {
namespace {

constexpr std::size_t kLongestLine = 200;

/// Of Unicode's category Cc, or one of its own line breaks.
bool endsLineOrControls(std::string_view character) {
  const auto first = static_cast<unsigned char>(character.front());
  if (character.size() == 1) return first < 0x20 || first == 0x7F;
  if (first == 0xC2) return static_cast<unsigned char>(character[1]) < 0xA0;
  return character == "\u2028" || character == "\u2029";
}

}  // namespace

std::string oneLine(std::string_view text) {
  std::string line;
  while (!text.empty()) {
    const std::size_t length = utf8Length(text);
    std::string_view shown = length == 0 ? "?" : text.substr(0, length);
    if (endsLineOrControls(shown)) shown = " ";
    if (line.size() + shown.size() > kLongestLine) return line + "...";
    line += shown;
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return line;
}

}  // namespace orn
