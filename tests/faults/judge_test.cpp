// What the judge says of runs that are as they must be, and of runs that are not.
#include "tests/faults/judge.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace qmx::test::faults {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kOld = "2001-02-03 04:05:06";
constexpr const char* kNew = "2026-11-20 14:05:09";
constexpr int kKilled = 128 + 9;
constexpr int kInterrupted = 128 + 15;
constexpr int kCrashed = 128 + 11;

const std::vector<Rows> kStates = {{"A|Old", "B|Old"}, {}, {"B|New"}, {"B|New", "C|New"}};
const Rows& kOldRows = kStates.front();
const Rows& kNewRows = kStates.back();

class Judge : public testing::Test {
 protected:
  static Left LeftBy(int status, const Rows& rows, const char* inUse, const char* lutm) {
    Left left;
    left.status = status;
    left.err = status == 0 || status >= 128 ? "" : "error 57, Copy: it failed\n";
    left.rows = rows;
    left.inUse = inUse;
    left.lutm = lutm;
    left.files = {"local.db", "tsmdm030.log", "QMXRuns.jsonl", "board"};
    return left;
  }

  std::vector<std::string> Found(const Left& left) const { return Findings(left, run_); }
  std::vector<std::string> FoundNext(const Left& left) const { return FindingsOfTheNextRun(left, run_); }

  Circumstances run_{.states = &kStates, .oldLutm = kOld, .password = ""};
};

TEST_F(Judge, FindsNothingInACompleteCopy) { EXPECT_THAT(Found(LeftBy(0, kNewRows, "0", kNew)), IsEmpty()); }

TEST_F(Judge, FindsNothingInAFailureAfterTheFirstRows) {
  for (const Rows& rows : kStates) EXPECT_THAT(Found(LeftBy(1, rows, "0", kOld)), IsEmpty());
}

// The ERP's Close comes after the last update time.
TEST_F(Judge, FindsNothingInAFailureAfterTheLastUpdateTimeOfAllRows) {
  EXPECT_THAT(Found(LeftBy(1, kNewRows, "0", kNew)), IsEmpty());
}

TEST_F(Judge, FindsNothingInALostDatabase) {
  for (const Rows& rows : kStates) EXPECT_THAT(Found(LeftBy(2, rows, "1", kOld)), IsEmpty());
}

TEST_F(Judge, FindsRowsThatAreNoBeginning) {
  EXPECT_THAT(Found(LeftBy(1, {"C|New"}, "0", kOld)),
              ElementsAre("1 rows are no state that a copy goes through; there is C|New where the ERP has B|New"));
  EXPECT_THAT(Found(LeftBy(1, {"A|Old"}, "0", kOld)), ElementsAre(HasSubstr("1 rows are no state")));
  EXPECT_THAT(Found(LeftBy(1, {"B|Old"}, "0", kOld)), ElementsAre(HasSubstr("1 rows are no state")));
}

TEST_F(Judge, FindsALastUpdateTimeAheadOfTheRows) {
  EXPECT_THAT(Found(LeftBy(2, {"B|New"}, "1", kNew)), ElementsAre("the last update time is ahead of the rows"));
  EXPECT_THAT(Found(LeftBy(2, kOldRows, "1", kNew)), ElementsAre("the last update time is ahead of the rows"));
}

TEST_F(Judge, FindsASuccessWithoutACompleteCopy) {
  EXPECT_THAT(Found(LeftBy(0, {"B|New"}, "0", kOld)), ElementsAre("status 0 without a complete copy"));
  EXPECT_THAT(Found(LeftBy(0, kNewRows, "0", kOld)), ElementsAre("status 0 without a complete copy"));
}

TEST_F(Judge, FindsATableLeftInProgressByARunThatCouldReleaseIt) {
  EXPECT_THAT(Found(LeftBy(0, kNewRows, "1", kNew)), ElementsAre("status 0, and the table is still in progress"));
  EXPECT_THAT(Found(LeftBy(1, {"B|New"}, "1", kOld)), ElementsAre("status 1, and the table is still in progress"));
  EXPECT_THAT(Found(LeftBy(0, kNewRows, "2", kNew)), ElementsAre("in_use is 2"));
}

TEST_F(Judge, FindsInWholeModeWhateverIsNeitherOldNorNew) {
  run_.isWhole = true;
  EXPECT_THAT(Found(LeftBy(1, kOldRows, "0", kOld)), IsEmpty());
  EXPECT_THAT(Found(LeftBy(2, kNewRows, "1", kNew)), IsEmpty());
  const char* const finding = "rows and last update time are not all old or all new";
  EXPECT_THAT(Found(LeftBy(1, {"B|New"}, "0", kOld)), ElementsAre(finding));
  EXPECT_THAT(Found(LeftBy(2, kNewRows, "1", kOld)), ElementsAre(finding));
  EXPECT_THAT(Found(LeftBy(2, kOldRows, "1", kNew)), Contains(finding));
}

TEST_F(Judge, FindsACrashButNotTheKillThatWasTheFault) {
  EXPECT_THAT(Found(LeftBy(kKilled, {"B|New"}, "1", kOld)), ElementsAre("it crashed by signal 9"));
  run_.ending = Ending::Killed;
  EXPECT_THAT(Found(LeftBy(kKilled, {"B|New"}, "1", kOld)), IsEmpty());
  EXPECT_THAT(Found(LeftBy(kKilled, kOldRows, "0", kOld)), IsEmpty());
  EXPECT_THAT(Found(LeftBy(kKilled, kNewRows, "0", kNew)), IsEmpty());
  EXPECT_THAT(Found(LeftBy(kCrashed, {"B|New"}, "1", kOld)), ElementsAre("it crashed by signal 11"));
}

TEST_F(Judge, FindsAReleasedTableWithinWhoseCopyTheRunWasKilled) {
  run_.ending = Ending::Killed;
  EXPECT_THAT(Found(LeftBy(kKilled, {"B|New"}, "0", kOld)),
              ElementsAre("killed within its work, and the table is not in progress"));
}

TEST_F(Judge, FindsAnInterruptionThatIsNotHeardOfWithinTheWork) {
  run_.ending = Ending::Interrupted;
  EXPECT_THAT(Found(LeftBy(kInterrupted, kOldRows, "0", kOld)), IsEmpty());
  EXPECT_THAT(Found(LeftBy(kInterrupted, kNewRows, "0", kNew)), IsEmpty());
  EXPECT_THAT(Found(LeftBy(kInterrupted, kNewRows, "1", kNew)), ElementsAre("it crashed by signal 15"));
  EXPECT_THAT(Found(LeftBy(kInterrupted, {"B|New"}, "1", kOld)), ElementsAre("it crashed by signal 15"));
  EXPECT_THAT(Found(LeftBy(kKilled, kOldRows, "0", kOld)), ElementsAre("it crashed by signal 9"));
}

TEST_F(Judge, FindsARunThatDidNotEndAndOtherStatuses) {
  Left left = LeftBy(kKilled, kOldRows, "1", kOld);
  left.hasEnded = false;
  EXPECT_THAT(Found(left), ElementsAre("it did not end by itself"));
  EXPECT_THAT(Found(LeftBy(3, kOldRows, "0", kOld)), ElementsAre("it ended with status 3"));
  EXPECT_THAT(Found(LeftBy(127, kOldRows, "0", kOld)), ElementsAre("it ended with status 127"));
}

TEST_F(Judge, FindsASilentFailureAndAnErrorBesideASuccess) {
  Left failed = LeftBy(1, kOldRows, "0", kOld);
  failed.err = "";
  EXPECT_THAT(Found(failed), ElementsAre("it failed without a word on standard error"));
  Left complete = LeftBy(0, kNewRows, "0", kNew);
  complete.err = "error 57, Copy: it failed\n";
  EXPECT_THAT(Found(complete), ElementsAre("status 0, and an error on standard error"));
  complete.err =
      "error 75, Run record: The run is not recorded.\nThe trace file \"t\" cannot be written any further.\n"
      "SIGTERM: the copy ends at its next call to the ERP.\n";
  EXPECT_THAT(Found(complete), IsEmpty());
}

TEST_F(Judge, FindsMessagesThatDoNotFitTheCopy) {
  Left left = LeftBy(1, {"B|New"}, "0", kOld);
  left.texts["board"] = "(tsmdm030) : Data copy FAILED\n";
  EXPECT_THAT(Found(left), IsEmpty());
  left.texts["board"] += "(tsmdm030) : Copy result. Added - 1\n";
  EXPECT_THAT(Found(left), ElementsAre("the scheduling server heard of a complete and of a failed copy",
                                       "the scheduling server heard of a complete copy",
                                       "status 1, and the scheduling server heard of a complete copy"));
}

TEST_F(Judge, FindsADamagedDatabaseAFileLeftBehindAndAPassword) {
  run_.password = "rose";
  Left left = LeftBy(1, kOldRows, "0", kOld);
  left.integrity = "row 3 is missing";
  left.files.push_back("etilqs_1");
  left.err += "PWD=wild;rose\n";
  left.texts["trace"] = "a rose";
  EXPECT_THAT(Found(left), ElementsAre("the database is damaged: row 3 is missing", "left the file etilqs_1",
                                       "showed the password on standard error", "wrote the password into trace"));
}

TEST_F(Judge, ExpectsTheNextRunToMakeEverythingRight) {
  EXPECT_THAT(FoundNext(LeftBy(0, kNewRows, "0", kNew)), IsEmpty());
  EXPECT_THAT(FoundNext(LeftBy(1, {"B|New"}, "1", kOld)),
              ElementsAre("the next run ended with status 1", "the next run printed an error",
                          "the next run did not make the table right", "the next run left the table in progress",
                          "the next run left the old last update time"));
  Left left = LeftBy(0, kNewRows, "0", kNew);
  left.files.push_back("local.db-wal");
  EXPECT_THAT(FoundNext(left), ElementsAre("the next run left the file local.db-wal"));
}

}  // namespace
}  // namespace qmx::test::faults
