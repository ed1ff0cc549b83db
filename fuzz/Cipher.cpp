// Base64, the cipher, calibration values and the numbers in texts: what goes in comes out again, and other bytes give
// nothing.

#include <fuzzer/FuzzedDataProvider.h>

#include <cmath>

#include <ORNHearingTestSDK/calibration/LevelCipher.h>
#include <ORNHearingTestSDK/common/AES256.h>
#include <ORNHearingTestSDK/common/Base64.h>
#include <ORNHearingTestSDK/common/NumericText.h>

#include "fuzz/Expect.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace orn;
  FuzzedDataProvider data(bytes, size);
  const std::string key = data.ConsumeRandomLengthString(40);
  const Bytes message = data.ConsumeRemainingBytes<std::uint8_t>();
  const std::string text(message.begin(), message.end());

  if (const auto decoded = decodeBase64(text)) {
    const std::string encoded = encodeBase64(*decoded);
    fuzz::expect(decodeBase64(encoded) == decoded, "base64 comes back");
    fuzz::expect(encoded.size() == text.size(), "base64 has one length");
  }
  fuzz::expect(decodeBase64(encodeBase64(message)) == message, "bytes come back from base64");

  AES256DecryptWithKey(message, key);
  const auto enciphered = AES256EncryptWithKey(message, key);
  fuzz::expect(enciphered.has_value() == (key.substr(0, key.find('\0')).size() <= 32), "a key has at most 32 bytes");
  if (enciphered) fuzz::expect(AES256DecryptWithKey(*enciphered, key) == message, "a message comes back");

  decipheredLevel(text);
  const auto level = decipheredLevel(encipheredLevel(text));
  fuzz::expect(!level || *level == text, "a level comes back or is no text");

  intValue(text);
  boolValue(text);
  fuzz::expect(!std::isnan(doubleValue(text)), "a number in a text is a number");
  return 0;
}
