#include <ORNHearingTestSDK/common/PercentEscapes.h>

namespace orn {
namespace {

bool isLetterOrDigit(char c) { return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

}  // namespace

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

}  // namespace orn
