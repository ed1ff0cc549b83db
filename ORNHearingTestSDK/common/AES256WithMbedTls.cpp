// The cipher by Mbed TLS, for platforms without OpenSSL: the build option ORN_CIPHER_SOURCE names this file, and the
// build links mbedcrypto.

#include <ORNHearingTestSDK/common/AES256.h>

#include <mbedtls/aes.h>
#include <mbedtls/platform_util.h>

#include <algorithm>
#include <array>

namespace orn {
namespace {

constexpr std::size_t kBlockLength = 16;

/// The key and what is derived from it, wiped at the end.
class Cipher {
 public:
  Cipher(int direction, std::string_view keyText) : direction_(direction) {
    std::array<std::uint8_t, 32> key{};
    std::copy(keyText.begin(), keyText.end(), key.begin());
    const auto setKey = direction == MBEDTLS_AES_ENCRYPT ? mbedtls_aes_setkey_enc : mbedtls_aes_setkey_dec;
    mbedtls_aes_init(&context_);
    isReady_ = setKey(&context_, key.data(), 256) == 0;
    mbedtls_platform_zeroize(key.data(), key.size());
  }
  ~Cipher() { mbedtls_aes_free(&context_); }
  Cipher(const Cipher&) = delete;
  Cipher& operator=(const Cipher&) = delete;

  /// In place; a whole number of blocks.
  bool crypt(Bytes& bytes) {
    std::array<std::uint8_t, kBlockLength> vector{};
    return isReady_ &&
           mbedtls_aes_crypt_cbc(&context_, direction_, bytes.size(), vector.data(), bytes.data(), bytes.data()) == 0;
  }

 private:
  int direction_;
  bool isReady_ = false;
  mbedtls_aes_context context_;
};

bool isPadding(std::span<const std::uint8_t> block) {
  const std::size_t length = block.back();
  if (length == 0 || length > kBlockLength) return false;
  const auto padding = block.last(length);
  return std::all_of(padding.begin(), padding.end(), [&](std::uint8_t one) { return one == length; });
}

std::optional<Bytes> crypt(int direction, Bytes bytes, std::string_view key) {
  key = key.substr(0, key.find('\0'));
  if (key.size() > 32 || !Cipher(direction, key).crypt(bytes)) return std::nullopt;
  return bytes;
}

}  // namespace

std::optional<Bytes> AES256EncryptWithKey(std::span<const std::uint8_t> plaintext, std::string_view key) {
  const std::size_t padding = kBlockLength - plaintext.size() % kBlockLength;
  Bytes bytes(plaintext.begin(), plaintext.end());
  bytes.insert(bytes.end(), padding, static_cast<std::uint8_t>(padding));
  return crypt(MBEDTLS_AES_ENCRYPT, std::move(bytes), key);
}

std::optional<Bytes> AES256DecryptWithKey(std::span<const std::uint8_t> ciphertext, std::string_view key) {
  if (ciphertext.empty() || ciphertext.size() % kBlockLength != 0) return std::nullopt;
  auto bytes = crypt(MBEDTLS_AES_DECRYPT, Bytes(ciphertext.begin(), ciphertext.end()), key);
  if (!bytes || !isPadding(std::span(*bytes).last(kBlockLength))) return std::nullopt;
  bytes->resize(bytes->size() - bytes->back());
  return bytes;
}

}  // namespace orn
