#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include <ORNHearingTestSDK/common/Bytes.h>
#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

// AES-256 (FIPS 197) in CBC mode (NIST SP 800-38A) with an initialisation vector of zeros and PKCS #7 padding (RFC
// 5652, 6.3). The key is a text, filled up with zero bytes to 32; it ends at its first zero byte, and a longer one
// gives no result. There is no authentication: a wrong key shows only by bad padding, which about one in 256 does not
// have. No state; any thread.
//
// The implementation is OpenSSL's. A platform without it brings its own one of these two functions, as the file that
// the build option ORN_CIPHER_SOURCE names.

/// The ciphertext, always longer than the input; nothing on failure.
ORN_EXPORT std::optional<Bytes> AES256EncryptWithKey(std::span<const std::uint8_t> plaintext, std::string_view key);

/// The plaintext; nothing if the input is empty, is not a whole number of 16-byte blocks or has bad padding.
ORN_EXPORT std::optional<Bytes> AES256DecryptWithKey(std::span<const std::uint8_t> ciphertext, std::string_view key);

}  // namespace orn
