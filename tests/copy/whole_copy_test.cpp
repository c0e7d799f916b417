// Whole mode: a copy's rows and its last update time become visible in one commit, or not at all. What the run tells,
// logs and calls is the same as without it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "tests/copy/faults/faulty_run.h"
#include "tests/copy/service_type.h"
#include "tests/copy/tables/calendar_rig.h"
#include "tests/support/raised.h"

namespace qmx::test::whole_copy {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;
using testing::UnorderedElementsAreArray;

const char* const kOldLutm = "2026-11-19";
const char* const kNewLutm = "2026-11-20 14:05:09";

std::string Joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + '\n';
  return text;
}

class WholeCopy : public testing::TestWithParam<std::tuple<CopiedTable, std::int16_t>> {
 protected:
  const CopiedTable& table_ = std::get<0>(GetParam());
  const std::int16_t method_ = std::get<1>(GetParam());
};

TEST_P(WholeCopy, CallsTellsAndLogsWhatTheUsualModeDoes) {
  FaultyRun usual(table_, method_, Place::BelowTheBatches);
  usual.rig.declarations.copiesWhole = false;
  FaultyRun whole(table_, method_, Place::BelowTheBatches);
  whole.rig.declarations.copiesWhole = true;
  EXPECT_EQ(usual.Raised(), "nothing");
  EXPECT_EQ(whole.Raised(), "nothing");
  EXPECT_EQ(Joined(whole.rig.calls.Lines()), Joined(usual.rig.calls.Lines()));
  EXPECT_EQ(whole.rig.CopyLog(table_.code), usual.rig.CopyLog(table_.code));
  EXPECT_THAT(whole.rig.failures.chains, IsEmpty());
  EXPECT_EQ(whole.rig.Lutm(table_.code), kNewLutm);
  EXPECT_EQ(whole.rig.InUse(table_.code), "0");
  EXPECT_THAT(whole.rig.Rows(table_.code, table_.columns), UnorderedElementsAreArray(whole.States().back()));
}

// Looks at every operation of the run, as a reader that never sleeps would.
TEST_P(WholeCopy, ShowsAReaderOnlyTheOldRowsAndThenTheNewOnesWithTheFlagSet) {
  FaultyRun run(table_, method_, Place::BelowTheBatches);
  run.rig.declarations.copiesWhole = true;
  std::set<std::vector<std::string>> seen;
  std::set<std::string> seenWithFlag;
  std::vector<std::string> lutms;
  run.driver->before = [&](const std::string&) {
    const std::vector<std::string> rows = run.rig.Rows(table_.code, table_.columns);
    seen.insert(rows);
    if (run.rig.InUse(table_.code) == "1") seenWithFlag.insert(rows.empty() ? "" : rows.back());
    const std::string lutm = run.rig.Lutm(table_.code);
    if (lutms.empty() || lutms.back() != lutm) lutms.push_back(lutm);
    EXPECT_THAT(rows, UnorderedElementsAreArray(lutm == kNewLutm ? run.States().back() : run.States().front()));
  };
  EXPECT_EQ(run.Raised(), "nothing");
  run.driver->before = nullptr;
  EXPECT_THAT(seen, SizeIs(2));
  EXPECT_THAT(seenWithFlag, SizeIs(2));
  EXPECT_THAT(lutms, ElementsAre(kOldLutm, kNewLutm));
}

TEST_P(WholeCopy, LeavesTheOldRowsAndTheOldTimeWhicheverCallOfTheErpFails) {
  for (std::int64_t call = 1;; call += 1 + call / 40) {  // not at every getter of many columns
    SCOPED_TRACE(call);
    FaultyRun run(table_, method_, Place::BelowTheBatches);
    run.rig.declarations.copiesWhole = true;
    run.rig.erp.calls.FailAt(call);
    EXPECT_EQ(run.Raised(), "nothing");
    if (!run.rig.erp.calls.HasFailed()) break;
    ASSERT_LT(call, 1000);
    const std::vector<std::string> rows = run.rig.Rows(table_.code, table_.columns);
    const std::string lutm = run.rig.Lutm(table_.code);
    const bool isComplete = Joined(run.rig.Events()).find("event Complete") != std::string::npos;
    if (isComplete) {  // the period's end could not be read, which only leaves the last update time as it was
      EXPECT_THAT(rows, UnorderedElementsAreArray(run.States().back()));
      EXPECT_EQ(lutm, kOldLutm);
    } else {
      EXPECT_THAT(run.rig.Events(), Contains(StartsWith("event Error")));
      const bool isAfterTheCommit = method_ == kFullCopy && run.FirstFailure().starts_with("manager.Close()");
      EXPECT_THAT(rows, UnorderedElementsAreArray(isAfterTheCommit ? run.States().back() : run.States().front()));
      EXPECT_EQ(lutm, isAfterTheCommit ? kNewLutm : kOldLutm);
    }
    EXPECT_EQ(run.rig.InUse(table_.code), "0");
    EXPECT_EQ(run.rig.declarations.facts.lastUpdateTime.has_value(), lutm == kNewLutm);
  }
}

INSTANTIATE_TEST_SUITE_P(OfEveryTable, WholeCopy,
                         testing::Combine(testing::ValuesIn(TablesUnderFaults()),
                                          testing::Values(kFullCopy, kOnlyChanged)),
                         [](const testing::TestParamInfo<WholeCopy::ParamType>& instance) {
                           return std::string(std::get<0>(instance.param).code) +
                                  (std::get<1>(instance.param) == kFullCopy ? "_full" : "_changed");
                         });

// A copy in full of two service types over two old ones.
struct WholeServiceTypes : testing::Test {
  WholeServiceTypes() {
    rig.declarations.copiesWhole = true;
    rig.ControlRecord("tsmdm030", 1, kOldLutm);
    rig.Sql("insert into tsmdm030 (cstp, dsca) values ('X', 'old')");
    ErpLists({"A", "B"});
  }

  void ErpLists(const std::vector<std::string>& codes) {
    std::vector<Getters> records;
    for (const std::string& code : codes) records.push_back(ServiceType(code, "new", "P", "D"));
    rig.erp.Lists(kServiceTypesManager, records);
  }
  std::vector<std::string> Local() { return rig.Rows("tsmdm030", {"cstp", "dsca"}); }
  void ExpectTheOldState() {
    EXPECT_THAT(Local(), ElementsAre("\"X\", \"old\""));
    EXPECT_EQ(rig.Lutm("tsmdm030"), kOldLutm);
    EXPECT_EQ(rig.InUse("tsmdm030"), "0");
    EXPECT_THAT(rig.Events(), Contains(StartsWith("event Error")));
  }
  bool IsSqlite() const { return rig.ConnectionText().find("SQLite") != std::string::npos; }

  std::unique_ptr<FaultyDriver> driver;
  CopyRig rig{{}, {}, [this](Driver& inner) -> Driver& {
                driver = std::make_unique<FaultyDriver>(inner);
                return *driver;
              }};
};

TEST_F(WholeServiceTypes, AreNotSavedWithoutTheirLastUpdateTime) {
  rig.Sql("alter table tstables drop column lutm");
  rig.Run("tsmdm030");
  EXPECT_THAT(Local(), ElementsAre("\"X\", \"old\""));
  EXPECT_EQ(rig.InUse("tsmdm030"), "0");
  EXPECT_THAT(rig.Events(), Contains(StartsWith("event Error")));
  ASSERT_THAT(rig.failures.chains, SizeIs(1));
  EXPECT_THAT(rig.failures.chains[0], AllOf(StartsWith("error 3365, Copy Service Types: "), HasSubstr("\"lutm\""),
                                            HasSubstr("rows: as they were before the copy")));
  EXPECT_THAT(rig.CopyLog("tsmdm030"),
              HasSubstr("\"Copy Service Types\",\" Copy of Service Types from Orvan to Local DB failed\""));
}

TEST_F(WholeServiceTypes, NameTheRowThatTheDatabaseRefuses) {
  ErpLists({"A", "B", "C", "B", "D"});
  rig.Run("tsmdm030");
  ExpectTheOldState();
  EXPECT_THAT(rig.failures.chains, ElementsAre(HasSubstr("key: cstp='B'")));
}

TEST_F(WholeServiceTypes, LeaveTheOldRowsWhereTheErpListsNone) {
  ErpLists({});
  rig.Run("tsmdm030");
  EXPECT_THAT(Local(), ElementsAre("\"X\", \"old\""));
  EXPECT_EQ(rig.Lutm("tsmdm030"), kNewLutm);
}

TEST_F(WholeServiceTypes, SayHowLongTheyKeptOthersFromWriting) {
  rig.clock.step = 16;
  rig.Run("tsmdm030");
  EXPECT_THAT(rig.Events(), Contains(StartsWith("event Complete")));
  if (!IsSqlite()) {
    EXPECT_THAT(rig.failures.chains, IsEmpty());
    return;
  }
  ASSERT_THAT(rig.failures.chains, SizeIs(1));
  EXPECT_THAT(
      rig.failures.chains[0],
      StartsWith("error -2147217871, clsDataCopy: The copy of table tsmdm030 kept other programs from writing the "
                 "database for 32 seconds."));
}

TEST_F(WholeServiceTypes, SayNothingOfAShortWriting) {
  rig.clock.step = 15;
  rig.Run("tsmdm030");
  EXPECT_THAT(rig.failures.chains, IsEmpty());
}

TEST_F(WholeServiceTypes, DoNotCountTheTimeThatTheyWaitedForAnotherProgramToWrite) {
  driver->before = [&](const std::string& operation) {
    if (operation == "Begin") rig.clock.now = rig.clock.now.PlusTime(0, 1, 0);
  };
  rig.Run("tsmdm030");
  EXPECT_THAT(rig.Events(), Contains(StartsWith("event Complete")));
  EXPECT_THAT(rig.failures.chains, IsEmpty());
}

using WholeServiceTypesUnderFaults = WholeServiceTypes;  // of the database, below the batches

TEST_F(WholeServiceTypesUnderFaults, AreCommittedOnceBetweenTheSettingAndTheReleaseOfTheFlag) {
  rig.Run("tsmdm030");
  EXPECT_EQ(driver->CountOf("Begin"), 1);
  EXPECT_THAT(Local(), ElementsAre("\"A\", \"new\"", "\"B\", \"new\""));
}

TEST_F(WholeServiceTypesUnderFaults, AreNotBegunAndSetNoFlagIfItIsNotKnownWhetherBothTablesCanRollBack) {
  for (const std::string table : {"tsmdm030", "tstables"}) {
    rig.calls.Clear();
    driver->Restart();
    driver->FailOnly("CanRollBack " + table);
    driver->FailAt(1);
    rig.Run("tsmdm030");
    EXPECT_TRUE(driver->HasFailed()) << table;
    ExpectTheOldState();
    EXPECT_THAT(rig.calls.StartingWith({"rs"}), Not(Contains(HasSubstr("in_use = 1"))));
    EXPECT_THAT(rig.calls.StartingWith({"create ", "event Started"}), IsEmpty());
  }
}

TEST_F(WholeServiceTypesUnderFaults, AreTheOldOnesWhereTheCommitIsRefused) {
  driver->FailOnly("Commit");
  driver->FailAs(FaultKind::TakenBack);
  driver->FailAt(2);  // the first one is that of the flag
  rig.Run("tsmdm030");
  EXPECT_TRUE(driver->HasFailed());
  ExpectTheOldState();
}

TEST_F(WholeServiceTypesUnderFaults, AreToldAsUnknownWhereTheAnswerToTheCommitIsLost) {
  driver->FailOnly("Commit");
  driver->FailAs(FaultKind::After);
  driver->FailAt(2);
  const Error error = Raised([&] { rig.Run("tsmdm030"); });
  EXPECT_THAT(DescribeChain(error), AllOf(HasSubstr("It is not known whether the transaction was committed"),
                                          HasSubstr("rows: all old or all new"),
                                          HasSubstr("last update time of the new rows: 2026-11-20 14:05:09")));
  EXPECT_EQ(rig.InUse("tsmdm030"), "1");
  EXPECT_FALSE(rig.declarations.facts.lastUpdateTime.has_value());
  const bool isNew = rig.Lutm("tsmdm030") == kNewLutm;
  EXPECT_THAT(Local(), SizeIs(isNew ? 2 : 1));
}

// Two calendars, of which an employee uses one.
struct TwoCalendars {
  explicit TwoCalendars(std::int16_t method) {
    rig.declarations.copiesWhole = true;
    rig.Employee("4711", "DAY");
    for (const char* calendar : {"DAY", "NIGHT"}) rig.LocalRecord(calendar, "2026-11-01", 800);
    rig.ErpHas({{"DAY",
                 {Interval("DAY", "2026-11-20", 800, "2026-11-20", 1630),
                  Interval("DAY", "2026-11-21", 800, "2026-11-21", 1630)}}});
    const AuditEntry added = Inserted(Interval("DAY", "2026-11-22", 800, "2026-11-22", 1630));
    const AuditEntry more = Inserted(Interval("DAY", "2026-11-23", 800, "2026-11-23", 1630));
    if (method == kOnlyChanged) {
      rig.AuditsByCalendar({{added, more}});
    } else {
      rig.ControlRecord(kCalendars, method, kOldLutm);
    }
  }
  CalendarRig rig;
};

struct CalendarCopy {
  const char* table;
  std::int16_t method;
  std::size_t records;  // in the end
};

class WholeCalendars : public testing::TestWithParam<CalendarCopy> {};
INSTANTIATE_TEST_SUITE_P(Copied, WholeCalendars,
                         testing::Values(CalendarCopy{"tcccp030", kFullCopy, 2},
                                         CalendarCopy{"tcccp030", kOnlyChanged, 4},
                                         CalendarCopy{"tcccp030=4711=E", kFullCopy, 3},
                                         CalendarCopy{"tcccp030=DAY=C", kFullCopy, 3}));

TEST_P(WholeCalendars, AreOldOrNewWhicheverCallOfTheErpFails) {
  const std::vector<std::string> old = {"\"DAY\", 2026-11-01, 800, 1700", "\"NIGHT\", 2026-11-01, 800, 1700"};
  for (std::int64_t call = 1;; ++call) {
    SCOPED_TRACE(call);
    ASSERT_LT(call, 200);
    TwoCalendars calendars(GetParam().method);
    CalendarRig& rig = calendars.rig;
    rig.erp.calls.FailAt(call);
    rig.Run(GetParam().table);
    EXPECT_EQ(rig.InUse(kCalendars), "0");
    const bool isCounted = rig.CopyLog(kCalendars).find("records Inserted") != std::string::npos;
    if (isCounted) {
      EXPECT_THAT(rig.LocalRecords(), SizeIs(GetParam().records));
    } else {
      EXPECT_EQ(rig.LocalRecords(), old);
      EXPECT_EQ(rig.Lutm(kCalendars), kOldLutm);
    }
    if (!rig.erp.calls.HasFailed()) {
      EXPECT_TRUE(isCounted);
      break;
    }
    if (Joined(rig.Events()).find("event Complete") == std::string::npos) {
      EXPECT_THAT(rig.Events(), Contains(StartsWith("event Error")));
    }
  }
}

}  // namespace
}  // namespace qmx::test::whole_copy
