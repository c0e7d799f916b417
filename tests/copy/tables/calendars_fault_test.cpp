// Every call of the ERP and every operation of the database fails once, on each way in which calendars are copied. The
// database fails above the batches and below them, before an operation and after it.
#include <functional>
#include <map>
#include <memory>

#include "tests/copy/tables/calendar_rig.h"
#include "tests/support/decorated_drivers.h"
#include "tests/support/faulty_driver.h"

namespace qmx::test::calendars_fault {
namespace {

using testing::AnyOf;
using testing::HasSubstr;
using testing::IsSubsetOf;
using testing::StartsWith;
using testing::UnorderedElementsAreArray;

const char* const kOldLutm = "2026-11-19";
const char* const kNewLutm = "2026-11-20 14:05:09";

const std::string kOldDay = "\"DAY\", 2026-11-01, 800, 1700";
const std::string kDay1 = "\"DAY\", 2026-11-20, 800, 1200";
const std::string kDay2 = "\"DAY\", 2026-11-20, 1300, 1700";
const std::string kNight = "\"NIGHT\", 2026-11-21, 2200, 2400";
const std::string kOther = "\"OTHER\", 2026-11-01, 800, 1700";

// One way to copy calendars: how it is asked for, what the tables hold after it and what its failure says.
struct Way {
  const char* name;
  const char* tableName;
  std::int16_t syncMethod;
  std::vector<std::string> rows;
  std::vector<std::string> failures;  // numbers and texts for an ERP call that fails with error 7000
  bool mendedByTheNextRun = true;
};

std::ostream& operator<<(std::ostream& out, const Way& way) { return out << way.name; }

const Way kWays[] = {
    {"full", kCalendars, kFullCopy, {kDay1, kDay2, kNight}, {"error 7100, Copy Calenders:"}},
    // A calendar of which a failed run left a part behind counts as local from then on.
    {"changed",
     kCalendars,
     kOnlyChanged,
     {kDay1, kDay2, kNight, kOther},
     {"error 7100, Copy Calenders - Only Changed:"},
     false},
    {"employee", "tcccp030=4711=E", kFullCopy, {kDay1, kDay2, kOther}, {"error 7200, Copy Calendar of Employee:"}},
    {"code", "tcccp030=DAY=C", kFullCopy, {kDay1, kDay2, kOther}, {"error 7100, Copy Calender Of Employee:"}},
};

class OneRun {
 public:
  explicit OneRun(const Way& way, Place place = Place::AboveTheBatches)
      : rig(place == Place::AboveTheBatches ? decorate_ : nullptr, nullptr,
            place == Place::BelowTheBatches ? decorate_ : nullptr),
        way_(way) {
    rig.HasCalendarsToCopy(way.syncMethod);
    driver->Restart();
  }

  // Whether the run came to its end, well or not.
  bool Ends() {
    rig.calls.Clear();
    rig.failures.chains.clear();
    try {
      rig.Run(way_.tableName);
      return true;
    } catch (const Error& error) {
      raised = error.Number();
      return false;
    }
  }

  // The flag as the run's own writes have left it: what the last one wrote that succeeded. A write whose answer was
  // lost may have been done.
  void ExpectTheFlagThatWasWritten(FaultKind kind) {
    std::map<std::string, std::string> assigned;  // by record set
    std::vector<std::string> possible = {"0"};
    for (const std::string& line : rig.calls.StartingWith({"rs"})) {
      const std::string records = line.substr(0, line.find('.'));
      const std::size_t flag = line.find(".in_use = ");
      if (flag != std::string::npos) assigned[records] = line.substr(flag + 10, 1);
      if (line.find(".Update") == std::string::npos || !assigned.contains(records)) continue;
      const bool failed = line.find(" -> error ") != std::string::npos;
      if (!failed) possible.clear();
      if (!failed || kind == FaultKind::After) possible.push_back(assigned[records]);
    }
    EXPECT_THAT(possible, testing::Contains(rig.InUse(kCalendars)));
  }

  void ExpectNoWrongRow() {
    std::vector<std::string> allowed = way_.rows;
    allowed.push_back(kOldDay);
    allowed.push_back(kOther);
    EXPECT_THAT(rig.LocalRecords(), IsSubsetOf(allowed));
    for (const std::string& row : rig.Rows(kCalendars, {"ahrs", "ustm"})) {
      EXPECT_THAT(row, AnyOf(testing::StrEq("null, null"), HasSubstr(" Hours "))) << "a row that is half filled";
    }
  }

  // The list of the calendars in use ends quietly where it cannot be read. The copy then takes what was read for all.
  bool AllCalendarsWereListed() const {
    for (const std::string& line : rig.calls.StartingWith({"rs"})) {
      if (line.find("select DISTINCT tsmdm140.ccal") == std::string::npos) continue;
      return rig.calls.Count(line.substr(0, line.find('.')) + ".Close") == 1;
    }
    return true;
  }

  void ExpectTheNewLastUpdateTimeOnlyWithAllRows() {
    if (rig.Lutm(kCalendars) == kOldLutm || !AllCalendarsWereListed()) return;
    EXPECT_EQ(rig.Lutm(kCalendars), kNewLutm);
    EXPECT_EQ(way_.tableName, std::string(kCalendars)) << "a copy on request leaves the time as it is";
    EXPECT_THAT(rig.LocalRecords(), UnorderedElementsAreArray(way_.rows));
  }

  void ExpectEverythingCopied() {
    EXPECT_THAT(rig.LocalRecords(), UnorderedElementsAreArray(way_.rows));
    EXPECT_EQ(rig.Events().back(), "event done");
    EXPECT_THAT(rig.Events().at(rig.Events().size() - 2), StartsWith("event Complete"));
    EXPECT_EQ(rig.InUse(kCalendars), "0");
  }

 private:
  LocalDrivers::Decorate decorate_ = [this](Driver& inner) -> Driver& {
    driver = std::make_unique<FaultyDriver>(inner);
    return *driver;
  };

 public:
  std::unique_ptr<FaultyDriver> driver;
  CalendarRig rig;
  std::int32_t raised = 0;

 private:
  const Way& way_;
};

class CalendarFaults : public testing::TestWithParam<Way> {
 protected:
  void ExpectFaultsOfTheDatabaseToBeMended(Place place, FaultKind kind) {
    int leftInProgress = 0;
    for (std::int64_t failing = 1;; ++failing) {
      OneRun run(GetParam(), place);
      run.driver->FailAs(kind);
      run.driver->FailAt(failing);
      const bool ends = run.Ends();
      if (!run.driver->HasFailed()) {
        ASSERT_GT(failing, 50);
        EXPECT_GT(leftInProgress, 0) << "no release failed";
        break;
      }
      SCOPED_TRACE(run.driver->FirstFailed());
      run.driver->FailAt(0);
      run.ExpectNoWrongRow();
      run.ExpectTheFlagThatWasWritten(kind);
      if (run.rig.InUse(kCalendars) == "1") ++leftInProgress;
      if (!ends) {  // the table could not be released; without a connection it never can
        EXPECT_THAT(run.raised, AnyOf(errors::kProviderUnspecified, errors::kConnectionClosed));
      }
      for (const std::string& chain : run.rig.failures.chains) {
        EXPECT_THAT(chain, StartsWith("error -21474"));
        EXPECT_THAT(chain, HasSubstr("error -2147467259, Faulty driver: Operation "));
      }
      run.ExpectTheNewLastUpdateTimeOnlyWithAllRows();

      if (GetParam().mendedByTheNextRun) {
        run.rig.Sql("update tstables set in_use = 0");
        EXPECT_TRUE(run.Ends());
        run.ExpectEverythingCopied();
      }
      if (HasFailure()) return;
    }
  }
};

TEST_P(CalendarFaults, ThatDoNotHappenLeaveACompleteCopy) {
  OneRun run(GetParam());
  EXPECT_TRUE(run.Ends());
  run.ExpectEverythingCopied();
  EXPECT_THAT(run.rig.failures.chains, IsEmpty());
}

TEST_P(CalendarFaults, OfAnErpCallFailsTheCopyAndNothingElse) {
  for (std::int64_t failing = 1;; ++failing) {
    SCOPED_TRACE(failing);
    OneRun run(GetParam());
    run.rig.erp.calls.FailAt(failing);
    ASSERT_TRUE(run.Ends());
    if (!run.rig.erp.calls.HasFailed()) {
      ASSERT_GT(failing, 20);
      break;
    }
    ASSERT_EQ(run.rig.failures.chains.size(), 1u);
    EXPECT_THAT(run.rig.failures.chains[0], StartsWith(GetParam().failures[0]));
    EXPECT_THAT(run.rig.failures.chains[0], HasSubstr("error 7000, Orvan: Call " + std::to_string(failing)));
    EXPECT_THAT(run.rig.Events().at(run.rig.Events().size() - 2), StartsWith("event Error"));
    EXPECT_EQ(run.rig.Events().back(), "event done");
    EXPECT_EQ(run.rig.InUse(kCalendars), "0");
    run.ExpectNoWrongRow();

    // Only where the manager itself could not be closed was everything done before.
    const bool everythingDone = run.rig.calls.Count("manager.Close() -> error 7000") == 1;
    const bool onRequest = GetParam().tableName != std::string(kCalendars);
    EXPECT_EQ(run.rig.Lutm(kCalendars), everythingDone && !onRequest ? kNewLutm : kOldLutm);
    EXPECT_EQ(run.rig.CopyLog(kCalendars).find("records Inserted") != std::string::npos, everythingDone);

    if (GetParam().mendedByTheNextRun) {
      run.rig.erp.calls.FailAt(0);
      EXPECT_TRUE(run.Ends());
      run.ExpectEverythingCopied();
    }
  }
}

TEST_P(CalendarFaults, OfTheDatabaseLeaveNoWrongRowAndAreMendedByTheNextRun) {
  ExpectFaultsOfTheDatabaseToBeMended(Place::AboveTheBatches, FaultKind::Before);
}

TEST_P(CalendarFaults, OfTheDatabaseBelowTheBatchesLeaveNoWrongRowAndAreMendedByTheNextRun) {
  ExpectFaultsOfTheDatabaseToBeMended(Place::BelowTheBatches, FaultKind::Before);
}

TEST_P(CalendarFaults, OfTheDatabaseWhoseAnswersAreLostLeaveNoWrongRowAndAreMendedByTheNextRun) {
  ExpectFaultsOfTheDatabaseToBeMended(Place::BelowTheBatches, FaultKind::After);
}

INSTANTIATE_TEST_SUITE_P(OnEveryWay, CalendarFaults, testing::ValuesIn(kWays),
                         [](const auto& instance) { return std::string(instance.param.name); });

}  // namespace
}  // namespace qmx::test::calendars_fault
