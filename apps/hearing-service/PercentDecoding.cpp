#include "hearing-service/PercentDecoding.h"

#include <charconv>

#include "hearing-service/BadRequest.h"

namespace orn::service {
namespace {

char escapedByte(std::string_view digits) {
  unsigned byte = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
  if (digits.size() != 2 || error != std::errc{} || end != digits.data() + 2) {
    throw BadRequest("a percent escape lacks its two digits");
  }
  return static_cast<char>(byte);
}

}  // namespace

std::string percentDecoded(std::string_view text) {
  std::string decoded;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] != '%') {
      decoded += text[at];
    } else {
      decoded += escapedByte(text.substr(at + 1, 2));
      at += 2;
    }
  }
  return decoded;
}

}  // namespace orn::service
