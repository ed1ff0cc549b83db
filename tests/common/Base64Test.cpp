#include <string>

#include <gtest/gtest.h>

#include <ORNHearingTestSDK/common/Base64.h>

namespace orn {
namespace {

using namespace std::string_literals;

Bytes bytesOf(const std::string& text) { return Bytes(text.begin(), text.end()); }

TEST(Base64, AgreesWithTheStandardsVectors) {
  const struct {
    std::string plain, text;
  } table[] = {{"", ""},
               {"f", "Zg=="},
               {"fo", "Zm8="},
               {"foo", "Zm9v"},
               {"foob", "Zm9vYg=="},
               {"fooba", "Zm9vYmE="},
               {"foobar", "Zm9vYmFy"},
               {"\xFB\xFF\xBF", "+/+/"}};
  for (const auto& [plain, text] : table) {
    EXPECT_EQ(encodeBase64(bytesOf(plain)), text);
    EXPECT_EQ(decodeBase64(text), bytesOf(plain)) << text;
  }
}

TEST(Base64, UnusedBitsMayBeAnything) {
  EXPECT_EQ(decodeBase64("Zh=="), bytesOf("f"));
  EXPECT_EQ(decodeBase64("Zm9="), bytesOf("fo"));
}

TEST(Base64, RefusesEverythingElse) {
  for (const std::string& text :
       {"Z"s, "Zg"s, "Zg="s, "Zm9vZ"s, "="s, "=="s, "===="s, "A==="s, "Zg==Zg=="s, "Z=g="s, " Zg=="s, "Zg==\n"s,
        "Zm9\n"s, "Zm 9"s, "Zm-_"s, "Zm9\0"s, "Zm9\xC3"s, "Zm9v===="s, "Zm9-"s}) {
    EXPECT_EQ(decodeBase64(text), std::nullopt) << text;
  }
}

TEST(Base64, RestoresInputsLongerThanOneSlice) {
  for (const std::size_t length : {3145727U, 3145728U, 3145729U, 6300000U}) {
    Bytes bytes(length);
    for (std::size_t i = 0; i < length; ++i) bytes[i] = static_cast<std::uint8_t>(i * 7 + (i >> 11));
    const auto text = encodeBase64(bytes);
    EXPECT_EQ(text.size(), (length + 2) / 3 * 4);
    EXPECT_TRUE(decodeBase64(text) == bytes) << length;
  }
}

}  // namespace
}  // namespace orn
