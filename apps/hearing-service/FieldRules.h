#pragma once

#include <string_view>

namespace orn::service {

// What the texts of single fields may be; each throws BadRequest on anything else.

/// A whole number of dB from -10 to 120, where "-1" also stands for no result.
void requireThreshold(std::string_view text);

/// "0" or "1".
void requireBase(std::string_view text);

/// "1" for a woman, else "0".
void requireGender(std::string_view text);

/// A date of the calendar in eight digits, yyyyMMdd.
void requireBirthday(std::string_view text);

}  // namespace orn::service
