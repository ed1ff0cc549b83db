#include <string>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/calibration/LevelCipher.h>
#include <ORNHearingTestSDK/calibration/ORNDeviceVolumeIOS.h>

namespace orn {
namespace {

using nlohmann::json;
using namespace std::string_literals;

const auto recordOf = &ORNDeviceVolumeIOS::initWithDictionary;

const char* const levelKeys[] = {"s125", "s250", "s500", "s1000", "s2000", "s4000", "s8000"};

TEST(LevelCipher, ReadsWhatTheOpensslCommandEnciphered) {
  EXPECT_EQ(decipheredLevel("X5st8fjrqoTUe3FXS+eiSg==x"), "-70.5");
  EXPECT_EQ(decipheredLevel("X5st8fjrqoTUe3FXS+eiSg==\xE4\xB8\xAD"), "-70.5") << "the last character says nothing";
  EXPECT_EQ(encipheredLevel("-70.5").substr(0, 24), "X5st8fjrqoTUe3FXS+eiSg==");
}

TEST(LevelCipher, DamagedTextsAndInvalidUtf8GiveNothing) {
  for (const std::string& text : {""s, "x"s, "X5st8fjrqoTUe3FXS+eiSg=="s, "X5st8fjrqoTUe3FXS+eiSg==xx"s, "AAAAx"s,
                                  " X5st8fjrqoTUe3FXS+eiSg==x"s, "\x80\x80\x80"s, "-70.5"s}) {
    EXPECT_EQ(decipheredLevel(text), std::nullopt) << text;
  }
  for (const std::string& text : {"\x80"s, "\xC1\xBF"s, "\xC2"s, "\xC2\x41"s, "\xE0\x9F\xBF"s, "\xED\xA0\x80"s,
                                  "\xF0\x8F\xBF\xBF"s, "\xF4\x90\x80\x80"s, "\xF8\x88\x80\x80\x80"s, "1\xFE"s}) {
    EXPECT_EQ(decipheredLevel(encipheredLevel(text)), std::nullopt);
  }
  for (const std::string& text : {""s, "-70\0"s, "\xC2\x80"s, "\xE0\xA0\x80"s, "\xED\x9F\xBF"s, "\xEE\x80\x80"s,
                                  "\xF0\x90\x80\x80"s, "\xF4\x8F\xBF\xBF"s, "12\xE4\xB8\xAD"s}) {
    EXPECT_EQ(decipheredLevel(encipheredLevel(text)), text);
  }
}

TEST(ORNDeviceVolumeIOS, GivesEveryFieldBackAndTheLevelsDeciphered) {
  const json plain = json::parse(R"({
    "id": 77, "base": true, "batch": 1, "ear": 2, "earPath": [1, "a"], "earplug_model": "2", "mac": "00:11",
    "machine": "m", "edition": "e", "correct_name": "phone", "system_volume": "7", "s125": "-1.25", "s250": "-2.5",
    "s500": "-5", "s1000": "-10", "s2000": "-20", "s4000": "-40", "s8000": "-80"})");
  json sent = plain;
  for (const char* key : levelKeys) sent[key] = encipheredLevel(plain[key].get<std::string>());
  sent["unknown"] = "ignored";
  const auto record = recordOf(sent);
  EXPECT_EQ(record->toDictionary(), plain);
  for (const auto& [key, text] : {std::pair("systemVolume", "7"), {"correctName", "phone"}, {"earplugModel", "2"}}) {
    EXPECT_EQ(record->valueForKey(key), text);
  }
  EXPECT_EQ(record->valueForKey("s750"), 0) << "is no key";
  for (const char* key : {"base", "batch", "ear", "earPath", "id", "mac", "s500"}) {
    EXPECT_EQ(record->valueForKey(key), plain[key]) << key;
  }
  EXPECT_TRUE(recordOf({})->valueForKey("ear").is_null());
}

TEST(ORNDeviceVolumeIOS, ReadsBooleansAndIntegersOfAnyType) {
  const struct {
    const char* value;
    bool boolean;
    std::int64_t integer;
  } table[] = {
      {"0", false, 0},    {"\"no\"", false, 0}, {"\"-12x\"", true, -12},    {"true", true, 1},
      {"0.5", true, 0},   {"-3.9", true, -3},   {"1e300", true, INT64_MAX}, {"18446744073709551615", true, INT64_MAX},
      {"null", false, 0}, {"[1]", false, 0}};
  for (const auto& [text, boolean, integer] : table) {
    const json value = json::parse(text);
    const auto record = recordOf({{"base", value}, {"batch", value}, {"id", value}});
    EXPECT_EQ(record->base(), boolean) << text;
    EXPECT_EQ(record->batch(), integer) << text;
    EXPECT_EQ(record->id(), integer) << text;
  }
}

TEST(ORNDeviceVolumeIOS, WrongTypesLeaveFieldsAbsent) {
  const json wrong[] = {nullptr, 5, -7.5, true, "", "-70.5", json::array({encipheredLevel("1")}), json::object()};
  for (const json& value : wrong) {
    json sent;
    for (const char* key : levelKeys) sent[key] = value;
    const auto record = recordOf(sent);
    for (const char* key : levelKeys) EXPECT_TRUE(record->valueForKey(key).is_null()) << value;
  }
  EXPECT_EQ(recordOf({{"earplug_model", 2}})->earplugModel(), std::nullopt);
  for (const json& value : wrong) {
    EXPECT_EQ(recordOf(value)->toDictionary(), recordOf(json::object())->toDictionary());
  }
}

}  // namespace
}  // namespace orn
