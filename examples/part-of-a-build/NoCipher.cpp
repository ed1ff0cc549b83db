// A cipher and a Base64 for a host whose calibration never comes from the service, and which so needs no OpenSSL.
#include <ORNHearingTestSDK/common/AES256.h>
#include <ORNHearingTestSDK/common/Base64.h>

namespace orn {

std::optional<Bytes> AES256EncryptWithKey(std::span<const std::uint8_t> /*plaintext*/, std::string_view /*key*/) {
  return std::nullopt;
}

std::optional<Bytes> AES256DecryptWithKey(std::span<const std::uint8_t> /*ciphertext*/, std::string_view /*key*/) {
  return std::nullopt;
}

std::optional<Bytes> decodeBase64(std::string_view /*text*/) { return std::nullopt; }

std::string encodeBase64(std::span<const std::uint8_t> /*bytes*/) { return {}; }

}  // namespace orn
