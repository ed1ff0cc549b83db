#include <ORNHearingTestSDK/platform/Utf8.h>

#include <array>
#include <bit>
#include <cstdint>

namespace orn {

std::size_t utf8Length(std::string_view text) {
  constexpr std::array<std::uint32_t, 5> lowestOfLength = {0, 0, 0x80, 0x800, 0x10000};
  const auto first = static_cast<std::uint8_t>(text.front());
  const auto ones = static_cast<std::size_t>(std::countl_one(first));
  if (ones == 0) return 1;
  if (ones == 1 || ones > 4 || ones > text.size()) return 0;

  std::uint32_t code = first & (0x7FU >> ones);
  for (const char c : text.substr(1, ones - 1)) {
    const auto byte = static_cast<std::uint8_t>(c);
    if (std::countl_one(byte) != 1) return 0;
    code = code << 6 | (byte & 0x3FU);
  }
  const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
  return code < lowestOfLength[ones] || code > 0x10FFFF || isSurrogate ? 0 : ones;
}

bool isUtf8(std::string_view text) {
  while (!text.empty()) {
    const auto length = utf8Length(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

}  // namespace orn
