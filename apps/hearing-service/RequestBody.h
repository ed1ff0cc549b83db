#pragma once

#include <string_view>

#include "hearing-service/Fields.h"

namespace orn::service {

// The two forms of a body. Both throw BadRequest on a body that is not of the form, on a name that comes twice and on a
// text that checkedText refuses.

/// "name=value&name=value&", the last "&" being optional and the whole text percent-escaped. Clients send "&", "=" and
/// "+" within a value as they stand: a value goes on past "=", and past "&" where no "=" tells of another field.
Fields formFields(std::string_view body);

/// A JSON object of texts.
Fields jsonFields(std::string_view body);

}  // namespace orn::service
