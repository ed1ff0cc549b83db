#include <ORNHearingTestSDK/common/AES256.h>

#include <algorithm>
#include <array>
#include <limits>
#include <memory>

#include <openssl/crypto.h>
#include <openssl/err.h>
#include <openssl/evp.h>

namespace orn {
namespace {

constexpr std::size_t kBlockLength = 16;
constexpr std::array<std::uint8_t, kBlockLength> zeroVector{};

enum class Direction { Decrypt = 0, Encrypt = 1 };

/// The key's 32 bytes, wiped at the end.
class KeyBuffer {
 public:
  explicit KeyBuffer(std::string_view text) { std::copy(text.begin(), text.end(), bytes_.begin()); }
  ~KeyBuffer() { OPENSSL_cleanse(bytes_.data(), bytes_.size()); }
  KeyBuffer(const KeyBuffer&) = delete;
  KeyBuffer& operator=(const KeyBuffer&) = delete;
  const std::uint8_t* data() const { return bytes_.data(); }

  static constexpr std::size_t length = 32;

 private:
  std::array<std::uint8_t, length> bytes_{};
};

/// Keeps a failure here out of OpenSSL's error queue, which the host application may read for its own connections.
class ErrorQueueMark {
 public:
  ErrorQueueMark() { ERR_set_mark(); }
  ~ErrorQueueMark() { ERR_pop_to_mark(); }
  ErrorQueueMark(const ErrorQueueMark&) = delete;
  ErrorQueueMark& operator=(const ErrorQueueMark&) = delete;
};

std::optional<Bytes> crypt(Direction direction, std::span<const std::uint8_t> input, std::string_view keyText) {
  keyText = keyText.substr(0, keyText.find('\0'));
  if (keyText.size() > KeyBuffer::length) return std::nullopt;
  if (input.size() > std::numeric_limits<int>::max() - kBlockLength) return std::nullopt;

  const ErrorQueueMark mark;
  const KeyBuffer key(keyText);
  const std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> context(EVP_CIPHER_CTX_new(),
                                                                                &EVP_CIPHER_CTX_free);
  Bytes output(input.size() + kBlockLength);
  int body = 0, last = 0;
  const bool done =
      context != nullptr &&
      EVP_CipherInit_ex(context.get(), EVP_aes_256_cbc(), nullptr, key.data(), zeroVector.data(),
                        static_cast<int>(direction)) == 1 &&
      EVP_CipherUpdate(context.get(), output.data(), &body, input.data(), static_cast<int>(input.size())) == 1 &&
      EVP_CipherFinal_ex(context.get(), output.data() + body, &last) == 1;
  if (!done) return std::nullopt;
  output.resize(static_cast<std::size_t>(body) + static_cast<std::size_t>(last));
  return output;
}

}  // namespace

std::optional<Bytes> AES256EncryptWithKey(std::span<const std::uint8_t> plaintext, std::string_view key) {
  return crypt(Direction::Encrypt, plaintext, key);
}

std::optional<Bytes> AES256DecryptWithKey(std::span<const std::uint8_t> ciphertext, std::string_view key) {
  return crypt(Direction::Decrypt, ciphertext, key);
}

}  // namespace orn
