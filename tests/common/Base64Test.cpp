#include <string>

#include <gtest/gtest.h>

#include <ORNHearingTestSDK/common/Base64.h>

namespace orn {
namespace {

using namespace std::string_literals;

Bytes bytesIn(const std::string& text) { return Bytes(text.begin(), text.end()); }

TEST(Base64, AgreesWithTheStandardsVectors) {
  const struct {
    std::string plain, text;
  } table[] = {{"", ""},        {"f", "Zg=="},          {"fo", "Zm8="},
               {"foo", "Zm9v"}, {"foobar", "Zm9vYmFy"}, {"\xFB\xFF\xBF", "+/+/"}};
  for (const auto& [plain, text] : table) {
    EXPECT_EQ(encodeBase64(bytesIn(plain)), text);
    EXPECT_EQ(decodeBase64(text), bytesIn(plain)) << text;
  }
  EXPECT_EQ(decodeBase64("Zh=="), bytesIn("f"));  // unused bits may be anything
  const Bytes large(5'000'000, 7);                // more than is coded in one piece
  EXPECT_TRUE(decodeBase64(encodeBase64(large)) == large);
}

TEST(Base64, RefusesEverythingElse) {
  for (const std::string& text :
       {"Z"s, "Zg"s, "Zg="s, "Zm9vZ"s, "="s, "=="s, "===="s, "A==="s, "Zg==Zg=="s, "Z=g="s, " Zg=="s, "Zg==\n"s,
        "Zm9\n"s, "Zm 9"s, "Zm-_"s, "Zm9\0"s, "Zm9\xC3"s, "Zm9v===="s, "Zm9-"s}) {
    EXPECT_EQ(decodeBase64(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace orn
