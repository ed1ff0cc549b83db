#pragma once

#include <stdexcept>

namespace orn::service {

/// A request that the service refuses; what() tells the client why and never repeats what the client sent.
class BadRequest : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace orn::service
