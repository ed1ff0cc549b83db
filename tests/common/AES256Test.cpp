#include <string>

#include <gtest/gtest.h>

#include <ORNHearingTestSDK/common/AES256.h>
#include <ORNHearingTestSDK/common/Base64.h>

namespace orn {
namespace {

using namespace std::string_literals;

const std::string key22 = "Marlowe_Fennikarp_3746";
const std::string key32 = "abcdefghijklmnopqrstuvwxyz012345";

Bytes bytesOf(const std::string& text) { return Bytes(text.begin(), text.end()); }

Bytes counted(std::size_t length) {
  Bytes bytes(length);
  for (std::size_t i = 0; i < length; ++i) bytes[i] = static_cast<std::uint8_t>(i * 37 + 11);
  return bytes;
}

TEST(AES256, AgreesWithTheOpensslCommand) {
  const struct {
    std::string key, plain, cipher;
  } table[] = {{key22, "", "wmk3e/3vpNeI9XZhDbBPmQ=="},
               {key22, "-70.5", "X5st8fjrqoTUe3FXS+eiSg=="},
               {key22, "0123456789abcdef", "DmR/QsSenn01SsvwW/2QYu4bMYCSPpuewv7LSBFiCSg="},
               {key32, "-70.5", "O0q3Zeghl1v3gckykJ9VPg=="}};
  for (const auto& [key, plain, cipher] : table) {
    EXPECT_EQ(encodeBase64(AES256EncryptWithKey(bytesOf(plain), key).value()), cipher);
  }
}

TEST(AES256, RestoresEveryLengthAndAlwaysPads) {
  for (std::size_t length = 0; length <= 64; ++length) {
    const auto plain = counted(length);
    const Bytes cipher = AES256EncryptWithKey(plain, key22).value();
    EXPECT_EQ(cipher.size(), (length / 16 + 1) * 16);
    EXPECT_EQ(AES256DecryptWithKey(cipher, key22), plain) << length;
    EXPECT_TRUE(!AES256DecryptWithKey(plain, key22) || (length % 16 == 0 && length > 0)) << length;
  }
}

TEST(AES256, KeysEndAtTheirFirstZeroAndFitIn32Bytes) {
  const auto plain = bytesOf("-70.5");
  const auto cipher = AES256EncryptWithKey(plain, key22);
  EXPECT_EQ(AES256EncryptWithKey(plain, key22 + "\0"s + "anything"), cipher);
  EXPECT_EQ(AES256EncryptWithKey(plain, key22 + std::string(40, '\0')), cipher);
  EXPECT_NE(AES256EncryptWithKey(plain, key22 + "0"), cipher);
  EXPECT_EQ(AES256EncryptWithKey(plain, key32 + "6"), std::nullopt);
  EXPECT_EQ(AES256DecryptWithKey(*cipher, key32 + "6"), std::nullopt);
}

TEST(AES256, RefusesEveryBadPadding) {
  // The padding of 16 bytes is a block of 16s. In CBC mode, changing a bit of the block before changes the same bit of
  // it, and of the values of its last byte only 1 gives a valid padding.
  auto cipher = AES256EncryptWithKey(counted(16), key22).value();
  const std::uint8_t right = cipher[15];
  for (int change = 1; change < 256; ++change) {
    cipher[15] = static_cast<std::uint8_t>(right ^ change);
    const auto plain = AES256DecryptWithKey(cipher, key22);
    EXPECT_EQ(plain ? plain->size() : 0U, (16 ^ change) == 1 ? 31U : 0U) << change;
  }
}

}  // namespace
}  // namespace orn
