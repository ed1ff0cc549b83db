#include <gtest/gtest.h>

#include <ORNHearingTestSDK/results/TestCSV.h>

namespace orn {
namespace {

TEST(TestCSV, HasALineForEachThresholdAndQuotesWhatWouldBreakOne) {
  const std::chrono::sys_days leapDay(std::chrono::year(2024) / 2 / 29);
  FinishedTest test{{{"500hz", "-1"}, {"1000hz", "40"}}, {{"8000hz", "90"}}, 27, 3, "1", leapDay, ""};
  test.ended += std::chrono::hours(9) + std::chrono::milliseconds(7'999);
  const std::string names = "ended,device,level_verification,ear,frequency_hz,threshold_db_hl,ear_loss_db\r\n";
  EXPECT_EQ(csvOf(test), names +
                             "2024-02-29T09:00:07Z,1,,right,8000,90,3\r\n"
                             "2024-02-29T09:00:07Z,1,,left,500,,27\r\n"
                             "2024-02-29T09:00:07Z,1,,left,1000,40,27\r\n");
  test = {{}, {{"125hz", "15"}}, 0, 0, "a,\"b\"\r\nc", {}, "by hand"};
  EXPECT_EQ(csvOf(test), names + "1970-01-01T00:00:00Z,\"a,\"\"b\"\"\r\nc\",by hand,right,125,15,0\r\n");
  EXPECT_EQ(csvOf({}), names);
}

}  // namespace
}  // namespace orn
