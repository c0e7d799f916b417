// The copy log, record by record.
#include <gtest/gtest.h>

#include <limits>

#include "tests/support/copy_rig.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

class CopyLogFile : public testing::Test {
 protected:
  CopyLogFile() { rig.inside.LogFile() = "C:\\log\\tsmdm030.log"; }
  std::string Log() { return rig.CopyLog("tsmdm030"); }
  void LogError(const std::string& source, const std::string& description) {
    try {
      throw Error(13, source, description);
    } catch (const Error&) {
      rig.inside.WriteErrorLog();
    }
  }
  CopyRig rig;
};

TEST_F(CopyLogFile, IsOpenedUnderFileNumber1) {
  LogError("Source", "Description");
  EXPECT_EQ(rig.files.numbers["C:\\log\\tsmdm030.log"], std::set<int>{1});
  rig.files.numbers.clear();
  rig.inside.WriteCountLog("tsmdm030", 0, 0, 0);
  EXPECT_EQ(rig.files.numbers["C:\\log\\tsmdm030.log"], std::set<int>{1});
}

TEST_F(CopyLogFile, HasATimeHeaderAndTheInsertedLineForACopyWithoutRows) {
  rig.inside.WriteCountLog("tsmdm030", 0, 0, 0);
  EXPECT_EQ(Log(),
            "\"Date-Time :2026-11-20 : 14:05:09\"\r\n"
            "\"Table : tsmdm030 - 0 records Inserted\"\r\n");
}

TEST_F(CopyLogFile, HasALineForEveryCountAboveZeroWithoutGrouping) {
  rig.inside.WriteCountLog("tsmdm030", 1234567, 2, std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(Log(),
            "\"Date-Time :2026-11-20 : 14:05:09\"\r\n"
            "\"Table : tsmdm030 - 1234567 records Inserted\"\r\n"
            "\"Table : tsmdm030 - 2 records Updated\"\r\n"
            "\"Table : tsmdm030 - 2147483647 records Deleted\"\r\n");
}

TEST_F(CopyLogFile, HasNoLineForANegativeCountOfUpdatesOrDeletes) {
  rig.inside.WriteCountLog("tsmdm030", -1, -2, -3);
  EXPECT_EQ(Log(),
            "\"Date-Time :2026-11-20 : 14:05:09\"\r\n"
            "\"Table : tsmdm030 - -1 records Inserted\"\r\n");
}

TEST_F(CopyLogFile, HasOneTimeHeaderForTwoErrorsOfARun) {
  LogError("Copy Service Types", " Copy of Service Types from Orvan to Local DB failed");
  LogError("ReleaseCopyInProgress", "no \"such\" row");
  EXPECT_EQ(Log(),
            "\"Date-Time :2026-11-20 : 14:05:09\"\r\n"
            "\"Copy Service Types\",\" Copy of Service Types from Orvan to Local DB failed\"\r\n"
            "\"ReleaseCopyInProgress\",\"no \"such\" row\"\r\n");
}

TEST_F(CopyLogFile, HasAHeaderOfItsOwnForAnErrorAfterTheCounts) {
  rig.inside.WriteCountLog("tsmdm030", 1, 0, 0);
  LogError("first", "one");
  rig.inside.WriteCountLog("tsmdm030", 2, 0, 0);
  LogError("second", "two");
  EXPECT_EQ(Log(),
            "\"Date-Time :2026-11-20 : 14:05:09\"\r\n"
            "\"Table : tsmdm030 - 1 records Inserted\"\r\n"
            "\"Date-Time :2026-11-20 : 14:05:09\"\r\n"
            "\"first\",\"one\"\r\n"
            "\"Date-Time :2026-11-20 : 14:05:09\"\r\n"
            "\"Table : tsmdm030 - 2 records Inserted\"\r\n"
            "\"second\",\"two\"\r\n");
}

TEST_F(CopyLogFile, TakesDateAndTimeByTwoReadingsOfTheClock) {
  rig.clock.now = DateTime::FromDate(2026, 11, 20).PlusTime(23, 59, 59);
  rig.clock.step = 1;
  rig.inside.WriteCountLog("tsmdm030", 0, 0, 0);
  EXPECT_EQ(Log().substr(0, Log().find("\r\n")), "\"Date-Time :2026-11-20 : 00:00:00\"");
}

TEST_F(CopyLogFile, GrowsWithEveryRun) {
  rig.Run("unknown1");
  rig.erp.Lists("ServiceTypes.ServiceTypesManager", {});
  rig.Run("tsmdm030");
  rig.Run("tsmdm030");
  EXPECT_EQ(Log(),
            "\"Date-Time :2026-11-20 : 14:05:09\"\r\n"
            "\"Table : tsmdm030 - 0 records Inserted\"\r\n"
            "\"Date-Time :2026-11-20 : 14:05:09\"\r\n"
            "\"Table : tsmdm030 - 0 records Inserted\"\r\n");
}

TEST_F(CopyLogFile, FailsEveryRoutineThatCannotWriteIt) {
  for (const char* operation : {"Open", "Write", "Close"}) {
    CopyRig failing;
    failing.inside.LogFile() = "C:\\log\\tsmdm030.log";
    failing.files.failOn = operation;
    EXPECT_EQ(Raised([&] { failing.inside.WriteCountLog("tsmdm030", 0, 0, 0); }).Number(), errors::kDiskFull);
  }
}

TEST_F(CopyLogFile, TakesAnErrorOfAnotherKindAsAnInternalOne) {
  try {
    throw std::runtime_error("the other library failed");
  } catch (const std::exception&) {
    rig.inside.WriteErrorLog();
  }
  EXPECT_EQ(Log(),
            "\"Date-Time :2026-11-20 : 14:05:09\"\r\n"
            "\"Internal error\",\"the other library failed\"\r\n");
}

}  // namespace
}  // namespace qmx::test
