// Every operation of the database fails, wherever in the expansion it stands: above the batches and below them, before
// it is done, after it was done, and with what was not committed yet taken back.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "tests/calendar/calendar_database.h"
#include "tests/support/decorated_drivers.h"
#include "tests/support/faulty_driver.h"

namespace qmx::test {
namespace {

const std::vector<std::string> kDay = {"2001-03-05 08:00:00 > 2001-03-05 17:00:00",
                                       "2001-03-06 08:00:00 > 2001-03-06 17:00:00",
                                       "2001-06-20 08:00:00 > 2001-06-20 17:00:00"};
const std::vector<std::string> kNight = {"2001-03-05 22:00:00 > 2001-03-06"};

struct Faulty {
  std::unique_ptr<FaultyDriver> faults;
  LocalDrivers::Decorate decorate = [this](Driver& inner) -> Driver& {
    faults = std::make_unique<FaultyDriver>(inner);
    return *faults;
  };
  CalendarDatabase local;
  FaultyDriver& driver;

  Faulty(Place place, Calls calls)
      : local(place == Place::AboveTheBatches ? decorate : nullptr,
              place == Place::BelowTheBatches ? decorate : nullptr, calls),
        driver(*faults) {
    local.Employee("1001", "DAY");
    local.Employee("1002", "NIGHT");
    local.Records("DAY", {{"2001-03-05", "2001-03-06", 800, 1700}, {"2001-06-20", "2001-06-20", 800, 1700}});
    local.Record("NIGHT", {"2001-03-05", "2001-03-05", 2200, 2400});
    local.Execute("INSERT INTO tscalender VALUES ('DAY', '1999-01-01', '1999-01-02')");
    driver.Restart();
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

// Each interval once at most.
void ExpectNothingButTheseIn(const std::vector<std::string>& found, std::vector<std::string> allowed) {
  allowed.push_back("1999-01-01 > 1999-01-02");
  for (const std::string& interval : found) {
    EXPECT_THAT(allowed, ::testing::Contains(interval));
    EXPECT_EQ(std::count(found.begin(), found.end(), interval), 1) << interval;
  }
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
  EXPECT_EQ(faulty.local.Intervals("DAY"), std::vector(kDay.begin(), kDay.begin() + alone));
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
  std::int64_t failing = 1;
  for (;; ++failing) {
    SCOPED_TRACE(failing);
    Faulty faulty(place_, calls_);
    faulty.driver.FailAs(kind_);
    if (kind_ == FaultKind::TakenBack) faulty.driver.FailOnly("Commit");
    faulty.driver.FailAt(failing);
    const bool quiet = faulty.Expand();
    if (!faulty.driver.HasFailed()) break;
    SCOPED_TRACE(faulty.driver.FirstFailed());
    if (quiet) {
      EXPECT_EQ(faulty.local.recordset().State(), kStateClosed);
    } else {
      ++ended;
    }
    faulty.Recover();
    ExpectNothingButTheseIn(faulty.local.Intervals("DAY"), kDay);
    ExpectNothingButTheseIn(faulty.local.Intervals("NIGHT"), kNight);

    EXPECT_TRUE(faulty.Expand());
    faulty.ExpectEverything();
    if (HasFailure()) return;
  }
  EXPECT_GT(failing, kind_ == FaultKind::TakenBack ? 2 : 30);
  EXPECT_LE(ended, failing / 2) << "most failures are passed over";
}

TEST_P(ExpansionFaults, ADatabaseThatIsGoneEndsTheExpansionAndNothingElse) {
  for (std::int64_t failing = 1;; failing += 3) {
    SCOPED_TRACE(failing);
    Faulty faulty(place_, calls_);
    faulty.driver.FailAs(kind_);
    faulty.driver.FailFrom(failing);
    faulty.Expand();
    if (!faulty.driver.HasFailed()) break;
    faulty.Recover();
    ExpectNothingButTheseIn(faulty.local.Intervals("DAY"), kDay);
    ExpectNothingButTheseIn(faulty.local.Intervals("NIGHT"), kNight);
    if (HasFailure()) return;
  }
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
