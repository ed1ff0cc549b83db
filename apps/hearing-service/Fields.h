#pragma once

#include <functional>
#include <map>
#include <span>
#include <string>
#include <string_view>

namespace orn::service {

/// The named texts of a request. The order in which they came has no meaning.
using Fields = std::map<std::string, std::string, std::less<>>;
using FieldNames = std::span<const std::string_view>;

constexpr std::size_t kLongestText = 256;  ///< In bytes, of every text that a client sends.

/// The text itself. Throws BadRequest if it is longer than kLongestText, holds a NUL or is not UTF-8.
std::string checkedText(std::string text);

/// Throws BadRequest unless the fields are exactly those named.
void requireExactly(const Fields& fields, FieldNames names);

/// Throws BadRequest if the field, which must be there, is empty.
const std::string& requiredText(const Fields& fields, std::string_view name);

}  // namespace orn::service
