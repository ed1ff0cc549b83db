#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include <ORNHearingTestSDK/common/NumericText.h>

namespace orn {
namespace {

TEST(NumericText, IntegersStopAtTheFirstForeignCharacterAndSaturate) {
  const struct {
    const char* text;
    std::int64_t expected;
  } table[] = {{"1000hz", 1000}, {"15db", 15}, {" \t\n-5db", -5}, {"+7", 7},   {"", 0},      {"abc", 0},    {"-", 0},
               {"- 5", 0},       {"+-5", 0},   {"--5", 0},        {"-+5", 0},  {"3.9", 3},   {"0x1F", 0},   {"007", 7},
               {"12 34", 12},    {"1e3", 1},   {"-0", 0},         {"db15", 0}, {"1,000", 1}, {"\v\f\r9", 9}};
  for (const auto& [text, expected] : table) {
    EXPECT_EQ(integerValue(text), expected) << text;
    EXPECT_EQ(intValue(text), expected) << text;
  }
  EXPECT_EQ(intValue("2147483647"), 2147483647);
  EXPECT_EQ(intValue("2147483648"), std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(intValue("-2147483648"), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(intValue("-99999999999999999999db"), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(integerValue("9223372036854775808"), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(integerValue("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(integerValue("-9223372036854775809"), std::numeric_limits<std::int64_t>::min());
}

TEST(NumericText, DoublesAreDecimal) {
  const struct {
    const char* text;
    double expected;
  } table[] = {{"-70.5", -70.5}, {" +3.25dB", 3.25}, {"5.", 5},     {"-.5", -0.5}, {".e1", 0}, {"1E-2", 0.01},
               {"1e+", 1},       {"2,5", 2},         {"0x10", 0},   {"-inf", 0},   {"nan", 0}, {"+-1", 0},
               {"", 0},          {"1e308", 1e308},   {"1e-400", 0}, {"0e99999", 0}};
  for (const auto& [text, expected] : table) EXPECT_EQ(doubleValue(text), expected) << text;
  EXPECT_EQ(doubleValue("-1e309"), -HUGE_VAL);
  EXPECT_EQ(doubleValue("1e99999999999999999999"), HUGE_VAL);
  const std::string zeros(400, '0');
  for (const std::string& one : {zeros + "1", "1" + zeros + "e-400", "0." + zeros + "1e401"}) {
    EXPECT_EQ(doubleValue(one), 1) << one;
  }
}

TEST(NumericText, FloatsAreNarrowedDoubles) {
  EXPECT_EQ(floatValue("-70.1"), -70.1F);
  EXPECT_EQ(floatValue("1e39"), std::numeric_limits<float>::infinity());
  EXPECT_EQ(floatValue("1e-50"), 0.0F);
}

TEST(NumericText, BooleansSkipSpaceSignAndZeros) {
  for (const char* text : {"1", "true", "YES", "y", "T", " 01", "-009", "+5", "\tyes"})
    EXPECT_TRUE(boolValue(text)) << text;
  for (const char* text : {"", "0", "000", "no", "false", "off", "x1", "--1", "0 1", "0.5"}) {
    EXPECT_FALSE(boolValue(text)) << text;
  }
}

}  // namespace
}  // namespace orn
