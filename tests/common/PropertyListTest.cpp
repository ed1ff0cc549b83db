#include <ORNHearingTestSDK/common/PropertyList.h>

#include <cstdint>
#include <limits>
#include <string>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace orn {
namespace {

using namespace std::string_literals;
using nlohmann::json;

std::optional<json> read(const std::string& bytes) {
  return dictionaryOfPropertyList({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
}

std::string plist(const std::string& root) { return "<plist version=\"1.0\">" + root + "</plist>"; }

json nested(int levels) {
  json value = 1;
  for (int i = 0; i < levels; ++i) value = i % 2 == 0 ? json::array({value}) : json{{"k", value}};
  return value;
}

const json kSample = {{"rspCode", 0},
                      {"rspDesc", "\u597d <&>\"' ]]>"},
                      {"deviceVolumeIOS", {{{"id", 7}, {"base", true}, {"s1000", "YWJjx"}, {"mac", {1.5, "x"}}}}}};

TEST(PropertyList, KeepsJsonValues) {
  for (const json& value :
       {json(true), json(std::numeric_limits<std::int64_t>::min()), json(0.1), json(5e-324), json(123456789012345678.0),
        json(3.0), json(""), json("  space \t\r\n "), json("<&>\"'&amp;]]><!-- -->"), json("\u597d\U0001F600"),
        json::array(), json::object(),
        json{{"", "empty key"}, {"a<&>\"b", 1}, {"\u597d", json::array({json::object()})}}, kSample, nested(63)}) {
    const json dictionary = {{"value", value}};
    SCOPED_TRACE(value);
    const json back = read(propertyListOf(dictionary).value()).value();
    EXPECT_EQ(back, dictionary);
    EXPECT_EQ(back.at("value").is_number_float(), value.is_number_float());
  }
}

TEST(PropertyList, RefusesWhatItHasNoFormFor) {
  for (const json& value :
       {json(), json("a\0b"s), json("\x01"), json("\x1F"), json("\xFF"), json("\xED\xA0\x80"), json{{"a\x02", 1}},
        json{{"a\0"s, 1}}, json{{"\xFF", 1}}, json(std::numeric_limits<std::uint64_t>::max()), nested(64)}) {
    EXPECT_FALSE(propertyListOf({{"value", value}})) << value.type_name();
    EXPECT_FALSE(propertyListOf({{"list", json::array({1, value})}})) << value.type_name();
  }
}

TEST(PropertyList, ReadsNothingFromOtherRootsAndTypesOrHalfAFile) {
  for (const std::string& root :
       {""s, "<array/>"s, "<string>x</string>"s, "<integer>1</integer>"s, "<true/>"s, "<unknown/>"s,
        "<dict><key>a</key><date>2001-01-01T00:00:00Z</date></dict>"s, "<dict><string>x</string></dict>"s,
        "<dict><key>a</key><array><data>AAAA</data></array></dict>"s, "<dict><key>&#0;</key><true/></dict>"s,
        "<dict><key>a\0</key><true/></dict>"s, "<dict><key>a\0b</key><true/></dict>"s,
        "<dict><key>a</key><string>&#x0;</string></dict>"s, "<dict><key>a</key><string>b\0c</string></dict>"s,
        "<dict><key>a</key><string>b&#00;c</string></dict>"s, "<dict><key>a</key><string>\xFF</string></dict>"s}) {
    EXPECT_FALSE(read(plist(root))) << root;
  }
  EXPECT_EQ(read(plist("<dict><key>a</key><integer>1</integer></dict>")), json({{"a", 1}}));
  for (const std::string& bytes :
       {""s, "\0"s, "bplist00\xD1\x01\x02\x08\0\0\0\0\0\0\x01\x01\0\0\0\0\0\0\0\x03\0\0\0\0\0\0\0\0"s, "{a=1;}"s,
        "<?xml"s, "<!DOCTYPE"s, "<plist><dict><key>"s, std::string(100'000, '<')}) {
    EXPECT_FALSE(read(bytes)) << bytes.substr(0, 40);
  }
  std::string deep;
  for (int i = 0; i < 1'000'000; ++i) deep += i % 2 == 0 ? "<dict><key>a</key>" : "<array>";
  EXPECT_FALSE(read(plist(deep)));
  EXPECT_FALSE(read(plist("<dict><key>a</key>" + deep.substr(0, 100'000) + "</dict>")));

  const std::string whole = propertyListOf(kSample).value();
  for (std::size_t length = 0; length < whole.find("</plist>"); ++length) {
    EXPECT_EQ(read(whole.substr(0, length)).value_or(kSample), kSample)
        << length << " bytes are read as something else";
  }
}

}  // namespace
}  // namespace orn
