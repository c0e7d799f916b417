// The clock: the machine's time, and the short forms of real locales.
#include "platform/system/clock.h"

#include <gtest/gtest.h>

#include <ctime>

#include "tests/support/environment.h"

// The C library keeps what it reads from LOCPATH for good.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() { return "leak:argz_add_sep"; }

namespace qmx::test {
namespace {

const DateTime kMoment = DateTime::FromDate(2026, 11, 6).PlusTime(14, 5, 9);

class Locales : public testing::Test {
 protected:
  EnvironmentVariable path_{"LOCPATH", TEST_LOCALES};
  EnvironmentVariable all_{"LC_ALL", nullptr};
  EnvironmentVariable time_{"LC_TIME", nullptr};
  EnvironmentVariable lang_{"LANG", nullptr};
};

TEST_F(Locales, GiveTheirShortFormsOfDateAndTime) {
  SystemClock german("de_DE.UTF-8");
  EXPECT_EQ(german.DateText(kMoment), "06.11.2026");
  EXPECT_EQ(german.TimeText(kMoment), "14:05:09");

  SystemClock american("en_US.UTF-8");
  EXPECT_EQ(american.DateText(kMoment), "11/06/2026");
  EXPECT_EQ(american.TimeText(kMoment), "02:05:09 PM");
}

TEST_F(Locales, AreTakenFromTheEnvironmentInTheUsualOrder) {
  const EnvironmentVariable lang("LANG", "en_US.UTF-8");
  EXPECT_EQ(SystemClock().DateText(kMoment), "11/06/2026");
  const EnvironmentVariable time("LC_TIME", "de_DE.UTF-8");
  EXPECT_EQ(SystemClock().DateText(kMoment), "06.11.2026");
  const EnvironmentVariable all("LC_ALL", "C");
  EXPECT_EQ(SystemClock().DateText(kMoment), "2026-11-06");
}

TEST_F(Locales, ThatAreEmptyAreSkipped) {
  const EnvironmentVariable all("LC_ALL", "");
  const EnvironmentVariable lang("LANG", "de_DE.UTF-8");
  EXPECT_EQ(SystemClock().DateText(kMoment), "06.11.2026");
}

TEST(SystemClock, WritesIsoFormsIfNoLocaleIsSet) {
  for (const char* name : {"", "C", "POSIX", "C.UTF-8", "xx_XX.not-installed"}) {
    SystemClock clock(name);
    EXPECT_EQ(clock.DateText(kMoment), "2026-11-06") << name;
    EXPECT_EQ(clock.TimeText(kMoment), "14:05:09") << name;
    EXPECT_EQ(clock.TimeText(kMoment.DatePart()), "00:00:00") << name;
  }
}

TEST(TheOffsetFromUtc, IsTheOneThatHeldAtTheMoment) {
  const EnvironmentVariable zone("TZ", "CET-1CEST,M3.5.0,M10.5.0/3");
  tzset();
  EXPECT_EQ(OffsetFromUtc(1795266909), 3600);  // in November
  EXPECT_EQ(OffsetFromUtc(1783432800), 7200);  // in July
}

TEST(SystemClock, ReportsTheLocalTimeOfTheMachine) {
  const EnvironmentVariable zone("TZ", "XYZ-5:30");  // east of Greenwich by five hours and a half
  tzset();
  const std::int64_t before = std::time(nullptr);
  const std::int64_t now = SystemClock("C").Now().Seconds() - DateTime::FromDate(1970, 1, 1).Seconds() - 19800;
  const std::int64_t after = std::time(nullptr);
  EXPECT_LE(before, now);
  EXPECT_LE(now, after);
}

}  // namespace
}  // namespace qmx::test
