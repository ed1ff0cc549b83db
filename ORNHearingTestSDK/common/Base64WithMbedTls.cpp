// Base64 by Mbed TLS, for platforms without OpenSSL; goes with AES256WithMbedTls.cpp.

#include <ORNHearingTestSDK/common/Base64.h>

#include <mbedtls/base64.h>

namespace orn {
namespace {

const unsigned char* bytesOf(const void* data) { return static_cast<const unsigned char*>(data); }

/// Mbed TLS lets line breaks and spaces pass.
bool isWellFormed(std::string_view text) {
  constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  if (text.size() % 4 != 0) return false;
  for (int padding = 0; padding < 2 && text.ends_with('='); ++padding) text.remove_suffix(1);
  return text.find_first_not_of(alphabet) == std::string_view::npos;
}

}  // namespace

std::optional<Bytes> decodeBase64(std::string_view text) {
  if (!isWellFormed(text)) return std::nullopt;
  Bytes bytes(text.size() / 4 * 3);
  std::size_t length = 0;
  if (mbedtls_base64_decode(bytes.data(), bytes.size(), &length, bytesOf(text.data()), text.size()) != 0)
    return std::nullopt;
  bytes.resize(length);
  return bytes;
}

std::string encodeBase64(std::span<const std::uint8_t> bytes) {
  std::string text((bytes.size() + 2) / 3 * 4 + 1, '\0');  // with a zero byte at its end
  std::size_t length = 0;
  if (mbedtls_base64_encode(reinterpret_cast<unsigned char*>(text.data()), text.size(), &length, bytesOf(bytes.data()),
                            bytes.size()) != 0)
    return {};
  text.resize(length);
  return text;
}

}  // namespace orn
