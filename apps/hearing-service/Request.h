#pragma once

#include <string>

namespace orn::service {

constexpr std::size_t kLargestBody = std::size_t{1} << 20;

/// A request as it came over the wire.
struct Request {
  std::string method;
  std::string target;  ///< Path and query, still percent-escaped.
  std::string body;    ///< Of one that is larger than kLargestBody, the first kLargestBody + 1 bytes.
};

}  // namespace orn::service
