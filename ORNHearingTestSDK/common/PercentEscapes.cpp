#include <ORNHearingTestSDK/common/PercentEscapes.h>

#include <charconv>

#include <ORNHearingTestSDK/platform/Utf8.h>

namespace orn {

std::string percentEscaped(std::string_view text, std::string_view leftAlone) {
  constexpr auto digits = "0123456789ABCDEF";
  std::string escaped;
  for (const char c : text) {
    if (isLetterOrDigit(c) || leftAlone.find(c) != std::string_view::npos) {
      escaped += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      escaped += {'%', digits[byte >> 4], digits[byte & 15]};
    }
  }
  return escaped;
}

std::optional<std::string> percentUnescaped(std::string_view text) {
  std::string plain;
  while (!text.empty()) {
    if (text.front() != '%') {
      plain += text.front();
      text.remove_prefix(1);
      continue;
    }
    const std::string_view digits = text.substr(1, 2);
    unsigned char byte = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
    if (error != std::errc{} || digits.size() != 2 || end != digits.data() + 2) return std::nullopt;
    plain += static_cast<char>(byte);
    text.remove_prefix(3);
  }
  if (!isUtf8(plain)) return std::nullopt;
  return plain;
}

}  // namespace orn
