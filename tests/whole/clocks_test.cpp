// The machine's clock as a fault: the program runs at wrong, repeated and unusual times, which libfaketime gives it.
// The ERP enters each change at its own civil time. What is lost and what is read twice is what docs/changed-copies.md
// says, and no more. The monotonic clock stays as it is.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <ostream>
#include <tuple>
#include <vector>

#include "tests/support/missing.h"
#include "tests/support/temp_folder.h"
#include "tests/whole/copy_process.h"
#include "tests/whole/watched_run.h"

namespace qmx::test::clocks {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAreArray;

constexpr const char* kTable = "tssoc200";

// What happens, one after the other. Times are the civil ones that the machine shows; the program runs at the moment
// that is written beside it, in seconds since 1970.
struct Step {
  enum class What { Change, Copy, FullCopy } what;
  const char* civil;
  std::int64_t moment = 0;
  int updated = 0;          // by the copy
  bool isReported = false;  // that the period ends before it begins
};

Step Change(const char* civil) { return {Step::What::Change, civil}; }
Step Copy(const char* civil, std::int64_t moment, int updated) { return {Step::What::Copy, civil, moment, updated}; }
Step CopyOfNoPeriod(const char* civil, std::int64_t moment) { return {Step::What::Copy, civil, moment, 0, true}; }
Step FullCopy(const char* civil, std::int64_t moment) { return {Step::What::FullCopy, civil, moment}; }

struct Times {
  const char* name;
  const char* zone;
  std::vector<Step> steps;
  std::vector<std::string> lost;  // changes, by their civil times
};

std::ostream& operator<<(std::ostream& out, const Times& times) { return out << times.name; }

const Times kTimes[] = {
    {"SpringForward",
     "Europe/Berlin",
     {FullCopy("2026-03-29 01:50:00", 1774745400), Change("2026-03-29 01:59:59"), Change("2026-03-29 03:00:00"),
      Copy("2026-03-29 03:00:00", 1774746000, 2), Change("2026-03-29 03:00:01"),
      Copy("2026-03-29 03:10:00", 1774746600, 2)},  // the second in which the periods meet is read twice
     {}},
    {"FallBackBetweenCopies",
     "Europe/Berlin",
     {FullCopy("2026-10-25 01:50:00", 1792885800), Change("2026-10-25 02:30:00"), Change("2026-10-25 02:10:00"),
      Copy("2026-10-25 03:00:00", 1792893600, 2)},
     {}},
    // The hour from 02:00 to 03:00 repeats. A copy in its first pass hides what the second pass changes before it.
    {"FallBackAfterACopyInTheHour",
     "Europe/Berlin",
     {FullCopy("2026-10-25 01:50:00", 1792885800), Change("2026-10-25 02:30:00"),
      Copy("2026-10-25 02:45:00", 1792889100, 1), Change("2026-10-25 02:15:00"), Change("2026-10-25 02:50:00"),
      Copy("2026-10-25 03:00:00", 1792893600, 1)},
     {"2026-10-25 02:15:00"}},
    // A copy in both passes. The second one asks for a period that ends before it begins.
    {"FallBackBetweenTwoCopiesInTheHour",
     "Europe/Berlin",
     {FullCopy("2026-10-25 01:50:00", 1792885800), Change("2026-10-25 02:30:00"),
      Copy("2026-10-25 02:45:00", 1792889100, 1), Change("2026-10-25 02:15:00"),
      CopyOfNoPeriod("2026-10-25 02:20:00", 1792891200), Change("2026-10-25 02:50:00"),
      Copy("2026-10-25 03:00:00", 1792893600, 2)},  // that of 02:30 once more
     {"2026-10-25 02:15:00"}},
    {"LeapDay",
     "Europe/Berlin",
     {FullCopy("2028-02-28 23:59:50", 1835391590), Change("2028-02-28 23:59:59"), Change("2028-02-29 00:00:00"),
      Copy("2028-02-29 12:00:00", 1835434800, 2), Change("2028-02-29 23:59:59"), Change("2028-03-01 00:00:00"),
      Copy("2028-03-01 00:00:10", 1835478010, 2)},
     {}},
    {"NoLeapDay",
     "Europe/Berlin",
     {FullCopy("2027-02-28 23:59:50", 1803855590), Change("2027-02-28 23:59:59"), Change("2027-03-01 00:00:00"),
      Copy("2027-03-01 00:00:10", 1803855610, 2)},
     {}},
    {"YearEnd",
     "Europe/Berlin",
     {FullCopy("2026-12-31 23:59:50", 1798757990), Change("2026-12-31 23:59:59"), Change("2027-01-01 00:00:00"),
      Copy("2027-01-01 00:00:00", 1798758000, 2), Change("2027-01-01 00:00:01"),
      Copy("2027-01-01 00:00:10", 1798758010, 2)},
     {}},
    {"TheEndOf32BitSeconds",
     "UTC",
     {FullCopy("2038-01-19 03:14:00", 2147483640), Change("2038-01-19 03:14:07"), Change("2038-01-19 03:14:08"),
      Copy("2038-01-19 03:14:07", 2147483647, 1), Copy("2038-01-19 03:14:20", 2147483660, 2),
      Change("2038-06-01 12:00:00"), Copy("2038-06-02 00:00:00", 2159049600, 1)},
     {}},
    // Somebody sets the clock back by two hours, on the ERP's machine as well.
    {"SetBack",
     "Europe/Berlin",
     {FullCopy("2026-11-20 11:00:00", 1795168800), Change("2026-11-20 11:30:00"),
      Copy("2026-11-20 12:00:00", 1795172400, 1), Change("2026-11-20 10:30:00"),
      CopyOfNoPeriod("2026-11-20 11:00:00", 1795168800), Change("2026-11-20 11:10:00"),
      Copy("2026-11-20 11:20:00", 1795170000, 1)},
     {"2026-11-20 10:30:00"}},
    // One copy runs a year ahead, then the clock is set right. What changed before that is behind the wrong time.
    {"SetForwardAndBack",
     "Europe/Berlin",
     {FullCopy("2026-11-20 11:00:00", 1795168800), Change("2026-11-20 11:30:00"),
      Copy("2027-11-20 12:00:00", 1826708400, 1), Change("2026-11-20 12:10:00"),
      CopyOfNoPeriod("2026-11-20 12:20:00", 1795173600), Change("2026-11-20 12:30:00"),
      Copy("2026-11-20 12:40:00", 1795174800, 1)},
     {"2026-11-20 12:10:00"}},
};

class Clocks : public testing::Test {
 protected:
  void SetUp() override {
    bool isThere = false;
    for (const char* folder : {"/usr/lib/x86_64-linux-gnu", "/usr/lib/aarch64-linux-gnu", "/usr/lib64"}) {
      isThere |= std::filesystem::exists(std::string(folder) + "/faketime/libfaketimeMT.so.1");
    }
    if (!isThere) return Missing("There is no libfaketime.");
    program_.Environment("LD_PRELOAD", "/usr/$LIB/faketime/libfaketimeMT.so.1");
    program_.Environment("FAKETIME_DONT_FAKE_MONOTONIC", "1");
    program_.Environment("FAKETIME_FMT", "%s");
    program_.Environment("FAKETIME_NO_CACHE", "1");
    program_.Environment("FAKETIME_TIMESTAMP_FILE", folder_ / "moment");
    program_.Environment("ASAN_OPTIONS", "verify_asan_link_order=0");
    local_.Sql(std::string("insert into tstables (tablename, in_use, syme) values ('") + kTable + "', 0, 1)");
  }

  void IsIn(const char* zone) { program_.Environment("TZ", zone); }
  // Where it stands still. A run that has begun sees it too.
  void SetClock(std::int64_t moment) { WriteFile(folder_ / "moment", std::to_string(moment) + "\n"); }
  void Method(int method) { local_.Sql("update tstables set syme = " + std::to_string(method)); }
  std::string Lutm() { return local_.Value("select lutm from tstables"); }

  FakeClock clock_{At(20, 14, 5, 9)};
  Company company_{{{"orders", 200}}};
  LocalCopy local_{company_, clock_};
  CopyProcesses program_{company_, local_};
  TempFolder folder_;
};

class ClocksAt : public Clocks, public testing::WithParamInterface<Times> {};
INSTANTIATE_TEST_SUITE_P(Times, ClocksAt, testing::ValuesIn(kTimes),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_P(ClocksAt, LoseAndRepeatWhatThePageSaysAndAFullCopyMendsIt) {
  if (IsSkipped() || HasFatalFailure()) return;
  IsIn(GetParam().zone);
  std::vector<std::string> changes;
  std::vector<std::string> orders;
  std::int64_t last = 0;
  for (const Step& step : GetParam().steps) {
    SCOPED_TRACE(step.civil);
    if (step.what == Step::What::Change) {
      orders.push_back(
          company_.Value("select orno from tssoc200 order by orno limit 1 offset " + std::to_string(changes.size())));
      changes.push_back(step.civil);
      company_.Change(DateTime::Parse(step.civil).value(),
                      std::string("update tssoc200 set crit = 'NEW' where orno = '") + orders.back() + "'");
      continue;
    }
    last = step.moment;
    const std::size_t board = program_.Board().size();
    SetClock(step.moment);
    Method(step.what == Step::What::FullCopy ? 1 : 2);
    const Process run = program_.Run(kTable);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(DateTime::Parse(Lutm()), DateTime::Parse(step.civil)) << Lutm();
    EXPECT_EQ(local_.Value("select in_use from tstables"), "0");
    EXPECT_EQ(run.err.find("ends before it begins") != std::string::npos, step.isReported) << run.err;
    const bool isFull = step.what == Step::What::FullCopy;
    EXPECT_THAT(program_.Board().substr(board), HasSubstr("Added - " + std::string(isFull ? "200" : "0")));
    EXPECT_THAT(program_.Board().substr(board), HasSubstr("Updated - " + std::to_string(step.updated)));
  }
  const auto lost = [&] {
    std::vector<std::string> missing;
    for (std::size_t change = 0; change < changes.size(); ++change) {
      if (local_.Value("select crit from tssoc200 where orno = '" + orders[change] + "'") != "NEW")
        missing.push_back(changes[change]);
    }
    return missing;
  };
  EXPECT_THAT(lost(), UnorderedElementsAreArray(GetParam().lost));
  SetClock(last + 3600);
  Method(1);
  EXPECT_EQ(program_.Run(kTable).status, 0);
  EXPECT_THAT(lost(), IsEmpty());
}

// The clock is set while a copy is at work: by years, and over 2038.
class ClocksWithin : public Clocks, public testing::WithParamInterface<std::tuple<int, std::int64_t>> {
 protected:
  ClocksWithin() { IsIn("Europe/Berlin"); }
};
constexpr std::int64_t kNoon = 1795172400;  // 2026-11-20 12:00:00
INSTANTIATE_TEST_SUITE_P(ACopy, ClocksWithin,
                         testing::Combine(testing::Values(1, 2),
                                          testing::Values(kNoon - 86400 * 400, kNoon - 1, kNoon + 3600, 2147483700)));

TEST_P(ClocksWithin, LeaveTheTimeAtWhichThePeriodWasReadAndLoseNothing) {
  if (IsSkipped()) return;
  const auto [method, other] = GetParam();
  SetClock(kNoon - 7200);
  Method(1);
  EXPECT_EQ(program_.Run(kTable).status, 0);
  company_.Change(DateTime::Parse("2026-11-20 11:00:00").value(), "update tssoc200 set crit = 'NEW'");
  const auto copied = [&] { return local_.Value("select count(*) from tssoc200 where crit = 'NEW'"); };
  const auto start = [&] {
    SetClock(kNoon);
    local_.Sql("update tssoc200 set crit = 'OLD'");
    local_.Sql("update tstables set lutm = '2026-11-20 10:00:00'");
    Method(method);
    return program_.Start(kTable);
  };
  const auto run = StoppedWithin(
      start, [&] { return copied() != "0"; }, [&] { return copied() == "200"; });
  SetClock(other);
  run->Signal(SIGCONT);
  const Process end = run->Wait();
  EXPECT_EQ(end.status, 0) << end.err;
  EXPECT_EQ(end.err, "");
  EXPECT_EQ(copied(), "200");
  EXPECT_EQ(Lutm(), "2026-11-20 12:00:00");
  EXPECT_EQ(local_.Value("select in_use from tstables"), "0");

  // What changes from then on is in the next copy at the right time.
  company_.Change(DateTime::Parse("2026-11-20 12:00:00").value(), "update tssoc200 set crit = 'LAST'");
  SetClock(kNoon + 60);
  Method(2);
  EXPECT_EQ(program_.Run(kTable).status, 0);
  EXPECT_EQ(local_.Value("select count(*) from tssoc200 where crit = 'LAST'"), "200");
}

}  // namespace
}  // namespace qmx::test::clocks
