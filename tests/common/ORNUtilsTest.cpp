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
  for (const char* good : {"a@b.cn", "first.last+tag%x_y-z@mail.example.info", "a@-..com", "A@B.CoM"}) {
    EXPECT_TRUE(ORNUtils::validateEmail(good)) << good;
  }
  for (const char* bad :
       {"", "@b.cn", "a@.cn", "a@b", "a@b.c", "a@b.cloud", "a@b.c1", "a@@b.cn", "左@b.cn", "a@b.cn\n"}) {
    EXPECT_FALSE(ORNUtils::validateEmail(bad)) << bad;
  }
  for (const char* good : {"8613800000000", "13800000000", "1abcdefghij", "1左右左右左右左右左右", "1😀😀😀😀😀"}) {
    EXPECT_TRUE(ORNUtils::isMobileNumber(good)) << good;
  }
  for (const char* bad : {"", "861", "23800000000", "861380000000", "8513800000000", "1380000000"}) {
    EXPECT_FALSE(ORNUtils::isMobileNumber(bad)) << bad;
  }
}

TEST(ORNUtils, EscapesAndJson) {
  const std::string text = "aZ09-._~!*'();:@&=+$,/?%#[] \"<>\n左";
  const std::string escaped =
      "aZ09-._~%21%2A%27%28%29%3B%3A%40%26%3D%2B%24%2C%2F%3F%25%23%5B%5D%20%22%3C%3E%0A%E5%B7%A6";
  EXPECT_EQ(ORNUtils::encodeString(text), escaped);
  EXPECT_EQ(ORNUtils::decodeString(escaped), text);
  for (const char* broken : {"%", "%4", "%4g", "%-1", "a%E5", "%FF"}) {
    EXPECT_EQ(ORNUtils::decodeString(broken), std::nullopt) << broken;
  }
  nlohmann::json deep;
  for (int i = 0; i < 100; ++i) deep = nlohmann::json::array({deep});
  for (const nlohmann::json& bad :
       {nlohmann::json(1), nlohmann::json{{"a", NAN}}, nlohmann::json{{"a", "\xFF"}}, deep}) {
    EXPECT_EQ(ORNUtils::objectToJSON(bad), std::nullopt);
  }
  EXPECT_EQ(nlohmann::json::parse(*ORNUtils::objectToJSON({{"a", 1}})), nlohmann::json({{"a", 1}}));
}

TEST(ORNUtils, DatesAndSpans) {
  for (const auto& [span, days] :
       {std::pair(86399s, 0), {86400s, 1}, {-86399s, 0}, {-86401s, -1}, {8000000000s, 24855}}) {
    EXPECT_EQ(ORNUtils::calcDaysFromBegin(kEpoch, kEpoch + span), days) << span.count();
  }
  setenv("TZ", "CST-8", 1);
  const auto date = kEpoch + 1000000000s;
  EXPECT_EQ(ORNUtils::birthdayFormatter().stringFromDate(date), "2001-09-09");
  EXPECT_EQ(ORNUtils::dayFormatter().stringFromDate(date), "20010909");
  EXPECT_EQ(ORNUtils::timeFormatter().stringFromDate(date), "2001-09-09 09:46:40");
  EXPECT_EQ(ORNUtils::timeFormatter().dateFromString("2001-09-09 09:46:40"), date);
  for (const char* bad : {"", "2001-09-09", "2001-02-30 00:00:00", "2001-09-09 09:46:40 ", "9999-01-01 00:00:00"}) {
    EXPECT_EQ(ORNUtils::timeFormatter().dateFromString(bad), std::nullopt) << bad;
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
  EXPECT_FALSE(ORNUtils::urlfileRemoveAtPath(""));
  EXPECT_TRUE(std::filesystem::exists(documents));
  Platform::clearCurrent();
}

TEST(ORNUtils, TheChatOpensWhereItsApplicationIs) {
  std::string urls;
  ChatApplication chat{.canOpenURL = [&](auto& url) { return urls += url + " ", url == "chat://"; },
                       .openURL = [&](auto& url) { urls += url; },
                       .applicationScheme = "other",
                       .chatScheme = "talk"};
  EXPECT_FALSE(ORNUtils::showKefu());
  ORNUtils::setChatApplication(chat);
  EXPECT_FALSE(ORNUtils::showKefu());
  chat.applicationScheme = "chat";
  ORNUtils::setChatApplication(chat);
  EXPECT_TRUE(ORNUtils::showKefu());
  EXPECT_EQ(urls, "other:// chat:// talk://im/chat?chat_type=wpa&uin=6180339887&version=1&src_type=web");
  ORNUtils::setChatApplication(std::nullopt);
}

}  // namespace
}  // namespace orn
