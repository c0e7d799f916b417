#include "platform/progress/progress_text.h"

#include <gtest/gtest.h>

namespace qmx {
namespace {

TEST(ProgressText, GroupsTheDigitsOfACount) {
  EXPECT_EQ(CountText(0), "0");
  EXPECT_EQ(CountText(999), "999");
  EXPECT_EQ(CountText(1000), "1,000");
  EXPECT_EQ(CountText(123456), "123,456");
  EXPECT_EQ(CountText(1234567), "1,234,567");
  EXPECT_EQ(CountText(-123), "-123");
  EXPECT_EQ(CountText(-1234), "-1,234");
}

TEST(ProgressText, ShowsHoursOnlyIfThereAreSome) {
  EXPECT_EQ(ElapsedText(std::chrono::seconds(0)), "0:00");
  EXPECT_EQ(ElapsedText(std::chrono::seconds(83)), "1:23");
  EXPECT_EQ(ElapsedText(std::chrono::seconds(3599)), "59:59");
  EXPECT_EQ(ElapsedText(std::chrono::seconds(3600)), "1:00:00");
  EXPECT_EQ(ElapsedText(std::chrono::seconds(7283)), "2:01:23");
}

TEST(ProgressText, KeepsItsColumnsWhileTheNumbersGrow) {
  EXPECT_EQ(ProgressText("tssoc200", 7, 0, std::chrono::seconds(1)),
            "tssoc200            7 rows          0 rows/s     0:01");
  EXPECT_EQ(ProgressText("tssoc200", 12345678, 234567, std::chrono::seconds(4000)),
            "tssoc200   12,345,678 rows    234,567 rows/s  1:06:40");
}

TEST(ProgressText, SaysThatRowsAreDeletedWithTheTimeInItsColumn) {
  EXPECT_EQ(DeletingText("tssoc200", std::chrono::seconds(4)), "tssoc200     deleting                            0:04");
  EXPECT_EQ(DeletingText("tssoc200", std::chrono::seconds(4)).size(),
            ProgressText("tssoc200", 7, 0, std::chrono::seconds(4)).size());
}

}  // namespace
}  // namespace qmx
