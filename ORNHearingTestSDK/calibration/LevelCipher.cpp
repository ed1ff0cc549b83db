#include <ORNHearingTestSDK/calibration/LevelCipher.h>

#include <cstdint>

#include <ORNHearingTestSDK/common/AES256.h>
#include <ORNHearingTestSDK/common/Base64.h>
#include <ORNHearingTestSDK/platform/Utf8.h>

namespace orn {
namespace {

constexpr std::string_view kLevelKey = "Marlowe_Fennikarp_3746";

/// A character of several bytes is removed whole, so that base64 is left whatever the character is.
std::string_view withoutLastCharacter(std::string_view text) {
  const auto isContinuation = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; };
  while (!text.empty() && isContinuation(text.back())) text.remove_suffix(1);
  if (!text.empty()) text.remove_suffix(1);
  return text;
}

}  // namespace

std::string encipheredLevel(std::string_view value) {
  const auto ciphertext =
      AES256EncryptWithKey({reinterpret_cast<const std::uint8_t*>(value.data()), value.size()}, kLevelKey);
  return ciphertext ? encodeBase64(*ciphertext) + 'x' : std::string();
}

std::optional<std::string> decipheredLevel(std::string_view enciphered) {
  const auto ciphertext = decodeBase64(withoutLastCharacter(enciphered));
  if (!ciphertext) return std::nullopt;
  const auto plaintext = AES256DecryptWithKey(*ciphertext, kLevelKey);
  if (!plaintext) return std::nullopt;
  std::string value(plaintext->begin(), plaintext->end());
  if (!isUtf8(value)) return std::nullopt;
  return value;
}

}  // namespace orn
