#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/calibration/ORNDeviceCorrect.h>

namespace orn {
namespace {

using nlohmann::json;
using namespace std::string_literals;

const auto parsed = &ORNDeviceCorrect::parse;

TEST(ORNDeviceCorrect, ReadsTheRecordsOfAListInTheirOrder) {
  const auto reply =
      parsed(R"({"rspCode":"17","rspDesc":"why","deviceVolumeIOS":[null,{"id":3},5,[{"id":9}],{"id":1}]})");
  const auto record = [](int id) { return json{{"base", false}, {"batch", 0}, {"id", id}}; };
  EXPECT_EQ(reply->toDictionary(),
            json({{"rspCode", 17}, {"rspDesc", "why"}, {"deviceVolumeIOS", {record(3), record(1)}}}));
  EXPECT_TRUE(parsed(R"({"deviceVolumeIOS":[]})")->deviceVolumeIOS());
  for (const char* list : {"null", "\"[]\"", "{\"id\":1}"}) {
    EXPECT_FALSE(parsed("{\"deviceVolumeIOS\":"s + list + "}")->deviceVolumeIOS()) << list;
  }
}

TEST(ORNDeviceCorrect, TextThatIsNoJsonObjectIsAnEmptyReply) {
  constexpr std::size_t depth = 1'000'000;
  const std::string open(depth, '['), deep = open + std::string(depth, ']');
  std::vector<std::string> texts{"\0"s, open, "{\"rspCode\":4,\"deviceVolumeIOS\":[{\"earPath\":" + deep + "}]}"};
  for (const char* text : {"null", "5", "[{\"rspCode\":5}]", "{\"rspCode\":5}}", "{\"rspCode\":1e999}",
                           "{\"rspCode\":5,}", "{\"rspDesc\":\"\xFF\",\"rspCode\":5}"}) {
    texts.emplace_back(text);
  }
  const std::string whole = R"({"rspCode":3,"rspDesc":"\u597d","deviceVolumeIOS":[{"id":1,"mac":[1.5]}]})";
  EXPECT_EQ(parsed(whole)->rspCode(), 3);
  for (std::size_t length = 0; length < whole.size(); ++length) texts.push_back(whole.substr(0, length));
  for (const std::string& text : texts) {
    EXPECT_EQ(parsed(text)->toDictionary(), json({{"rspCode", 0}})) << text.substr(0, 99);
  }
}

}  // namespace
}  // namespace orn
