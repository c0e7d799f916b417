#include "tools/qmxadmin/runs/age.h"

#include <gtest/gtest.h>

#include "tests/support/environment.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

using std::chrono::seconds;

TEST(AnAge, IsANumberAndAUnit) {
  EXPECT_EQ(ParseAge("90min"), seconds(5400));
  EXPECT_EQ(ParseAge("26 h"), seconds(93600));
  EXPECT_EQ(ParseAge("3days"), seconds(259200));
  EXPECT_EQ(ParseAge("1d"), seconds(86400));
  EXPECT_EQ(ParseAge("5s"), seconds(5));
  for (const char* text : {"", "h", "5", "-1h", "5 weeks", "5h5", "2026-11-20"})
    EXPECT_EQ(ParseAge(text), std::nullopt) << text;
  EXPECT_EQ(Raised([] { RequiredAge("soon"); }).Number(), 5);
}

TEST(AMoment, IsALocalTimeOrAnAgeBeforeNow) {
  const EnvironmentVariable zone("TZ", "CET-1");
  tzset();
  const RunMoment now(seconds(1795183200));
  EXPECT_EQ(SinceMoment("2026-11-20", now), RunMoment(seconds(1795129200)));
  EXPECT_EQ(SinceMoment("2026-11-20 14:00", now), RunMoment(seconds(1795179600)));
  EXPECT_EQ(SinceMoment("2026-11-20 14:00:05", now), RunMoment(seconds(1795179605)));
  EXPECT_EQ(SinceMoment("2h", now), RunMoment(seconds(1795176000)));
  EXPECT_EQ(Raised([&] { SinceMoment("yesterday", now); }).Number(), 5);
  EXPECT_EQ(MomentOfLocalTime("2026-11-20"), RunMoment(seconds(1795129200)));
  EXPECT_EQ(MomentOfLocalTime("none"), std::nullopt);
}

}  // namespace
}  // namespace qmx::test
