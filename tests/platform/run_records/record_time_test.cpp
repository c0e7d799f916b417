#include "platform/run_records/record_time.h"

#include <gtest/gtest.h>

namespace qmx::test {
namespace {

std::string Text(std::time_t seconds, long nanoseconds, long offset) {
  const auto sinceEpoch = std::chrono::seconds(seconds) + std::chrono::nanoseconds(nanoseconds);
  return std::string(RecordTime(RecordTime::Moment(sinceEpoch), offset).Text());
}

TEST(RecordTime, IsLocalTimeToTheMillisecondWithTheZonesOffset) {
  EXPECT_EQ(Text(1795266909, 123'456'789, 3600), "2026-11-21T14:15:09.123+01:00");
  EXPECT_EQ(Text(0, 0, 0), "1970-01-01T00:00:00.000+00:00");
}

TEST(RecordTime, HasOffsetsWestOfGreenwichAndOfHalfHours) {
  EXPECT_EQ(Text(1795266909, 999'999'999, -12600), "2026-11-21T09:45:09.999-03:30");
  EXPECT_EQ(Text(1795266909, 0, 20700), "2026-11-21T19:00:09.000+05:45");
}

TEST(RecordTime, BeginsADayAtMidnightOfTheZone) {
  EXPECT_EQ(Text(1772236799, 0, 0), "2026-02-27T23:59:59.000+00:00");
  EXPECT_EQ(Text(1772236799, 0, 1), "2026-02-28T00:00:00.000+00:00");
  EXPECT_EQ(Text(1709164800, 0, 0), "2024-02-29T00:00:00.000+00:00");
}

}  // namespace
}  // namespace qmx::test
