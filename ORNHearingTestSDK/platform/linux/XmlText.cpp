#include <ORNHearingTestSDK/platform/linux/XmlText.h>

#include <bit>
#include <cstddef>
#include <cstdint>

namespace orn {
namespace {

bool isXmlCharacter(std::uint32_t c) {
  if (c < 0x20) return c == '\t' || c == '\n' || c == '\r';
  return c < 0xD800 || (c >= 0xE000 && c <= 0xFFFD) || (c >= 0x10000 && c <= 0x10FFFF);
}

/// Takes one character off the front; one that XML does not know if the bytes are no UTF-8.
std::uint32_t takeCharacter(std::string_view& text) {
  constexpr std::uint32_t none = 0;
  constexpr std::uint32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};  // by length: a longer form than needed is none
  const auto first = static_cast<std::uint8_t>(text.front());
  const auto ones = static_cast<std::size_t>(std::countl_one(first));
  const std::size_t length = ones == 0 ? 1 : ones;
  if (ones == 1 || length > 4 || length > text.size()) return none;
  std::uint32_t character = ones == 0 ? first : first & (0x7FU >> ones);
  for (const char next : text.substr(1, length - 1)) {
    if ((static_cast<std::uint8_t>(next) & 0xC0U) != 0x80U) return none;
    character = character << 6U | (static_cast<std::uint8_t>(next) & 0x3FU);
  }
  text.remove_prefix(length);
  return character < smallest[length] ? none : character;
}

}  // namespace

bool isXmlText(std::string_view text) {
  while (!text.empty()) {
    if (!isXmlCharacter(takeCharacter(text))) return false;
  }
  return true;
}

}  // namespace orn
