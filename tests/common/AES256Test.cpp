#include <string>

#include <gtest/gtest.h>

#include <ORNHearingTestSDK/common/AES256.h>

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

std::string hex(const std::optional<Bytes>& bytes) {
  if (!bytes) return "nothing";
  std::string text;
  for (const auto byte : *bytes) {
    for (const int digit : {byte >> 4, byte & 15}) text += "0123456789abcdef"[digit];
  }
  return text;
}

TEST(AES256, AgreesWithTheOpensslCommand) {
  const struct {
    std::string key, plain, cipher;
  } table[] = {
      {key22, "", "c269377bfdefa4d788f576610db04f99"},
      {key22, "-70.5", "5f9b2df1f8ebaa84d47b71574be7a24a"},
      {key22, "0123456789abcdef", "0e647f42c49e9e7d354acbf05bfd9062ee1b3180923e9b9ec2fecb4811620928"},
      {key32, "-70.5", "3b4ab765e821975bf781c932909f553e"},
      {key32, "The quick brown fox jumps over the lazy dog",
       "be3520aaa4462ba1aa9a02e7d41492a4073a892327070c5ee5ebbdd2f3ee32260b9fe0bf1a7ae3308bc54d21a55b718e"},
  };
  for (const auto& [key, plain, cipher] : table) EXPECT_EQ(hex(AES256EncryptWithKey(bytesOf(plain), key)), cipher);
}

TEST(AES256, RestoresEveryLengthAndAlwaysPads) {
  for (std::size_t length = 0; length <= 64; ++length) {
    const auto plain = counted(length);
    const auto cipher = AES256EncryptWithKey(plain, key22);
    ASSERT_TRUE(cipher) << length;
    EXPECT_EQ(cipher->size(), (length / 16 + 1) * 16);
    EXPECT_EQ(AES256DecryptWithKey(*cipher, key22), plain) << length;
    if (length % 16 != 0 || length == 0) {
      EXPECT_EQ(AES256DecryptWithKey(plain, key22), std::nullopt) << length;
    }
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
  // In CBC mode, a bit changed in one block changes the same bit of the next block's plaintext. The padding of 16 bytes
  // of text is a whole block of 16s; of its last byte's variants only 1 is a valid padding again, and the unchanged
  // one.
  const auto cipher = AES256EncryptWithKey(counted(16), key22);
  ASSERT_TRUE(cipher);
  for (int change = 1; change < 256; ++change) {
    auto broken = *cipher;
    broken[15] = static_cast<std::uint8_t>(broken[15] ^ change);
    const bool padsOneByte = (16 ^ change) == 1;
    const auto plain = AES256DecryptWithKey(broken, key22);
    EXPECT_EQ(plain.has_value(), padsOneByte) << change;
    EXPECT_EQ(plain.value_or(Bytes()).size(), padsOneByte ? 31U : 0U);
  }
}

}  // namespace
}  // namespace orn
