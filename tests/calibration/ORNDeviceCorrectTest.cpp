#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/calibration/LevelCipher.h>
#include <ORNHearingTestSDK/calibration/ORNDeviceCorrect.h>

namespace orn {
namespace {

using nlohmann::json;
using namespace std::string_literals;

const auto parsed = &ORNDeviceCorrect::parse;

std::vector<std::int64_t> ids(const ORNDeviceCorrect& reply) {
  std::vector<std::int64_t> list;
  for (const auto& record : reply.deviceVolumeIOS().value_or(ORNDeviceCorrect::Records())) list.push_back(record->id());
  return list;
}

TEST(ORNDeviceCorrect, ReadsTheRecordsOfAListInTheirOrder) {
  const auto reply =
      parsed(R"({"rspCode":"17","rspDesc":"why","deviceVolumeIOS":[null,{"id":3},5,[{"id":9}],{"id":1}]})");
  EXPECT_EQ(reply->rspCode(), 17);
  EXPECT_EQ(reply->rspDesc(), "why");
  EXPECT_THAT(ids(*reply), testing::ElementsAre(3, 1));
  EXPECT_TRUE(parsed(R"({"deviceVolumeIOS":[]})")->deviceVolumeIOS());
  for (const char* list : {"null", "\"[]\"", "{\"id\":1}"}) {
    EXPECT_FALSE(parsed("{\"deviceVolumeIOS\":"s + list + "}")->deviceVolumeIOS()) << list;
  }
}

TEST(ORNDeviceCorrect, TextThatIsNoJsonObjectIsAnEmptyReply) {
  for (const std::string& text : {""s, "null"s, "[]"s, "[{\"rspCode\":5}]"s, "5"s, "\"x\""s, "<html>"s,
                                  "{\"rspCode\":5}}"s, "{\"rspCode\":1e999}"s, "{'rspCode':5}"s, "{\"rspCode\":5,}"s,
                                  "{\"rspDesc\":\"\xFF\",\"rspCode\":5}"s, "\0"s}) {
    const auto reply = parsed(text);
    EXPECT_EQ(reply->toDictionary(), json({{"rspCode", 0}})) << text;
  }
}

TEST(ORNDeviceCorrect, EveryTruncationOfAReplyIsAnEmptyReply) {
  const json sent = {
      {"rspCode", 3},
      {"rspDesc", "\u597d"},
      {"deviceVolumeIOS", {{{"id", 1}, {"base", "1"}, {"s1000", encipheredLevel("-70.5")}, {"mac", {1.5}}}}}};
  const std::string text = sent.dump();
  EXPECT_EQ(
      parsed(text)->toDictionary(),
      json({{"rspCode", 3},
            {"rspDesc", "\u597d"},
            {"deviceVolumeIOS", {{{"id", 1}, {"base", true}, {"batch", 0}, {"s1000", "-70.5"}, {"mac", {1.5}}}}}}));
  for (std::size_t length = 0; length < text.size(); ++length) {
    EXPECT_EQ(parsed(text.substr(0, length))->toDictionary(), json({{"rspCode", 0}})) << length;
  }
}

TEST(ORNDeviceCorrect, SurvivesDeepNesting) {
  constexpr std::size_t depth = 1'000'000;
  const std::string deep = std::string(depth, '[') + std::string(depth, ']');
  EXPECT_EQ(parsed(deep)->rspCode(), 0);
  EXPECT_EQ(parsed(std::string(depth, '['))->rspCode(), 0);
  const auto reply = parsed("{\"rspCode\":4,\"deviceVolumeIOS\":[" + deep + ",{\"id\":1,\"earPath\":" + deep +
                            ",\"s500\":" + deep + "}]}");
  EXPECT_EQ(reply->rspCode(), 0);
  EXPECT_FALSE(reply->deviceVolumeIOS());
}

}  // namespace
}  // namespace orn
