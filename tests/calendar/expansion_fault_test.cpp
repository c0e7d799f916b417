// Every operation of the database fails, wherever in the expansion it stands: above the batches and below them, before
// it is done, after it was done, and with what was not committed yet taken back.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <set>
#include <utility>

#include "tests/calendar/calendar_database.h"
#include "tests/support/decorated_drivers.h"
#include "tests/support/faulty_driver.h"

namespace qmx::test {
namespace {

const std::vector<std::string> kDay = {"2001-03-05 08:00:00 > 2001-03-05 17:00:00",
                                       "2001-03-06 08:00:00 > 2001-03-06 17:00:00",
                                       "2001-06-20 08:00:00 > 2001-06-20 17:00:00"};
const std::vector<std::string> kNight = {"2001-03-05 22:00:00 > 2001-03-06"};
const std::vector<std::string> kOld = {"1999-01-01 > 1999-01-02"};  // of each calendar, from an earlier expansion

struct Faulty {
  std::unique_ptr<FaultyDriver> faults;
  LocalDrivers::Decorate decorate = [this](Driver& inner) -> Driver& {
    faults = std::make_unique<FaultyDriver>(inner);
    return *faults;
  };
  CalendarDatabase local;
  FaultyDriver& driver;
  std::string statement;  // the one in which the first operation failed

  Faulty(Place place, Calls calls)
      : local(place == Place::AboveTheBatches ? decorate : nullptr,
              place == Place::BelowTheBatches ? decorate : nullptr, calls),
        driver(*faults) {
    local.Employee("1001", "DAY");
    local.Employee("1002", "NIGHT");
    local.Records("DAY", {{"2001-03-05", "2001-03-06", 800, 1700}, {"2001-06-20", "2001-06-20", 800, 1700}});
    local.Record("NIGHT", {"2001-03-05", "2001-03-05", 2200, 2400});
    for (const std::string code : {"DAY", "NIGHT"}) {
      local.Execute("INSERT INTO tscalender VALUES ('" + code + "', '1999-01-01', '1999-01-02')");
    }
    driver.Restart();
    driver.before = [this](const std::string& operation) {
      if (driver.HasFailed()) return;
      for (const char* beginning : {"Prepare ", "Bind "}) {
        if (operation.starts_with(beginning)) statement = operation.substr(std::string(beginning).size());
      }
    };
  }

  // Whether it ended without an error.
  bool Expand() {
    try {
      local.Calender().Startprocess();
      return true;
    } catch (const Error& error) {
      EXPECT_EQ(error.Number(), errors::kProviderUnspecified) << DescribeChain(error);
      return false;
    }
  }

  // The faults are over, and the program starts anew.
  void Recover() {
    driver.FailAt(0);
    local.Reopen();
  }

  void ExpectEverything() {
    EXPECT_EQ(local.Intervals("DAY"), kDay);
    EXPECT_EQ(local.Intervals("NIGHT"), kNight);
  }
};

std::string NameOf(Calls calls) { return calls == Calls::Logged ? "Logged" : "NotLogged"; }

using Intervals = std::vector<std::string>;

bool IsOld(const Intervals& found) { return found == kOld; }
bool IsNew(const Intervals& found, const Intervals& all) { return found == all; }
bool IsABeginning(const Intervals& found, const Intervals& all) {
  return found.size() <= all.size() && std::equal(found.begin(), found.end(), all.begin());
}

// The intervals of a calendar that are missing. Each is there once at most, in its order, after the old one if that
// could not be deleted.
std::size_t Missing(Intervals found, const Intervals& all) {
  if (!found.empty() && found[0] == kOld[0]) found.erase(found.begin());
  auto expected = all.begin();
  for (const std::string& interval : found) {
    expected = std::find(expected, all.end(), interval);
    EXPECT_NE(expected, all.end()) << interval << " is wrong, or not in its place";
    if (expected == all.end()) break;
    ++expected;
  }
  return all.size() - found.size();
}

class UncommittedIntervals : public testing::TestWithParam<Calls> {};
INSTANTIATE_TEST_SUITE_P(Of, UncommittedIntervals, testing::Values(Calls::Logged, Calls::NotLogged),
                         [](const auto& instance) { return NameOf(instance.param); });

TEST_P(UncommittedIntervals, AreLostAsThoseThatCannotBeInserted) {
  Faulty faulty(Place::BelowTheBatches, GetParam());
  bool isFull = false;
  faulty.driver.before = [&](const std::string& operation) {
    isFull = isFull || operation == "Commit";
    const bool writes = operation == "Commit" || operation.starts_with("Prepare insert into tscalender") ||
                        operation.starts_with("Bind insert into tscalender");
    if (isFull && writes) throw Error(errors::kDiskFull, "Test", "No space is left.");
  };
  EXPECT_TRUE(faulty.Expand());
  EXPECT_TRUE(isFull);
  // The first of rows that may wait is committed alone.
  const int alone = GetParam() == Calls::Logged ? 0 : 1;
  EXPECT_EQ(faulty.local.Intervals("DAY"), Intervals(kDay.begin(), kDay.begin() + alone));
  EXPECT_THAT(faulty.local.Intervals("NIGHT"), ::testing::IsEmpty());

  faulty.driver.before = nullptr;
  EXPECT_TRUE(faulty.Expand());
  faulty.ExpectEverything();
}

class ExpansionFaults : public testing::TestWithParam<std::tuple<std::pair<Place, FaultKind>, Calls>> {
 protected:
  Place place_ = std::get<0>(GetParam()).first;
  FaultKind kind_ = std::get<0>(GetParam()).second;
  Calls calls_ = std::get<1>(GetParam());
};

TEST_P(ExpansionFaults, OneFailureAnywhereLeavesNoWrongRowAndTheNextExpansionMendsIt) {
  int ended = 0;
  int harmless = 0;
  std::int64_t failing = 1;
  for (;; ++failing) {
    SCOPED_TRACE(failing);
    Faulty faulty(place_, calls_);
    faulty.driver.FailAs(kind_);
    if (kind_ == FaultKind::TakenBack) faulty.driver.FailOnly("Commit");
    faulty.driver.FailAt(failing);
    const bool quiet = faulty.Expand();
    if (!faulty.driver.HasFailed()) break;
    SCOPED_TRACE(faulty.driver.FirstFailed() + ", in " + faulty.statement);
    if (quiet) {
      EXPECT_EQ(faulty.local.recordset().State(), kStateClosed);
    } else {
      ++ended;
    }
    faulty.Recover();
    const Intervals day = faulty.local.Intervals("DAY");
    const Intervals night = faulty.local.Intervals("NIGHT");
    const std::size_t missing = Missing(day, kDay) + Missing(night, kNight);
    if (missing == 0) ++harmless;
    // A lost answer to a commit ends the session, and with it all that follows.
    const bool endsTheSession = kind_ == FaultKind::After && faulty.driver.FirstFailed().ends_with("Commit");
    if (quiet && !endsTheSession) {
      EXPECT_TRUE(IsNew(day, kDay) || IsNew(night, kNight) || IsOld(night)) << "more than one calendar is incomplete";
      const bool isAnInsert = faulty.statement.starts_with("insert into tscalender");
      EXPECT_LE(missing, isAnInsert ? 1U : 4U);
    }

    EXPECT_TRUE(faulty.Expand());
    faulty.ExpectEverything();
    if (HasFailure()) return;
  }
  EXPECT_GT(failing, kind_ == FaultKind::TakenBack ? 2 : 30);
  EXPECT_LE(ended, failing / 2) << "most failures are passed over";
  EXPECT_GT(harmless, 0) << "every failure lost intervals";
}

// The calendars before it are new, one is incomplete, the rest is old.
TEST_P(ExpansionFaults, ADatabaseThatIsGoneEndsTheExpansionAndNothingElse) {
  std::set<std::pair<std::size_t, std::size_t>> incomplete;  // intervals of DAY, where NIGHT is old, and of both
  for (std::int64_t failing = 1;; ++failing) {
    SCOPED_TRACE(failing);
    Faulty faulty(place_, calls_);
    faulty.driver.FailAs(kind_);
    faulty.driver.FailFrom(failing);
    faulty.Expand();
    if (!faulty.driver.HasFailed()) break;
    SCOPED_TRACE(faulty.driver.FirstFailed() + ", in " + faulty.statement);
    faulty.Recover();
    const Intervals day = faulty.local.Intervals("DAY");
    const Intervals night = faulty.local.Intervals("NIGHT");
    EXPECT_TRUE(IsOld(day) || IsABeginning(day, kDay)) << ::testing::PrintToString(day);
    EXPECT_TRUE(IsOld(night) || IsABeginning(night, kNight)) << ::testing::PrintToString(night);
    EXPECT_TRUE(IsOld(night) || IsNew(day, kDay)) << "a later calendar is new before an earlier one";
    if (!IsOld(day)) incomplete.insert({day.size(), IsOld(night) ? 9 : night.size()});
    if (HasFailure()) return;
  }
  // Each state was seen: no interval, the first period's, all, and NIGHT without its interval and with it.
  using Pair = std::pair<std::size_t, std::size_t>;
  EXPECT_THAT(incomplete, ::testing::IsSupersetOf({Pair(0, 9), Pair(2, 9), Pair(3, 9), Pair(3, 0), Pair(3, 1)}));
}

INSTANTIATE_TEST_SUITE_P(AtEveryPlace, ExpansionFaults,
                         testing::Combine(testing::Values(std::pair(Place::AboveTheBatches, FaultKind::Before),
                                                          std::pair(Place::AboveTheBatches, FaultKind::After),
                                                          std::pair(Place::BelowTheBatches, FaultKind::Before),
                                                          std::pair(Place::BelowTheBatches, FaultKind::After),
                                                          std::pair(Place::BelowTheBatches, FaultKind::TakenBack)),
                                          testing::Values(Calls::Logged, Calls::NotLogged)),
                         [](const auto& instance) {
                           const auto& fault = std::get<0>(instance.param);
                           return (fault.first == Place::AboveTheBatches ? "Above" : "Below") + NameOf(fault.second) +
                                  NameOf(std::get<1>(instance.param));
                         });

}  // namespace
}  // namespace qmx::test
