#include "hearing-service/PercentDecoding.h"

#include <ORNHearingTestSDK/common/PercentEscapes.h>

#include "hearing-service/BadRequest.h"

namespace orn::service {

std::string percentDecoded(std::string_view text) {
  auto plain = percentUnescaped(text);
  if (!plain) throw BadRequest("a percent escape lacks its two digits, or does not stand for UTF-8");
  return *std::move(plain);
}

}  // namespace orn::service
