// The cipher of a host whose calibration never comes from the service, and which needs no OpenSSL.
#include <ORNHearingTestSDK/common/AES256.h>

std::optional<orn::Bytes> orn::AES256EncryptWithKey(std::span<const std::uint8_t> /*plaintext*/,
                                                    std::string_view /*key*/) {
  return std::nullopt;
}

std::optional<orn::Bytes> orn::AES256DecryptWithKey(std::span<const std::uint8_t> /*ciphertext*/,
                                                    std::string_view /*key*/) {
  return std::nullopt;
}
