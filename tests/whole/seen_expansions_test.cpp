// What others see of an expansion on each system, and what one leaves that is killed, asked to end, or not alone.
#include <csignal>
#include <map>

#include "calendar/clsCalender.h"
#include "tests/support/faulty_driver.h"
#include "tests/support/systems_under_test.h"
#include "tests/whole/server_copy.h"
#include "tests/whole/watched_run.h"

namespace qmx::test::seen_expansions {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using Texts = std::vector<std::string>;

class SeenExpansion : public CopyIntoAServer {
 protected:
  SeenExpansion() {
    for (const std::string& calendar : Calendars()) {
      Sql("insert into tsmdm140 (emno, ccal) values ('" + calendar + "', '" + calendar + "')");
      for (const char* days :
           {"'2026-01-01', 800, '2026-03-31'", "'2026-04-20', 800, '2026-07-10'", "'2026-09-01', 800, '2026-11-30'"}) {
        Sql("insert into tcccp030 (ccal, ract, stdt, sttm, endt, entm) values ('" + calendar + "', 'WRK', " + days +
            ", 1700)");
      }
    }
    BeginAnew();
  }

  static Texts Calendars() { return {"CAL1", "CAL2", "CAL3", "CAL4"}; }
  static constexpr std::size_t kIntervals = 90 + 82 + 91;
  static std::string New() { return "sttm > '2000-01-01'"; }

  void BeginAnew() {
    Sql("delete from tscalender");
    for (const std::string& calendar : Calendars()) {
      for (const char* day : {"1999-01-01", "1999-01-02"}) {
        Sql("insert into tscalender (ccal, sttm, entm) values ('" + calendar + "', '" + day + " 08:00:00', '" + day +
            " 17:00:00')");
      }
    }
  }

  // The beginnings of a calendar's intervals.
  Texts Intervals(const std::string& calendar) {
    return Column("select sttm from tscalender where ccal = '" + calendar + "' order by sttm");
  }
  std::size_t CountNew() { return Column("select sttm from tscalender where " + New()).size(); }

  std::unique_ptr<RunningProcess> Start() {
    return std::make_unique<RunningProcess>(QMXADMIN, Texts{"expand"}, environment_);
  }
  std::unique_ptr<RunningProcess> StoppedInTheMiddle() {
    const auto start = [&] {
      BeginAnew();
      return Start();
    };
    return StoppedWithin(
        start, [&] { return CountNew() > 0; }, [&] { return CountNew() == Calendars().size() * kIntervals; });
  }

  // All intervals of every calendar, made by a run to its end.
  std::map<std::string, Texts> Expanded() {
    const Process run = test::Run(QMXADMIN, {"expand"}, environment_);
    EXPECT_EQ(run.status, 0) << run.err;
    std::map<std::string, Texts> all;
    for (const std::string& calendar : Calendars()) {
      all[calendar] = Intervals(calendar);
      EXPECT_EQ(all[calendar].size(), kIntervals);
      EXPECT_EQ(all[calendar].front(), "2026-01-01 08:00:00");
    }
    return all;
  }

  // Each calendar is old, new, or has a beginning of its new intervals, and at most one is between the two.
  void ExpectCalendarAfterCalendar(const std::map<std::string, Texts>& all, int mostIncomplete) {
    int incomplete = 0;
    for (const std::string& calendar : Calendars()) {
      const Texts found = Intervals(calendar);
      if (found == Texts{"1999-01-01 08:00:00", "1999-01-02 08:00:00"} || found == all.at(calendar)) continue;
      ++incomplete;
      EXPECT_TRUE(IsABeginning(found, all.at(calendar))) << calendar << ": " << testing::PrintToString(found);
    }
    EXPECT_LE(incomplete, mostIncomplete);
  }

  void ExpectToBeShownWithAtMost(int incomplete) {
    const auto all = Expanded();
    bool isPartSeen = false;
    // On a busy machine an expansion may be over before it is looked at within its work.
    for (int attempt = 0; attempt < 20 && !isPartSeen; ++attempt) {
      BeginAnew();
      const auto run = Start();
      Watch(*run, [&] {
        ExpectCalendarAfterCalendar(all, incomplete);
        const std::size_t found = CountNew();
        isPartSeen |= found > 0 && found < Calendars().size() * kIntervals;
      });
      EXPECT_EQ(run->Wait().status, 0);
      ExpectCalendarAfterCalendar(all, 0);
      if (HasFailure()) return;
    }
    EXPECT_TRUE(isPartSeen);
  }

  void ExpectAKillToLeaveAtMost(int incomplete) {
    const auto all = Expanded();
    const auto run = StoppedInTheMiddle();
    run->Signal(SIGKILL);
    EXPECT_EQ(run->Wait().status, 128 + SIGKILL);
    ExpectCalendarAfterCalendar(all, incomplete);
    EXPECT_EQ(Expanded(), all);
  }

  // Expands in this process the calendar CAL1 alone. Before the first interval is inserted, `second` runs once.
  void Expand(const std::function<void()>& second, bool inWholeMode) {
    Sql("delete from tsmdm140 where ccal <> 'CAL1'");
    FaultyDriver driver(database_.Base().GetDriver());
    Database database({&driver});
    const auto connection = database.CreateConnection("ADODB.Connection");
    const auto records = database.CreateRecordset("ADODB.Recordset");
    connection->Open(ConnectionText(), "", "");
    bool hasRun = false;
    driver.before = [&](const std::string& operation) {
      if (hasRun || !operation.starts_with("Prepare insert into tscalender")) return;
      hasRun = true;
      second();
    };
    clsCalender calender(database);
    calender.DBConnection = connection.get();
    calender.DBRecordSet = records.get();
    if (inWholeMode) calender.CalendarFailed = [&](const Error&) { ++failed_; };
    calender.Startprocess();
    connection->Close();
    EXPECT_TRUE(hasRun);
  }

  std::map<std::string, std::string> environment_ = {{"QMX_CONNECTION", ConnectionText()}, {"QMX_DATABASE", ""}};
  int failed_ = 0;  // calendars that Expand could not replace
};
INSTANTIATE_TEST_SUITE_P(Over, SeenExpansion, testing::ValuesIn(SystemsUnderTest()), ServerName);

TEST_P(SeenExpansion, ShowsCalendarAfterCalendarItsOldIntervalsThenNoneThenMoreAndMore) {
  ExpectToBeShownWithAtMost(1);
}

TEST_P(SeenExpansion, InWholeModeShowsCalendarAfterCalendarItsOldIntervalsOrItsNewOnes) {
  environment_["QMX_COPY"] = "whole";
  ExpectToBeShownWithAtMost(0);
}

TEST_P(SeenExpansion, ThatIsKilledLeavesOneCalendarIncompleteAndTheNextOneMendsIt) { ExpectAKillToLeaveAtMost(1); }

TEST_P(SeenExpansion, ThatIsKilledInWholeModeLeavesEachCalendarNewOrOldAndTheNextOneMendsIt) {
  environment_["QMX_COPY"] = "whole";
  ExpectAKillToLeaveAtMost(0);
}

TEST_P(SeenExpansion, ThatIsAskedToEndLeavesEachCalendarNewOrOld) {
  const auto all = Expanded();
  const auto run = StoppedInTheMiddle();
  run->Signal(SIGTERM);
  run->Signal(SIGCONT);
  const Process end = run->Wait();
  ExpectCalendarAfterCalendar(all, 0);
  if (end.status == 0) {  // it was in its last calendar
    EXPECT_EQ(CountNew(), Calendars().size() * kIntervals);
    return;
  }
  EXPECT_EQ(end.status, 2);
  EXPECT_THAT(end.out, IsEmpty());
  EXPECT_THAT(end.err, HasSubstr("[expanded: " + std::to_string(CountNew() / kIntervals) + " of 4 calendars, not "));
}

// Nothing keeps two expansions apart. The second one runs between the first one's deletion and its insertions.
TEST_P(SeenExpansion, BesideAnotherOneMayWriteEachIntervalTwice) {
  std::string second;
  const auto expandToo = [&] {
    const Process run = test::Run(QMXADMIN, {"expand"}, environment_);
    second = run.out + run.err;
  };
  Expand(expandToo, false);
  EXPECT_THAT(second, testing::StartsWith("CAL1: 263 intervals\n"));
  EXPECT_EQ(Intervals("CAL1").size(), 2 * kIntervals);
}

// The second one waits for the first one's commit, or one of them fails with a deadlock. PostgreSQL alone has nothing
// to wait for where no old interval is deleted.
TEST_P(SeenExpansion, InWholeModeBesideAnotherOneWritesEachIntervalTwiceOnPostgresqlAlone) {
  environment_["QMX_COPY"] = "whole";
  Sql("delete from tscalender");
  std::unique_ptr<RunningProcess> second;
  const auto beginToExpandToo = [&] {
    second = Start();
    if (IsPostgresql()) second->Wait();
  };
  Expand(beginToExpandToo, true);
  const Process end = second->Wait();
  EXPECT_LE(failed_ + end.status, GetParam().name == "MariaDB" ? 1 : 0) << end.err;
  EXPECT_EQ(Intervals("CAL1").size(), (IsPostgresql() ? 2 : 1) * kIntervals);
}

}  // namespace
}  // namespace qmx::test::seen_expansions
