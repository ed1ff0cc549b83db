#include <dlfcn.h>

#include <cctype>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/results/ORNListenTest.h>

namespace orn {
namespace {

using nlohmann::json;

enum Kind { Value, Number, Flag };

struct Field {
  std::string key;
  Kind kind;
};

/// In the order of the record; "#" marks a number and "?" a flag.
const std::string kKeys =
    "correctName id left1000hz ordinaryEmail personID leftResult_d# left125hz right4000hz leftScore# diagnose? score# "
    "ordinaryUserID rightResult leftResult left2000hz left250hz grade rightScore# rightResul_d# left500hz "
    "deviceVolumeIOS right8000hz right500hz right125hz noise ordinaryPhone right2000hz createDate# ordinaryUserName "
    "base# right250hz correctModel personName right1000hz calibration? left4000hz headset versions left8000hz";

std::vector<Field> fieldsOf(const std::string& keys) {
  std::vector<Field> fields;
  std::istringstream words(keys);
  for (std::string word; words >> word;) {
    const Kind kind = word.back() == '#' ? Number : word.back() == '?' ? Flag : Value;
    fields.push_back({kind == Value ? word : word.substr(0, word.size() - 1), kind});
  }
  return fields;
}

const std::vector<Field> kFields = fieldsOf(kKeys);

/// "leftResult_d" is the key of kORNListenTestLeftResultD.
std::string constantOf(const std::string& key) {
  std::string name = "kORNListenTest";
  bool isCapital = true;
  for (const char c : key) {
    if (c != '_') name += isCapital ? static_cast<char>(std::toupper(c)) : c;
    isCapital = c == '_';
  }
  return name;
}

const auto record = &ORNListenTest::modelObjectWithDictionary;

/// A value of its own under every key.
json fullDictionary() {
  json dictionary;
  double number = 0.25;
  for (const Field& field : kFields) {
    number += 1;
    if (field.kind == Value) dictionary[field.key] = "value of " + field.key;
    if (field.kind == Number) dictionary[field.key] = number;
    if (field.kind == Flag) dictionary[field.key] = true;
  }
  dictionary["noise"] = {{"deep", {1, nullptr, {{"deeper", "x"}}}}};
  dictionary["left125hz"] = 20;  // a number under a text stays one
  return dictionary;
}

json emptyRepresentation() {
  json dictionary = json::object();
  for (const Field& field : kFields) {
    if (field.kind == Number) dictionary[field.key] = 0.0;
    if (field.kind == Flag) dictionary[field.key] = false;
  }
  return dictionary;
}

TEST(ORNListenTest, KeysAreSymbolsOfC) {
  ASSERT_EQ(kFields.size(), 39U);
  for (const Field& field : kFields) {
    const std::string name = constantOf(field.key);
    const auto* constant = static_cast<const char* const*>(dlsym(RTLD_DEFAULT, name.c_str()));
    ASSERT_NE(constant, nullptr) << name;
    EXPECT_EQ(*constant, field.key);
  }
}

TEST(ORNListenTest, EveryFieldComesBackUnderItsKey) {
  json sent = fullDictionary();
  sent["rightResult_d"] = 3.5;  // the correctly spelt key is no key
  EXPECT_EQ(record(sent)->dictionaryRepresentation(), fullDictionary());
  EXPECT_EQ(json::parse(record(sent)->description()), fullDictionary());
}

TEST(ORNListenTest, FieldsWithNamesOtherThanTheirKeys) {
  const auto test = record({{"rightResul_d", 3.5}, {"leftResult_d", 2.5}, {"id", "17"}});
  EXPECT_EQ(test->rightResulD(), 3.5);
  EXPECT_EQ(test->leftResultD(), 2.5);
  EXPECT_EQ(test->internalBaseClassIdentifier(), "17");
  EXPECT_EQ(record({{"rightResult_d", 3.5}})->rightResulD(), 0);
}

TEST(ORNListenTest, NullAndAbsentValuesAreEmpty) {
  json nulls;
  for (const Field& field : kFields) nulls[field.key] = nullptr;
  for (const json& dictionary : {json::object(), nulls, json::array({1, 2}), json(5), json("text"), json()}) {
    EXPECT_EQ(record(dictionary)->dictionaryRepresentation(), emptyRepresentation()) << dictionary;
  }
}

TEST(ORNListenTest, ConvertsNumbersAndFlags) {
  const struct {
    json sent;
    double number;
    bool flag;
  } table[] = {
      {"1", 1, true},
      {0, 0, false},
      {1, 1, true},
      {0.5, 0.5, true},
      {"0", 0, false},
      {"3.5e2x", 350, true},
      {true, 1, true},
      {"true", 0, true},
      {"no", 0, false},
      {"", 0, false},
      {json::array({1}), 0, false},
      {json::object(), 0, false},
      {-2, -2, true},
      {1'767'225'600'123, 1'767'225'600'123, true},
      {"1767225600123", 1'767'225'600'123, true},
  };
  for (const auto& row : table) {
    const auto test = record({{"createDate", row.sent}, {"diagnose", row.sent}});
    EXPECT_EQ(test->createDate(), row.number) << row.sent;
    EXPECT_EQ(test->diagnose(), row.flag) << row.sent;
  }
}

TEST(ORNListenTest, ArchiveRoundTrip) {
  json archive = {{"another object's", 1}, {"right125hz", "stale"}};
  json sent = fullDictionary();
  sent.erase("right125hz");
  record(sent)->encodeWithCoder(archive);
  EXPECT_EQ(archive.at("another object's"), 1);
  EXPECT_EQ(ORNListenTest::initWithCoder(archive)->dictionaryRepresentation(), sent);

  json none;
  record(json())->encodeWithCoder(none);
  EXPECT_EQ(ORNListenTest::initWithCoder(none)->dictionaryRepresentation(), emptyRepresentation());
}

TEST(ORNListenTest, ACopyIsIndependent) {
  const auto test = record(fullDictionary());
  const auto copy = test->copyWithZone();
  EXPECT_EQ(copy->dictionaryRepresentation(), fullDictionary());
  copy->setLeft125hz("99");
  copy->setNoise(nullptr);
  copy->setScore(-1);
  EXPECT_EQ(test->dictionaryRepresentation(), fullDictionary());
  EXPECT_EQ(copy->left125hz(), "99");
}

TEST(ORNListenTest, OutlivesTheDictionaryItWasMadeFrom) {
  auto dictionary = std::make_unique<json>(fullDictionary());
  const auto test = record(*dictionary);
  dictionary.reset();
  EXPECT_EQ(test->noise().at("deep").at(2).at("deeper"), "x");
}

TEST(ORNListenTest, DescribesWhatIsNoUtf8) {
  EXPECT_NE(record({{"left125hz", "\xFF"}})->description().find("left125hz"), std::string::npos);
}

}  // namespace
}  // namespace orn
