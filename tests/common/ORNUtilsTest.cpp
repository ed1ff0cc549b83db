#include <cmath>
#include <cstdlib>
#include <filesystem>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/common/ORNUtils.h>
#include <ORNHearingTestSDK/platform/FileManager.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>

namespace orn {
namespace {

using namespace std::chrono_literals;
constexpr std::chrono::system_clock::time_point kEpoch{};

TEST(ORNUtils, ValidatesAddressesAndNumbers) {
  const auto expect = [](auto check, bool isGood, std::initializer_list<const char*> texts) {
    for (const char* text : texts) EXPECT_EQ(check(text), isGood) << text;
  };
  expect(ORNUtils::validateEmail, true, {"a@b.cn", "first.last+tag%x_y-z@mail.example.info", "a@-..com", "A@B.CoM"});
  expect(ORNUtils::validateEmail, false, {"", "@b.cn", "a@.cn", "a@b", "a@b.c", "a@b.cloud", "a@b.c1", "a@@b.cn"});
  expect(ORNUtils::isMobileNumber, true,
         {"8613800000000", "13800000000", "1abcdefghij", "1左右左右左右左右左右", "1😀😀😀😀😀"});
  expect(ORNUtils::isMobileNumber, false, {"", "861", "23800000000", "861380000000", "8513800000000"});
}

TEST(ORNUtils, EscapesAndJson) {
  const std::string text = "aZ09-._~!*'();:@&=+$,/?%#[] <左";
  const std::string escaped = "aZ09-._~%21%2A%27%28%29%3B%3A%40%26%3D%2B%24%2C%2F%3F%25%23%5B%5D%20%3C%E5%B7%A6";
  EXPECT_EQ(ORNUtils::encodeString(text), escaped);
  EXPECT_EQ(ORNUtils::decodeString(escaped), text);
  for (const char* broken : {"%", "%4", "%4g", "%-1", "a%E5", "%FF"}) {
    EXPECT_EQ(ORNUtils::decodeString(broken), std::nullopt) << broken;
  }
  nlohmann::json deep;
  for (int i = 0; i < 65; ++i) deep = nlohmann::json::array({deep});
  for (const auto& bad : std::vector<nlohmann::json>{1, {{"a", NAN}}, {{"a", "\xFF"}}, deep}) {
    EXPECT_EQ(ORNUtils::objectToJSON(bad), std::nullopt);
  }
  EXPECT_EQ(nlohmann::json::parse(*ORNUtils::objectToJSON({{"a", 1}})), nlohmann::json({{"a", 1}}));
}

TEST(ORNUtils, DatesAndSpans) {
  for (const auto& [span, days] : {std::pair(86399s, 0), {86400s, 1}, {-86401s, -1}, {8000000000s, 24855}}) {
    EXPECT_EQ(ORNUtils::calcDaysFromBegin(kEpoch, kEpoch + span), days) << span.count();
  }
  setenv("TZ", "CST-8", 1);
  const auto date = kEpoch + 1000000000s;
  EXPECT_EQ(ORNUtils::birthdayFormatter().stringFromDate(date), "2001-09-09");
  EXPECT_EQ(ORNUtils::dayFormatter().stringFromDate(date), "20010909");
  EXPECT_EQ(ORNUtils::timeFormatter().stringFromDate(date), "2001-09-09 09:46:40");
  EXPECT_EQ(ORNUtils::timeFormatter().dateFromString("2001-09-09 09:46:40"), date);
  // Dates are read as far as the standard library's clock reaches.
  using Years = std::chrono::duration<double, std::ratio<31556952>>;
  const bool reaches9999 = Years(std::chrono::system_clock::time_point::max().time_since_epoch()) > Years(8030);
  for (const auto& [text, isDate] : {std::pair("", false),
                                     {"2001-09-09", true},
                                     {"2001-02-30", false},
                                     {"2001-9-09", false},
                                     {"9999-01-01", reaches9999}}) {
    EXPECT_EQ(ORNUtils::birthdayFormatter().dateFromString(text).has_value(), isDate) << text;
  }
}

TEST(ORNUtils, FilesOfURLsStayInTheDocumentsFolder) {
  const SimulatedPlatform machine;
  Platform::setCurrent(machine.platform());
  FileManager& files = *Platform::current().fileManager;
  const std::filesystem::path documents = files.documentsDirectory();
  for (const char* url : {"http://a.cn/b?c=1", "../../etc/passwd", "..", ".", "/"}) {
    const std::filesystem::path path = ORNUtils::filePathFromURL(url);
    EXPECT_EQ(path.lexically_normal().parent_path(), documents) << url;
    ASSERT_TRUE(files.writeAtomically(path, {}));
    EXPECT_TRUE(ORNUtils::urlfileExistsAtPath(url) && ORNUtils::urlfileRemoveAtPath(url)) << url;
    EXPECT_FALSE(ORNUtils::urlfileExistsAtPath(url) || ORNUtils::urlfileRemoveAtPath(url)) << url;
  }
  EXPECT_FALSE(ORNUtils::urlfileRemoveAtPath("")) << "that is the folder";
  Platform::clearCurrent();
}

TEST(ORNUtils, TheChatOpensWhereItsApplicationIs) {
  std::string urls;
  const auto asks = [&](auto& url) { return urls += url + " ", url == "chat://"; };
  EXPECT_FALSE(ORNUtils::showKefu());
  for (const std::string scheme : {"other", "chat"}) {
    ORNUtils::setChatApplication(ChatApplication{asks, [&](auto& url) { urls += url; }, scheme, "talk"});
    EXPECT_EQ(ORNUtils::showKefu(), scheme == "chat");
  }
  EXPECT_EQ(urls, "other:// chat:// talk://im/chat?chat_type=wpa&uin=6180339887&version=1&src_type=web");
  ORNUtils::setChatApplication(std::nullopt);
}

}  // namespace
}  // namespace orn
